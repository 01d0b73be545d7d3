// TitleIcon, the title of a block diagram: the model's name, its description and the name lists that order
// it.
#ifndef MODEL_TITLEICON_H
#define MODEL_TITLEICON_H

#include <string>
#include <vector>

#include "model/modelnode.h"

extern Class class_TitleIcon;

// The lists name the model's inputs, outputs and states in their order; a
// comma closes a group, which splits the inputs into disturbances and
// controls and the outputs into objectives and measures. The system label
// tells the time domain: "Continuous System" or "Discrete System " and the
// sampling period.
class TitleIcon : public ModelNode {
    DECLARE_MEMBERS(TitleIcon)
public:
    // The name is the drawing file's base name, "TITLE" when it is empty. A
    // new title cannot be deleted.
    explicit TitleIcon(const char* baseName = "");
    // Stream form: ModelNode's, then the name, the system label, the
    // description and the input, output and state lists. An empty name reads
    // as "TITLE"; older streams end before the state list.
    TitleIcon(std::istream& is, Object* where);
    TitleIcon(BinIstream& is, Object* where);
    ~TitleIcon() noexcept(false) override;

    const String& titleName() const { return titleName_; }
    const String& systemLabel() const { return systemLabel_; }
    void setSystemLabel(const char* text) { systemLabel_ = text; }
    // An empty name becomes "TITLE"; the node shows the name.
    void setTitleName(const String& name);
    const String& description() const { return description_; }
    const String& inputList() const { return inputList_; }
    const String& outputList() const { return outputList_; }
    const String& stateList() const { return stateList_; }
    void setInputList(const char* text) { inputList_ = text; }
    void setOutputList(const char* text) { outputList_ = text; }
    void setStateList(const char* text) { stateList_ = text; }

    // The names of text, cut at blanks, commas and tabs. firstCount counts
    // the names before the first comma, secondCount those before the second;
    // without a comma both count all.
    static std::vector<std::string> splitList(const String& text, int& firstCount, int& secondCount);
    std::vector<std::string> inputNames(int& first, int& second) const;
    std::vector<std::string> outputNames(int& first, int& second) const;
    std::vector<std::string> stateNames(int& first, int& second) const;
    // 0 for a continuous system, else the number after "Discrete System ".
    double samplingTime() const;

    // Rows: name, description, state, input and output lists.
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // An empty name is refused.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    void drawIcon() override;
    void defaultComment() override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    void applyEntries();

    String titleName_;
    String systemLabel_;
    String description_;
    String inputList_;
    String outputList_;
    String stateList_;
    String entries[5];  // name, description, state, input and output lists, as the dialogue left them
};

#endif
