// checkConsistency: the links of a block diagram checked and the dimensions of its terminals,
// sums and links settled from the blocks, whose dimensions their matrices fix.
#include <iostream>

#include "model/blockicon.h"
#include "model/signlink.h"
#include "model/stsem.h"
#include "model/termicon.h"

class ConsistencyCheck {
public:
    explicit ConsistencyCheck(StateTransSem& s) : sem(s) {}

    bool run(bool print) {
        structure();
        for (unsigned i = 0; i < sem.blocks.size(); ++i) fromBlock(node(sem.blocks, i));
        settleSums();
        for (unsigned i = 0; i < sem.sums.size(); ++i) sumLinks(node(sem.sums, i));
        for (unsigned i = 0; i < sem.inputs.size(); ++i) fromInput(node(sem.inputs, i));
        if (print && errors == 0) std::cout << "Model consistency OK" << std::endl;
        return errors == 0;
    }

private:
    static ModelNode& node(const OrderedCltn& c, unsigned i) { return *CAST(ModelNode, c.at(i)); }
    static std::vector<SignalLink*> links(ModelNode& n, bool outgoing) {
        OrderedCltn found;
        outgoing ? n.toLinks(found) : n.fromLinks(found);
        std::vector<SignalLink*> result;
        for (unsigned i = 0; i < found.size(); ++i)
            if (found.at(i)->isKindOf(class_SignalLink)) result.push_back(CAST(SignalLink, found.at(i)));
        return result;
    }
    static ModelNode* far(SignalLink& l, bool outgoing) {
        IconNode* n = outgoing ? l.to() : l.from();
        return n && n->isKindOf(class_ModelNode) ? static_cast<ModelNode*>(n) : 0;
    }
    static bool isBlock(ModelNode& n) { return n.isKindOf(class_BlockIcon); }
    static bool isSum(ModelNode& n) { return n.isKindOf(class_SumIcon); }

    void report(const String& name, const String& text, bool warning = false) {
        std::cerr << name.asCharPointer() << " " << text.asCharPointer() << std::endl;
        if (!warning) ++errors;
    }

    // Steps 1 to 4: every node has the links it needs, and every mark is cleared.
    void structure() {
        for (unsigned i = 0; i < sem.inputs.size(); ++i) needLinks(node(sem.inputs, i), true, false);
        for (unsigned i = 0; i < sem.blocks.size(); ++i) {
            ModelNode& b = node(sem.blocks, i);
            needLinks(b, true, false);
            b.setSettled(true);
            size_t in = links(b, false).size();
            if (in == 0) report(b.nodeName(), "has not input links");
            if (in > 1) report(b.nodeName(), "allows only one input link");
        }
        for (unsigned i = 0; i < sem.sums.size(); ++i) needLinks(node(sem.sums, i), true, true);
        for (unsigned i = 0; i < sem.outputs.size(); ++i) needLinks(node(sem.outputs, i), false, true);
    }

    void needLinks(ModelNode& n, bool out, bool in) {
        n.setSettled(false);
        std::vector<SignalLink*> outgoing = links(n, true);
        if (out && outgoing.empty()) report(n.nodeName(), "has not output links");
        for (SignalLink* l : outgoing) l->setSettled(false);
        if (in && links(n, false).empty()) report(n.nodeName(), "has not input links");
    }

    // The width a node sends or receives; a sum has one width for both.
    static int width(ModelNode& n, bool sending) {
        return sending ? n.outputDimension() : n.inputDimension();
    }
    static void give(ModelNode& n, int dim) {
        if (!n.isKindOf(class_InputSignalIcon)) n.setInputDimension(dim);
        if (!n.isKindOf(class_OutputSignalIcon)) n.setOutputDimension(dim);
        n.setSettled(true);
    }

    void mismatch(ModelNode& a, ModelNode& b) {
        report(String("No consistency between ") + a.nodeName(),
               String("ouput dimensions and ") + b.nodeName() + " input dimensions");
    }
    void badIndices(ModelNode& n, SignalLink& l) {
        report(String("No consistency between ") + n.nodeName(),
               String("dimensions and ") + l.signalName() + " multiplexing indices");
    }

    // Step 5 and its mirror: a settled node's links carry its width to the far ends.
    void fromSettled(ModelNode& n) {
        for (SignalLink* l : links(n, true)) carry(n, *l, true);
        if (isBlock(n))
            for (SignalLink* l : links(n, false)) carry(n, *l, false);
    }
    void fromBlock(ModelNode& b) { fromSettled(b); }

    // The link l of the settled node n, outgoing or incoming.
    void carry(ModelNode& n, SignalLink& l, bool outgoing) {
        ModelNode* other = far(l, outgoing);
        if (!other) return;
        int own = width(n, outgoing);
        if (l.hasMultiplexing()) return carryMultiplexed(n, l, *other, outgoing, own);
        if (!l.isSettled()) {
            l.setSignalDimension(own);
            l.setSettled(true);
            if (!isBlock(*other) && !other->isSettled()) return give(*other, own);
            if (width(*other, !outgoing) != own) outgoing ? mismatch(n, *other) : mismatch(*other, n);
            return;
        }
        if (l.signalDimension() != own) outgoing ? mismatch(n, *other) : mismatch(*other, n);
    }

    void carryMultiplexed(ModelNode& n, SignalLink& l, ModelNode& other, bool outgoing, int own) {
        if (outgoing ? !l.checkSourceIndices(own) : !l.checkDestIndices(own)) badIndices(n, l);
        outgoing ? l.setInputDimension(own) : l.setOutputDimension(own);
        int first = 0, last = 0;
        outgoing ? l.destIndices(first, last) : l.sourceIndices(first, last);
        l.setSignalDimension(last - first + 1);
        if (isBlock(other)) return;
        if (!other.isSettled()) {
            // A terminal or sum takes the widest index the link reaches.
            if (!isSum(other)) give(other, last);
            return;
        }
        int theirs = width(other, !outgoing);
        if (outgoing ? !l.checkDestIndices(theirs) : !l.checkSourceIndices(theirs)) badIndices(other, l);
        outgoing ? l.setOutputDimension(theirs) : l.setInputDimension(theirs);
    }

    // Steps 6 and 7: sums take their width from a settled neighbour, until no pass settles more.
    void settleSums() {
        bool changed = true;
        while (changed) {
            changed = false;
            for (unsigned i = 0; i < sem.sums.size(); ++i) {
                ModelNode& s = node(sem.sums, i);
                if (s.isSettled()) continue;
                int dim = neighbourWidth(s);
                if (dim <= 0) continue;
                give(s, dim);
                fromSettled(s);
                for (SignalLink* l : links(s, false)) carry(s, *l, false);
                changed = true;
            }
        }
        for (unsigned i = 0; i < sem.sums.size(); ++i) {
            ModelNode& s = node(sem.sums, i);
            if (!s.isSettled() && s.inputDimension() == 0 && s.outputDimension() == 0)
                report(String("Warning, sum node ") + s.nodeName(), "cannot set its dimension", true);
            s.setSettled(true);
        }
    }

    // The width of a settled link or node next to the sum, 0 when none is known.
    int neighbourWidth(ModelNode& s) {
        for (bool outgoing : {false, true})
            for (SignalLink* l : links(s, outgoing)) {
                if (l->hasMultiplexing()) {
                    int first = 0, last = 0;
                    outgoing ? l->sourceIndices(first, last) : l->destIndices(first, last);
                    ModelNode* other = far(*l, outgoing);
                    if (other && other->isSettled()) return last;
                    continue;
                }
                if (l->isSettled() && l->signalDimension() > 0) return l->signalDimension();
                ModelNode* other = far(*l, outgoing);
                if (other && other->isSettled() && width(*other, !outgoing) > 0)
                    return width(*other, !outgoing);
            }
        return 0;
    }

    // Step 8: a sum's links without multiplexing agree with it.
    void sumLinks(ModelNode& s) {
        for (bool outgoing : {true, false})
            for (SignalLink* l : links(s, outgoing)) {
                if (l->hasMultiplexing()) continue;
                if (width(s, outgoing) > 0)
                    carry(s, *l, outgoing);
                else if (!l->isSettled())
                    report(s.nodeName(), "is not directly connected with a block");
            }
    }

    // Step 9: an input's width, from its own dialogue or from a link that knows it.
    void fromInput(ModelNode& in) {
        if (!in.isSettled()) {
            for (SignalLink* l : links(in, true))
                if (!l->hasMultiplexing() && l->isSettled() && l->signalDimension() > 0) {
                    give(in, l->signalDimension());
                    break;
                }
            if (!in.isSettled() && in.outputDimension() > 0) in.setSettled(true);
        }
        if (!in.isSettled()) {
            report(in.nodeName(), "is not directly connected");
            return;
        }
        for (SignalLink* l : links(in, true))
            if (!l->hasMultiplexing()) carry(in, *l, true);
    }

    StateTransSem& sem;
    int errors = 0;
};

bool StateTransSem::checkConsistency(bool print) { return ConsistencyCheck(*this).run(print); }
