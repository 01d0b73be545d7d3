// TransitionLink, the link of a state transition graph: a transition with its firing rule and actions.
#ifndef MODEL_TRNSLINK_H
#define MODEL_TRNSLINK_H

#include "model/sttrlink.h"

extern Class class_TransitionLink;

// The rule and the actions are kept as written; no grammar checks them here.
class TransitionLink : public StateTransLink {
    DECLARE_MEMBERS(TransitionLink)
public:
    TransitionLink() {}
    // Stream form: StateTransLink's, then the firing rule and the actions.
    TransitionLink(std::istream& is, Object* where);
    TransitionLink(BinIstream& is, Object* where);

    const String& firingRule() const { return firingRule_; }
    const String& actions() const { return actions_; }
    // The rule and the actions joined by ", "; empty when both are.
    String text() const;

    // Rows "Firing Rule" and "Actions"; mode 1 takes the entries and rebuilds the picture.
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // Stores the entries trimmed; nothing is refused.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    String& iconDescription(String& result) override;
    // The arrow, and the text as the link's label: centred above the middle segment of the
    // route, or beside it when that runs upright.
    void buildIcon() override;

    void printOn(std::ostream& os) const override;  // the text
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    void placeText();

    String firingRuleEntry, actionsEntry;
    String firingRule_, actions_;
};

#endif
