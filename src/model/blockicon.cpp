// BlockIcon: picture, stream form and the dialogue of a block.
#include "model/blockicon.h"

#include <ostream>

#include "control/dynop.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(BlockIcon, ModelNode, 1, 0)

BlockIcon::BlockIcon(bool fromMenu) : fromMenu(fromMenu) {}

BlockIcon::BlockIcon(std::istream& is, Object* where) : ModelNode(is, where) { readFields(is); }

BlockIcon::BlockIcon(BinIstream& is, Object* where) : ModelNode(is, where) { readFields(is); }

template <class Stream>
void BlockIcon::readFields(Stream& is) {
    readFrom(is, class_String, &blockFile_);
    readFrom(is, class_ModelData, &blockData_);
    if (!atObjectEnd(is)) {
        discrete = readNumber<int>(is);
        samplingTime_ = readNumber<double>(is);
    }
    fileLoaded = 1;
}

BlockIcon::~BlockIcon() noexcept(false) {}

void BlockIcon::drawIcon() {
    compositeIcon()->add(*new DrawRect(0, 0, float(nodeWidth()), float(nodeHeight()), iconColour));
    placeLabel(1.4);
}

int BlockIcon::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    ModelNode::iconParameters(mode, labels, values, count);
    if (mode == 1) {
        applyEntries();
        // New matrices ask whoever analyses the diagram to look again.
        cbackOn(AskAnalyse);
        return 0;
    }
    if (mode != 0) return 0;
    const char* rows[] = {"Block  Name", "A", "B", "C", "D", "X0", "Output-Input Dimensions"};
    String dimensions;
    dimensions += outputDimension();
    dimensions += ", ";
    dimensions += inputDimension();
    const String* texts[] = {&nodeName(),       &blockData_.aText, &blockData_.bText, &blockData_.cText,
                             &blockData_.dText, &initialState(),   &dimensions};
    for (unsigned i = 0; i < 7; ++i) {
        labels.add(*new String(rows[i]));
        values.add(*new String(*texts[i]));
    }
    count = 0;
    return 1;
}

String BlockIcon::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    String* entries[] = {&nameEntry, &aEntry, &bEntry, &cEntry, &dEntry, &x0Entry};
    for (unsigned i = 0; i < 6; ++i) *entries[i] = trimmedValue(values, i);
    ModelData entered;
    entered.aText = aEntry;
    entered.bText = bEntry;
    entered.cText = cEntry;
    entered.dText = dEntry;
    status = 1;
    return errorText("error", sizeMessage(entered).asCharPointer());
}

// The dimensions follow from the matrices entered.
void BlockIcon::applyEntries() {
    setNodeName(nameEntry.asCharPointer());
    blockData_.setName(nameEntry.asCharPointer());
    blockData_.aText = aEntry;
    blockData_.bText = bEntry;
    blockData_.cText = cEntry;
    blockData_.dText = dEntry;
    blockData_.x0Text = x0Entry;
    blockData_.changed = 1;
    DynOp* op = blockOperator();
    setInputDimension(int(op->inputNumber()));
    setOutputDimension(int(op->outputNumber()));
    delete op;
    rebuild();
}

void BlockIcon::storer(std::ostream& os) const {
    ModelNode::storer(os);
    blockFile_.storeOn(os);
    blockData_.storeOn(os);
    os << discrete << ' ' << samplingTime_ << ' ';
}

void BlockIcon::storer(BinOstream& os) const {
    ModelNode::storer(os);
    blockFile_.storeOn(os);
    blockData_.storeOn(os);
    os << discrete << samplingTime_;
}

void BlockIcon::clearCopiedState() {
    ModelNode::clearCopiedState();
    for (String* text : {&nameEntry, &aEntry, &bEntry, &cEntry, &dEntry, &x0Entry, &blockFile_, &loadMessage})
        text->clearCopiedState();
    blockData_.clearCopiedState();
}

void BlockIcon::deepenShallowCopy() {
    ModelNode::deepenShallowCopy();
    blockData_.deepenShallowCopy();
}
