// TransitionLink: dialogue, picture and stream form of a transition.
#include "model/trnslink.h"

#include <ostream>

#include "model/modelnode.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
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
    placeText();
    StateTransLink::buildIcon();
}

void TransitionLink::placeText() {
    // A character of text 0.6 cells high is about a quarter of a cell wide.
    const float height = 0.6f, charWidth = 0.25f, gap = 0.15f;
    DrawString& label = *iconLabel();
    label.text = text();
    label.width = label.text.size() * charWidth;
    label.height = height;
    if (points()->size() < 2) return;
    // The middle of the route: its middle point when it has an even number of segments (a
    // self-loop's top), else the middle of its middle segment.
    unsigned segments = points()->size() - 1, middle = segments / 2;
    FloatPoint a = point(int(middle)), b = point(int(middle) + 1);
    FloatPoint centre = segments % 2 == 0 ? a : (a + b) * 0.5;
    bool upright = a.x() == b.x() && a.y() != b.y();
    label.x = float(upright ? centre.x() + gap : centre.x() - label.width / 2);
    label.y = float(upright ? centre.y() - height / 2 : centre.y() - height - gap);
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
