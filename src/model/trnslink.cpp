// TransitionLink: dialogue, picture and stream form of a transition.
#include "model/trnslink.h"

#include <ostream>

#include "model/modelnode.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(TransitionLink, StateTransLink, 1, 0)

TransitionLink::TransitionLink(std::istream& is, Object* where) : StateTransLink(is, where) {
    readFields(is);
}

TransitionLink::TransitionLink(BinIstream& is, Object* where) : StateTransLink(is, where) { readFields(is); }

template <class Stream>
void TransitionLink::readFields(Stream& is) {
    readFrom(is, class_String, &firingRule_);
    readFrom(is, class_String, &actions_);
}

String TransitionLink::text() const {
    if (firingRule_.size() == 0 && actions_.size() == 0) return String();
    return firingRule_ + ", " + actions_;
}

int TransitionLink::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    StateTransLink::iconParameters(mode, labels, values, count);
    if (mode == 1) {
        firingRule_ = firingRuleEntry;
        actions_ = actionsEntry;
        unbuildIcon();
        buildIcon();
        return 0;
    }
    if (mode != 0) return 0;
    labels.add(*new String("Firing Rule"));
    labels.add(*new String("Actions"));
    values.add(*new String(firingRule_));
    values.add(*new String(actions_));
    count = 0;
    return 1;
}

String TransitionLink::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    firingRuleEntry = ModelNode::trimmedValue(values, 0);
    actionsEntry = ModelNode::trimmedValue(values, 1);
    status = 1;
    return ModelNode::errorText("noerror", "");
}

String& TransitionLink::iconDescription(String& result) {
    result = "Transition Link";
    return result;
}

void TransitionLink::buildIcon() {
    StateTransLink::buildIcon();
    defaultComment();
}

void TransitionLink::defaultComment() {
    commentIcon()->deleteIcons();
    String shown = text();
    if (shown.size() == 0) return;
    DrawImageString* line =
        new DrawImageString(0, 0, shown.size() * 0.48f, shown.asCharPointer(), stringColour);
    line->height = 0.6f;
    commentIcon()->add(*line);
}

void TransitionLink::printOn(std::ostream& os) const { os << text(); }

void TransitionLink::storer(std::ostream& os) const {
    StateTransLink::storer(os);
    firingRule_.storeOn(os);
    actions_.storeOn(os);
}

void TransitionLink::storer(BinOstream& os) const {
    StateTransLink::storer(os);
    firingRule_.storeOn(os);
    actions_.storeOn(os);
}

void TransitionLink::clearCopiedState() {
    StateTransLink::clearCopiedState();
    for (String* text : {&firingRuleEntry, &actionsEntry, &firingRule_, &actions_}) text->clearCopiedState();
}
