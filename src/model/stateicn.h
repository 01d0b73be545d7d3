// StateIcon and ProcessIcon, the nodes of a state transition graph: a state drawn as a capsule and
// a process, a state with variables, drawn as a rectangle.
#ifndef MODEL_STATEICN_H
#define MODEL_STATEICN_H

#include "model/stticon.h"

extern Class class_StateIcon;
extern Class class_ProcessIcon;

class StateIcon : public StateTransIcon {
    DECLARE_MEMBERS(StateIcon)
public:
    StateIcon() {}
    // Stream form: IconNode's, then the state's name and its description.
    StateIcon(std::istream& is, Object* where);
    StateIcon(BinIstream& is, Object* where);

    const String& stateName() const { return stateName_; }
    const String& description() const { return description_; }
    void setStateName(const char* name) { stateName_ = name; }
    void setDescription(const char* text) { description_ = text; }

    // Rows "State  Name" and "Description"; mode 1 takes the entries and rebuilds the picture.
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // Stores the entries as typed; nothing is refused.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    // Two lines joined by half circles at both ends, the name in the middle.
    void drawIcon() override;
    String& iconDescription(String& result) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    // The dialogue's rows, a label and a value each; a kind of state adds its own after these.
    virtual void fillRows(OrderedCltn& labels, OrderedCltn& values) const;
    virtual void takeEntries(const OrderedCltn& values);
    virtual void applyEntries();

private:
    template <class Stream>
    void readFields(Stream& is);

    String nameEntry, descriptionEntry;
    String stateName_, description_;
};

class ProcessIcon : public StateIcon {
    DECLARE_MEMBERS(ProcessIcon)
public:
    ProcessIcon() {}
    // Stream form: StateIcon's, then the variables.
    ProcessIcon(std::istream& is, Object* where);
    ProcessIcon(BinIstream& is, Object* where);

    const String& variables() const { return variables_; }
    void setVariables(const char* text) { variables_ = text; }

    // A rectangle over the node's cells and the name.
    void drawIcon() override;
    String& iconDescription(String& result) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    // Rows "Process Name", "Description" and "Variables".
    void fillRows(OrderedCltn& labels, OrderedCltn& values) const override;
    void takeEntries(const OrderedCltn& values) override;
    void applyEntries() override;

private:
    String variablesEntry;
    String variables_;
};

#endif
