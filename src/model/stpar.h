// StateTransPar and ProcessPar, the parameter dialogues of state transition graphs: rows that may
// be read-only, and for a process its last value in a text of several lines.
#ifndef MODEL_STPAR_H
#define MODEL_STPAR_H

#include <vector>

#include "editor/paramedt.h"

class CppText;

extern Class class_StateTransPar;
extern Class class_ProcessPar;

// A label that ends in this mark makes its row read-only; the row shows the label without it.
extern const char* const readOnlyRowMark;

// A read-only row is insensitive, coloured by the resource "readOnlyBackground" (grey50 by
// default), and keeps its value on Confirm.
class StateTransPar : public ParamEditor {
    DECLARE_MEMBERS(StateTransPar)
public:
    StateTransPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
                  const char* title);

    bool isReadOnly(int row) const;
    // The rows that are not read-only go into the values, then the confirm event.
    void okPressed(Cback& cb) override;
    void setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) override;

protected:
    // The dialogue without rows; addRows adds the first count.
    StateTransPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
                  const char* title, bool withRows);
    void addRows(unsigned count);
    // The values shown, and the dialogue's contents taken back into them.
    virtual void showValues();
    virtual void takeValues();

private:
    std::vector<bool> readOnly;
};

// The process's rows but the last, whose value (the variables) is edited in the multi-line text
// "EventText", in the viewport "EventView" under the label "EventLabel". In the text Return types
// a new line and Shift+Tab goes back to the rows.
class ProcessPar : public StateTransPar {
    DECLARE_MEMBERS(ProcessPar)
public:
    ProcessPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
               const char* title);

    CppText& eventText() const { return *eventText_; }

protected:
    void showValues() override;
    void takeValues() override;

private:
    CppText* eventText_;
};

#endif
