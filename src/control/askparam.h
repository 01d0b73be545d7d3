// The dialogues and the stop button of a design, reached through events on the design's owner, so
// that a window, a test or a batch run can answer them; "ITERATION_NORM" tells the owner the norm
// each iteration of a design reached (reportIterationNorm).
#ifndef CONTROL_ASKPARAM_H
#define CONTROL_ASKPARAM_H

#include <vector>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"
#include "quill/symbol.h"

extern Class class_ParamRequest;

extern Symbol AskParameters;  // "ASK_PARAMETERS": the call data holds a ParamRequest
extern Symbol CheckStop;      // "CHECK_STOP": a listener lets the interface run and may call requestStop
extern Symbol IterationNorm;  // "ITERATION_NORM": the call data holds the norm of one iteration, a double

// One parameter dialogue: a title, labelled text fields with their values, and the answer, 1 for
// Ok and 0 for Cancel. A listener of "ASK_PARAMETERS" shows it, writes the values back and sets
// the answer; with nobody to answer, the default answer and the values as given stand.
class ParamRequest : public Object {
    DECLARE_MEMBERS(ParamRequest)
public:
    ParamRequest();
    ParamRequest(const char* title, int defaultAnswer);

    ParamRequest& add(const char* label, const char* value, bool readOnly = false);
    ParamRequest& add(const char* label, double value, bool readOnly = false);  // "%6.4g"

    const char* title() const { return title_.asCharPointer(); }
    unsigned fieldCount() const { return unsigned(fields.size()); }
    const char* label(unsigned i) const { return fields.at(i).label.asCharPointer(); }
    const char* value(unsigned i) const { return fields.at(i).value.asCharPointer(); }
    double number(unsigned i) const;  // the value read as a number, 0 when it is none
    bool isReadOnly(unsigned i) const { return fields.at(i).readOnly; }
    void setValue(unsigned i, const char* text) { fields.at(i).value = text; }

    int answer;  // 1 Ok, 0 Cancel

private:
    struct Field {
        String label;
        String value;
        bool readOnly;
    };
    String title_;
    std::vector<Field> fields;
};

// Raises "ASK_PARAMETERS" on owner (a null owner asks nobody) and answers 1 for Ok, 0 for Cancel.
int askParameters(Object* owner, ParamRequest& request);

// Raises "CHECK_STOP" on owner and answers whether a stop was requested since the last check.
bool checkStop(Object* owner);
void requestStop();

// Raises "ITERATION_NORM" on owner (a null owner tells nobody) with norm.
void reportIterationNorm(Object* owner, double norm);

#endif
