// The design's dialogues and stop button as events on its owner.
#include "control/askparam.h"

#include <cstdio>
#include <cstdlib>

#include "quill/cback.h"

DEFINE_CLASS(ParamRequest, Object, 1, 0)

Symbol AskParameters("ASK_PARAMETERS");
Symbol CheckStop("CHECK_STOP");
Symbol IterationNorm("ITERATION_NORM");

namespace {
bool stopRequested = false;
}

ParamRequest::ParamRequest() : answer(0) {}

ParamRequest::ParamRequest(const char* title, int defaultAnswer) : answer(defaultAnswer), title_(title) {}

ParamRequest& ParamRequest::add(const char* label, const char* value, bool readOnly) {
    fields.push_back(Field{String(label), String(value), readOnly});
    return *this;
}

ParamRequest& ParamRequest::add(const char* label, double value, bool readOnly) {
    char text[64];
    std::snprintf(text, sizeof text, "%6.4g", value);
    return add(label, text, readOnly);
}

double ParamRequest::number(unsigned i) const { return std::strtod(value(i), 0); }

int askParameters(Object* owner, ParamRequest& request) {
    if (!owner) return request.answer;
    CallData data(&request, true);
    data.setNotOwn();
    owner->cbackOn(AskParameters, &data);
    return request.answer;
}

bool checkStop(Object* owner) {
    if (owner) owner->cbackOn(CheckStop);
    bool stop = stopRequested;
    stopRequested = false;
    return stop;
}

void requestStop() { stopRequested = true; }

void reportIterationNorm(Object* owner, double norm) {
    if (!owner) return;
    CallData data(norm);
    owner->cbackOn(IterationNorm, &data);
}
