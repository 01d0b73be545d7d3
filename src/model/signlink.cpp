// SignalLink: stream forms, the multiplexing ranges, the dialogue that works out dimensions, and the picture.
#include "model/signlink.h"

#include <iostream>

#include "model/blockicon.h"
#include "model/termicon.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(SignalLink, StateTransLink, 1, 0)

namespace {

// The block diagram reads every multiplexing against these limits.
const int MUX_LIMIT = 1000;
const char* const CLOSING =
    "\nwhen the network has been completed execute the command \"Check Model Consistency\"";

ModelNode* modelNode(IconNode* end) { return dynamic_cast<ModelNode*>(end); }
bool isBlock(ModelNode* node) { return dynamic_cast<BlockIcon*>(node) != 0; }

// The outputs of a source that knows them: a block always, an input or a sum once they are set.
int knownOutputs(ModelNode* node) {
    bool knows = isBlock(node) || dynamic_cast<InputSignalIcon*>(node) || dynamic_cast<SumIcon*>(node);
    return knows && node->outputDimension() > 0 ? node->outputDimension() : 0;
}

// The inputs of a destination that knows them: a block, an output or a sum.
int knownInputs(ModelNode* node) {
    bool knows = isBlock(node) || dynamic_cast<OutputSignalIcon*>(node) || dynamic_cast<SumIcon*>(node);
    return knows && node->inputDimension() > 0 ? node->inputDimension() : 0;
}

}  // namespace

SignalLink::SignalLink(std::istream& is, Object* where) : StateTransLink(is, where) { readFields(is); }

SignalLink::SignalLink(BinIstream& is, Object* where) : StateTransLink(is, where) { readFields(is); }

template <class Stream>
void SignalLink::readFields(Stream& is) {
    readFrom(is, class_String, &signalName_);
    readFrom(is, class_String, &sign_);
    signalDimension_ = readNumber<int>(is);
    if (!atObjectEnd(is)) readFrom(is, class_String, &multiplexing_);
    if (!atObjectEnd(is)) {
        inputDimension_ = readNumber<int>(is);
        outputDimension_ = readNumber<int>(is);
    }
    for (String* text : {&signalName_, &sign_, &multiplexing_}) *text = text->stripBoth();
}

SignalLink::~SignalLink() noexcept(false) {}

int SignalLink::signValue() const { return sign_ == "-" ? -1 : 1; }

Multiplexing SignalLink::parsed() const {
    return parseMultiplexing(multiplexing_.asCharPointer(), MuxWording::Link, MuxMode::Ranges, MUX_LIMIT,
                             MUX_LIMIT);
}

void SignalLink::sourceIndices(int& first, int& last) {
    Multiplexing m = parsed();
    first = m.sourceFirst;
    last = m.sourceLast;
}

void SignalLink::destIndices(int& first, int& last) {
    Multiplexing m = parsed();
    first = m.destFirst;
    last = m.destLast;
}

void SignalLink::allIndices(int& sf, int& sl, int& df, int& dl) {
    Multiplexing m = parsed();
    sf = m.sourceFirst;
    sl = m.sourceLast;
    df = m.destFirst;
    dl = m.destLast;
}

bool SignalLink::checkSourceIndices(int n) {
    int first, last;
    sourceIndices(first, last);
    return first <= n && last <= n;
}

bool SignalLink::checkDestIndices(int n) {
    int first, last;
    destIndices(first, last);
    return first <= n && last <= n;
}

void SignalLink::fillRows(OrderedCltn& labels, OrderedCltn& values, int& count) const {
    String dimension;
    if (inputDimension_ > 0 || outputDimension_ > 0) {
        dimension += inputDimension_;
        dimension += ", ";
        dimension += outputDimension_;
    } else if (signalDimension_ > 0) {
        dimension += signalDimension_;
    }
    for (const char* label : {"Signal Name", "Sign(+-)", "Multiplexing", "Signal Dimension"})
        labels.add(*new String(label));
    for (const String& value : {signalName_, sign_, multiplexing_, dimension}) values.add(*new String(value));
    count = 0;
}

void SignalLink::takeEntries() {
    signalName_ = nameEntry;
    sign_ = signEntry;
    multiplexing_ = muxEntry;
    signalDimension_ = inputDimension_ = outputDimension_ = 0;
}

int SignalLink::iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    StateTransLink::iconParameters(mode, labels, values, count);
    if (mode == 0) {
        fillRows(labels, values, count);
        return 1;
    }
    if (mode != 1) return 0;
    takeEntries();
    ModelNode* source = modelNode(from());
    ModelNode* dest = modelNode(to());
    if (hasMultiplexing())
        applyMultiplexing(source, dest);
    else
        applyWhole(source, dest);
    unbuildIcon();
    buildIcon();
    return 0;
}

// The signal is the selected part of the source's outputs.
void SignalLink::applyMultiplexing(ModelNode* source, ModelNode* dest) {
    Multiplexing m = parsed();
    if (!m.ok()) std::cerr << m.message << std::endl;
    inputDimension_ = knownOutputs(source);
    outputDimension_ = knownInputs(dest);
    signalDimension_ = m.ok() ? m.sourceLast - m.sourceFirst + 1 : 0;
    if (inputDimension_ > 0 && (inputDimension_ < m.sourceFirst || inputDimension_ < m.sourceLast))
        std::cerr << "Warning: the input multiplexing indices are greater than the number of inputs "
                  << inputDimension_ << std::endl;
    if (outputDimension_ > 0 && (outputDimension_ < m.destFirst || outputDimension_ < m.destLast))
        std::cerr << "Warning: the output multiplexing indices are greater than the number of outputs "
                  << outputDimension_ << std::endl;
}

// The whole signal: the source's outputs, else the destination's inputs; an
// input, output or sum without a dimension takes the signal's.
void SignalLink::applyWhole(ModelNode* source, ModelNode* dest) {
    signalDimension_ = knownOutputs(source);
    int inputs = knownInputs(dest);
    if (inputs > 0 && signalDimension_ != 0 && inputs != signalDimension_)
        std::cerr << "Warning: output dimension (" << signalDimension_ << ") of previous block "
                  << source->nodeName() << "\nis not equal to input dimension (" << inputs
                  << ") of next block " << dest->nodeName() << CLOSING << std::endl;
    if (signalDimension_ == 0) signalDimension_ = inputs;
    if (signalDimension_ <= 0) return;
    if ((dynamic_cast<InputSignalIcon*>(source) || dynamic_cast<SumIcon*>(source)) &&
        source->outputDimension() == 0)
        source->setOutputDimension(signalDimension_);
    if ((dynamic_cast<OutputSignalIcon*>(dest) || dynamic_cast<SumIcon*>(dest)) &&
        dest->inputDimension() == 0)
        dest->setInputDimension(signalDimension_);
}

int SignalLink::iconParametersTo(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) {
    StateTransLink::iconParameters(mode, labels, values, count);
    if (mode == 0) {
        fillRows(labels, values, count);
        return 1;
    }
    if (mode != 1) return 0;
    int own = signalDimension_;
    takeEntries();
    ModelNode* source = modelNode(from());
    int outputs = knownOutputs(source);
    if (hasMultiplexing()) {
        applyMultiplexing(source, 0);
    } else {
        if (outputs > 0 && own > 0 && own != outputs)
            std::cerr << "Warning: signal dimension (" << own
                      << ") of this link\nis not equal to output dimension (" << outputs << ") of "
                      << (isBlock(source) ? "block " : "element ") << source->nodeName() << CLOSING
                      << std::endl;
        signalDimension_ = outputs > 0 ? outputs : own;
    }
    unbuildIcon();
    buildIcon();
    return 0;
}

String SignalLink::checkParameters(int mode, const OrderedCltn& values, int& status) {
    if (mode != 0) return String();
    String* entries[] = {&nameEntry, &signEntry, &muxEntry};
    for (unsigned i = 0; i < 3; ++i) *entries[i] = ModelNode::trimmedValue(values, i);
    String text;
    BlockIcon* block = dynamic_cast<BlockIcon*>(to());
    if (muxEntry.size() > 0 && block) {
        Multiplexing m = parseMultiplexing(muxEntry.asCharPointer(), MuxWording::Link, MuxMode::Ranges,
                                           MUX_LIMIT, MUX_LIMIT);
        if (block->inputDimension() > m.destLast - m.destFirst + 1)
            text = "icon " + block->nodeName() +
                   " cannot be directly connected to a multiplexer link\nuse a Sum icon";
    }
    status = 1;
    return ModelNode::errorText("noerror", text.asCharPointer());
}

String& SignalLink::iconDescription(String& result) {
    result = "Signal Link";
    return result;
}

bool SignalLink::hasComment() { return true; }

void SignalLink::buildIcon() {
    StateTransLink::buildIcon();
    defaultComment();
}

void SignalLink::defaultComment() {
    commentIcon()->deleteIcons();
    addCommentLine(signalName_, 0);
    std::string lines = std::string(multiplexing_.stripBoth().asCharPointer()) + "\n";
    int line = 1;
    for (size_t at = 0, end; (end = lines.find('\n', at)) != std::string::npos; at = end + 1, ++line)
        addCommentLine(lines.substr(at, end - at).c_str(), line);
}

// A line of the comment, 0.6 cells below the one before.
void SignalLink::addCommentLine(const String& text, int line) {
    DrawImageString* shown =
        new DrawImageString(0, line * 0.6f, text.size() * 0.48f, text.asCharPointer(), stringColour);
    shown->height = 0.6f;
    commentIcon()->add(*shown);
}

void SignalLink::printOn(std::ostream& os) const {
    os << signalName_ << ", " << sign_ << ", " << multiplexing_ << ", " << signalDimension_;
}

void SignalLink::storer(std::ostream& os) const {
    StateTransLink::storer(os);
    signalName_.storeOn(os);
    sign_.storeOn(os);
    os << signalDimension_ << ' ';
    multiplexing_.storeOn(os);
    os << inputDimension_ << ' ' << outputDimension_ << ' ';
}

void SignalLink::storer(BinOstream& os) const {
    StateTransLink::storer(os);
    signalName_.storeOn(os);
    sign_.storeOn(os);
    os << signalDimension_;
    multiplexing_.storeOn(os);
    os << inputDimension_ << outputDimension_;
}

void SignalLink::clearCopiedState() {
    StateTransLink::clearCopiedState();
    for (String* text : {&nameEntry, &signEntry, &muxEntry, &signalName_, &sign_, &multiplexing_})
        text->clearCopiedState();
}
