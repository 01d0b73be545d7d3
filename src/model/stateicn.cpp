// StateIcon and ProcessIcon: pictures, dialogue rows and stream forms.
#include "model/stateicn.h"

#include "model/modelnode.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(StateIcon, StateTransIcon, 1, 0)
DEFINE_CLASS(ProcessIcon, StateIcon, 1, 0)

namespace {

const double nameBaseline = 1.4;

// The value of a dialogue's row as typed; empty past the last row.
String valueAt(const OrderedCltn& values, unsigned index) {
    return index < values.size() ? *CAST(String, values.at(index)) : String();
}

void addRow(OrderedCltn& labels, OrderedCltn& values, const char* label, const String& value) {
    labels.add(*new String(label));
    values.add(*new String(value));
}

}  // namespace

StateIcon::StateIcon(std::istream& is, Object* where) : StateTransIcon(is, where) { readFields(is); }

StateIcon::StateIcon(BinIstream& is, Object* where) : StateTransIcon(is, where) { readFields(is); }

template <class Stream>
void StateIcon::readFields(Stream& is) {
    readFrom(is, class_String, &stateName_);
    readFrom(is, class_String, &description_);
}

int StateIcon::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    StateTransIcon::iconParameters(mode, labels, values, count);
    if (mode == 1) {
        applyEntries();
        unbuildIcon();
        buildIcon();
        return 0;
    }
    if (mode != 0) return 0;
    fillRows(labels, values);
    count = 0;
    return 1;
}

String StateIcon::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    takeEntries(values);
    status = 1;
    return ModelNode::errorText("noerror", "");
}

void StateIcon::fillRows(OrderedCltn& labels, OrderedCltn& values) const {
    addRow(labels, values, "State  Name", stateName_);
    addRow(labels, values, "Description", description_);
}

void StateIcon::takeEntries(const OrderedCltn& values) {
    nameEntry = valueAt(values, 0);
    descriptionEntry = valueAt(values, 1);
}

void StateIcon::applyEntries() {
    stateName_ = nameEntry;
    description_ = descriptionEntry;
}

void StateIcon::drawIcon() {
    float w = float(nodeWidth()), h = float(nodeHeight()), d = h;
    CompositeIcon& picture = *compositeIcon();
    picture.add(*new DrawLine(d / 2, 0, w - d, 0, iconColour));
    picture.add(*new DrawLine(d / 2, h, w - d, 0, iconColour));
    picture.add(*new DrawArc(0, 0, d, d, 90 * 64, 180 * 64, iconColour));
    picture.add(*new DrawArc(w - d, 0, d, d, 270 * 64, 180 * 64, iconColour));
    placeLabel(stateName_, nameBaseline);
}

String& StateIcon::iconDescription(String& result) {
    result = "State Icon";
    return result;
}

void StateIcon::storer(std::ostream& os) const {
    StateTransIcon::storer(os);
    stateName_.storeOn(os);
    description_.storeOn(os);
}

void StateIcon::storer(BinOstream& os) const {
    StateTransIcon::storer(os);
    stateName_.storeOn(os);
    description_.storeOn(os);
}

void StateIcon::clearCopiedState() {
    StateTransIcon::clearCopiedState();
    for (String* text : {&nameEntry, &descriptionEntry, &stateName_, &description_}) text->clearCopiedState();
}

// ProcessIcon

ProcessIcon::ProcessIcon(std::istream& is, Object* where) : StateIcon(is, where) {
    readFrom(is, class_String, &variables_);
}

ProcessIcon::ProcessIcon(BinIstream& is, Object* where) : StateIcon(is, where) {
    readFrom(is, class_String, &variables_);
}

void ProcessIcon::drawIcon() {
    compositeIcon()->add(*new DrawRect(0, 0, float(nodeWidth()), float(nodeHeight()), iconColour));
    placeLabel(stateName(), nameBaseline);
}

String& ProcessIcon::iconDescription(String& result) {
    result = "Process Icon";
    return result;
}

void ProcessIcon::fillRows(OrderedCltn& labels, OrderedCltn& values) const {
    addRow(labels, values, "Process Name", stateName());
    addRow(labels, values, "Description", description());
    addRow(labels, values, "Variables", variables_);
}

void ProcessIcon::takeEntries(const OrderedCltn& values) {
    StateIcon::takeEntries(values);
    variablesEntry = valueAt(values, 2);
}

void ProcessIcon::applyEntries() {
    StateIcon::applyEntries();
    variables_ = variablesEntry;
}

void ProcessIcon::storer(std::ostream& os) const {
    StateIcon::storer(os);
    variables_.storeOn(os);
}

void ProcessIcon::storer(BinOstream& os) const {
    StateIcon::storer(os);
    variables_.storeOn(os);
}

void ProcessIcon::clearCopiedState() {
    StateIcon::clearCopiedState();
    variablesEntry.clearCopiedState();
    variables_.clearCopiedState();
}
