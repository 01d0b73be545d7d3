// The terminals and junctions of a block diagram: InputSignalIcon, OutputSignalIcon and SumIcon.
#ifndef MODEL_TERMICON_H
#define MODEL_TERMICON_H

#include "model/modelnode.h"

extern Class class_TerminalIcon;
extern Class class_InputSignalIcon;
extern Class class_OutputSignalIcon;
extern Class class_SumIcon;

// A node of 2 by 2 cells with a description, shown as its comment, and one
// signal dimension in its dialogue: the rows are the name, the description
// and the dimension.
class TerminalIcon : public ModelNode {
    DECLARE_MEMBERS(TerminalIcon)
public:
    // Stream form: ModelNode's, then the description.
    TerminalIcon(std::istream& is, Object* where);
    TerminalIcon(BinIstream& is, Object* where);
    ~TerminalIcon() noexcept(false) override;

    const String& description() const { return description_; }
    void setDescription(const char* text) { description_ = text; }

    double nodeWidth() const override;
    double nodeHeight() const override;
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // Stores the entries; a dimension that is not a number counts as 0.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    void defaultComment() override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    TerminalIcon();
    // The label of the name's row.
    virtual const char* nameLabel() const = 0;
    // The signal's dimension as the dialogue shows it, and as it sets it.
    virtual int signalDimension() const = 0;
    virtual void setSignalDimension(int n) = 0;
    // A frame of the node's size with the name in its middle.
    void drawFramed();

private:
    String description_;
    String nameEntry;
    String descriptionEntry;
    int dimensionEntry = 0;
};

// An input of the model: a source of signals.
class InputSignalIcon : public TerminalIcon {
    DECLARE_MEMBERS(InputSignalIcon)
public:
    InputSignalIcon() {}
    InputSignalIcon(std::istream& is, Object* where) : TerminalIcon(is, where) {}
    InputSignalIcon(BinIstream& is, Object* where) : TerminalIcon(is, where) {}
    void drawIcon() override;

protected:
    const char* nameLabel() const override;
    int signalDimension() const override;
    void setSignalDimension(int n) override;
};

// An output of the model: a sink of signals.
class OutputSignalIcon : public TerminalIcon {
    DECLARE_MEMBERS(OutputSignalIcon)
public:
    OutputSignalIcon() {}
    OutputSignalIcon(std::istream& is, Object* where) : TerminalIcon(is, where) {}
    OutputSignalIcon(BinIstream& is, Object* where) : TerminalIcon(is, where) {}
    void drawIcon() override;

protected:
    const char* nameLabel() const override;
    int signalDimension() const override;
    void setSignalDimension(int n) override;
};

// The sum of its incoming signals, each with the sign of its link; its input
// and output have one dimension.
class SumIcon : public TerminalIcon {
    DECLARE_MEMBERS(SumIcon)
public:
    SumIcon() {}
    SumIcon(std::istream& is, Object* where) : TerminalIcon(is, where) {}
    SumIcon(BinIstream& is, Object* where) : TerminalIcon(is, where) {}
    void drawIcon() override;

protected:
    const char* nameLabel() const override;
    int signalDimension() const override;
    void setSignalDimension(int n) override;
};

#endif
