// TerminalIcon and its kinds: pictures, stream form and dialogue of inputs, outputs and sums.
#include "model/termicon.h"

#include <cstdlib>
#include <ostream>

#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_ABSTRACT_CLASS(TerminalIcon, ModelNode, 1, 0)
DEFINE_CLASS(InputSignalIcon, TerminalIcon, 1, 0)
DEFINE_CLASS(OutputSignalIcon, TerminalIcon, 1, 0)
DEFINE_CLASS(SumIcon, TerminalIcon, 1, 0)

TerminalIcon::TerminalIcon() {
    iconWidth(float(nodeWidth()));
    iconHeight(float(nodeHeight()));
}

TerminalIcon::TerminalIcon(std::istream& is, Object* where) : ModelNode(is, where) {
    readFrom(is, class_String, &description_);
}

TerminalIcon::TerminalIcon(BinIstream& is, Object* where) : ModelNode(is, where) {
    readFrom(is, class_String, &description_);
}

TerminalIcon::~TerminalIcon() noexcept(false) {}

double TerminalIcon::nodeWidth() const { return 2.0; }
double TerminalIcon::nodeHeight() const { return 2.0; }

int TerminalIcon::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    ModelNode::iconParameters(mode, labels, values, count);
    if (mode == 1) {
        setNodeName(nameEntry.asCharPointer());
        description_ = descriptionEntry;
        setSignalDimension(dimensionEntry);
        defaultComment();
        rebuild();
        return 0;
    }
    if (mode != 0) return 0;
    String dimension;
    dimension += signalDimension();
    for (const char* label : {nameLabel(), "Description", "Signal Dimension"}) labels.add(*new String(label));
    for (const String& value : {nodeName(), description_, dimension}) values.add(*new String(value));
    count = 0;
    return 1;
}

String TerminalIcon::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    nameEntry = trimmedValue(values, 0);
    descriptionEntry = trimmedValue(values, 1);
    dimensionEntry = std::atoi(trimmedValue(values, 2).asCharPointer());
    status = 1;
    return errorText("noerror", "");
}

void TerminalIcon::defaultComment() { showDescription(description_); }

void TerminalIcon::drawFramed() {
    compositeIcon()->add(*new DrawRect(0, 0, float(nodeWidth()), float(nodeHeight()), iconColour));
    placeLabel(1.4);
}

void TerminalIcon::storer(std::ostream& os) const {
    ModelNode::storer(os);
    description_.storeOn(os);
}

void TerminalIcon::storer(BinOstream& os) const {
    ModelNode::storer(os);
    description_.storeOn(os);
}

void TerminalIcon::clearCopiedState() {
    ModelNode::clearCopiedState();
    for (String* text : {&description_, &nameEntry, &descriptionEntry}) text->clearCopiedState();
}

// Inputs

void InputSignalIcon::drawIcon() { drawFramed(); }
const char* InputSignalIcon::nameLabel() const { return "Input  Name"; }
int InputSignalIcon::signalDimension() const { return outputDimension(); }
void InputSignalIcon::setSignalDimension(int n) { setOutputDimension(n); }

// Outputs

void OutputSignalIcon::drawIcon() { drawFramed(); }
const char* OutputSignalIcon::nameLabel() const { return "Output Name"; }
int OutputSignalIcon::signalDimension() const { return inputDimension(); }
void OutputSignalIcon::setSignalDimension(int n) { setInputDimension(n); }

// Sums

// A circle of two half circles, crossed by two diagonals.
void SumIcon::drawIcon() {
    const int half = 180 * 64;
    compositeIcon()->add(*new DrawArc(0, 0, 2, 2, 0, half, iconColour));
    compositeIcon()->add(*new DrawArc(0, 0, 2, 2, half, half, iconColour));
    const float in = 0.3f, span = 1.4f;
    compositeIcon()->add(*new DrawLine(in, in, span, span, iconColour));
    compositeIcon()->add(*new DrawLine(in, in + span, span, -span, iconColour));
    placeLabel(1.4);
}

const char* SumIcon::nameLabel() const { return "Signal  Name"; }
int SumIcon::signalDimension() const { return outputDimension() > 0 ? outputDimension() : inputDimension(); }

void SumIcon::setSignalDimension(int n) {
    setInputDimension(n);
    setOutputDimension(n);
}
