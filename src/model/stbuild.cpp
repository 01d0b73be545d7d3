// buildSystem: the model of a checked block diagram. The nodes are taken in the order of the
// traversal (inputs in order, each link in order, depth first, sums in the order first reached,
// pass after pass), the interconnection composed, and the result put in the order of the title's
// name lists, weighted, sampled, saved and printed.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>

#include "algebra/algebra.h"
#include "algebra/shortnum.h"
#include "control/discdyn.h"
#include "control/extsys.h"
#include "model/blockicon.h"
#include "model/signlink.h"
#include "model/stsem.h"
#include "model/termicon.h"
#include "model/titleicon.h"

class DiagramBuilder {
public:
    explicit DiagramBuilder(StateTransSem& s) : sem(s) {}

    // The diagram's system with its names in traversal order.
    DynOp compose(ModelNames& names) {
        for (unsigned i = 0; i < sem.inputs.size(); ++i) addInput(*CAST(ModelNode, sem.inputs.at(i)), names);
        std::vector<ModelNode*> sources;
        for (unsigned i = 0; i < sem.inputs.size(); ++i) sources.push_back(CAST(ModelNode, sem.inputs.at(i)));
        while (!sources.empty()) {
            std::vector<ModelNode*> next;
            for (ModelNode* s : sources) follow(*s, next, names);
            sources = next;
        }
        for (auto& entry : index) addLinks(*entry.first);
        return composeNetwork(net);
    }

private:
    static std::vector<SignalLink*> outgoing(ModelNode& n) {
        OrderedCltn found;
        n.toLinks(found);
        std::vector<SignalLink*> result;
        for (unsigned i = 0; i < found.size(); ++i)
            if (found.at(i)->isKindOf(class_SignalLink)) result.push_back(CAST(SignalLink, found.at(i)));
        return result;
    }

    void addInput(ModelNode& in, ModelNames& names) {
        int dim = in.outputDimension();
        if (dim == 0)
            std::cerr << "Warning, the input " << in.nodeName().asCharPointer()
                      << " cannot establish its dimension automatically\nopen the input icon and assign its "
                         "dimension by hand"
                      << std::endl;
        index[&in] = {NetEnd::Input, int(net.inputDims.size())};
        net.inputDims.push_back(dim);
        addChannelNames(names.inputs, in.nodeName(), dim);
    }

    static void addChannelNames(std::vector<std::string>& list, const String& name, int dim) {
        for (int k = 1; k <= dim; ++k)
            list.push_back(dim == 1 ? name.asCharPointer()
                                    : std::string(name.asCharPointer()) + "." + std::to_string(k));
    }

    // Depth first from a source along its links; sums met for the first time wait for the next pass.
    void follow(ModelNode& from, std::vector<ModelNode*>& nextSums, ModelNames& names) {
        for (SignalLink* l : outgoing(from)) {
            IconNode* to = l->to();
            if (!to || !to->isKindOf(class_ModelNode) || index.count(static_cast<ModelNode*>(to))) continue;
            ModelNode& node = static_cast<ModelNode&>(*to);
            if (node.isKindOf(class_OutputSignalIcon)) {
                index[&node] = {NetEnd::Output, int(net.outputDims.size())};
                net.outputDims.push_back(node.inputDimension());
                addChannelNames(names.outputs, node.nodeName(), node.inputDimension());
            } else if (node.isKindOf(class_SumIcon)) {
                index[&node] = {NetEnd::Sum, int(net.sumDims.size())};
                net.sumDims.push_back(std::max(node.inputDimension(), node.outputDimension()));
                nextSums.push_back(&node);
            } else if (node.isKindOf(class_BlockIcon)) {
                addBlock(static_cast<BlockIcon&>(node), names);
                follow(node, nextSums, names);
            }
        }
    }

    void addBlock(BlockIcon& block, ModelNames& names) {
        index[&block] = {NetEnd::Block, int(net.blocks.size())};
        std::unique_ptr<DynOp> op(block.blockOperator());
        net.blocks.push_back(DynOp(*op));
        Matrix x0 = block.initialStateVector();
        for (unsigned k = 1; k <= op->order(); ++k) {
            names.states.push_back(std::string(block.nodeName().asCharPointer()) + ".x" + std::to_string(k));
            names.initialState.push_back(x0.rowNumber() == op->order() ? x0(k - 1, 0) : 0.0);
        }
    }

    void addLinks(ModelNode& from) {
        for (SignalLink* l : outgoing(from)) {
            IconNode* to = l->to();
            auto end = index.find(static_cast<ModelNode*>(to));
            if (!to || end == index.end()) continue;
            NetLink link;
            link.from = index[&from];
            link.to = end->second;
            link.sign = l->signValue();
            if (l->hasMultiplexing()) {
                int sf = 0, sl = 0, df = 0, dl = 0;
                l->allIndices(sf, sl, df, dl);
                link.sourceFirst = sf - 1;
                link.destFirst = df - 1;
                link.count = std::max(0, sl - sf + 1);
            }
            net.links.push_back(link);
        }
    }

    StateTransSem& sem;
    Network net;
    std::map<ModelNode*, NetEnd> index;
};

namespace {

// The channels of each terminal that the model holds, by name: where its first channel lies in
// the model's order, and how many it has. Terminals are listed in the order of the drawing.
struct Terminal {
    std::string name;
    int first, dim;
};

std::vector<Terminal> terminals(const OrderedCltn& icons, const std::vector<std::string>& channels,
                                bool inputs) {
    std::vector<Terminal> result;
    for (unsigned i = 0; i < icons.size(); ++i) {
        ModelNode& n = *CAST(ModelNode, icons.at(i));
        int dim = inputs ? n.outputDimension() : n.inputDimension();
        std::string name = n.nodeName().asCharPointer();
        auto at = std::find(channels.begin(), channels.end(), dim == 1 ? name : name + ".1");
        // Outputs that the traversal never reached carry no channel.
        if (dim > 0 && at != channels.end()) result.push_back({name, int(at - channels.begin()), dim});
    }
    return result;
}

// The order of the channels by the title's list: named terminals first as listed, the others
// after them in the default order. A warning tells each defect of the list; firstGroup receives
// the channels of the names before the first comma.
std::vector<int> listedOrder(const String& list, std::vector<Terminal> terms, const char* kind,
                             int& firstGroup) {
    int firstCount = 0, secondCount = 0;
    std::vector<std::string> listed = TitleIcon::splitList(list, firstCount, secondCount);
    std::string tail = "\nopen the title and correct the list";
    std::string what = std::string("in the list of the ") + kind + " names";
    if (listed.size() < terms.size())
        std::cerr << "Warning, " << what << " not all " << kind << "s have been assigned" << tail
                  << std::endl;
    if (listed.size() > terms.size())
        std::cerr << "Warning, " << what << " there are more names than " << kind << "s" << tail << std::endl;
    std::vector<int> order;
    std::vector<bool> taken(terms.size(), false);
    firstGroup = 0;
    for (size_t i = 0; i < listed.size(); ++i) {
        auto it =
            std::find_if(terms.begin(), terms.end(), [&](const Terminal& t) { return t.name == listed[i]; });
        if (it == terms.end()) {
            std::cerr << "Warning, \"" << listed[i] << "\" " << what << " is incorrect" << tail << std::endl;
            continue;
        }
        size_t t = size_t(it - terms.begin());
        if (taken[t]) {
            std::cerr << "Warning, " << what << " there are more " << kind << "s with the same name "
                      << listed[i] << std::endl;
            continue;
        }
        taken[t] = true;
        for (int k = 0; k < it->dim; ++k) order.push_back(it->first + k);
        if (int(i) < firstCount) firstGroup += it->dim;
    }
    for (size_t t = 0; t < terms.size(); ++t)
        if (!taken[t])
            for (int k = 0; k < terms[t].dim; ++k) order.push_back(terms[t].first + k);
    return order;
}

// The permutation P with P(i, order[i]) = 1: P y lists the channels in the new order.
Matrix permutation(const std::vector<int>& order) {
    Matrix P(static_cast<unsigned>(order.size()), static_cast<unsigned>(order.size()));
    for (size_t i = 0; i < order.size(); ++i) P(unsigned(i), unsigned(order[i])) = 1.0;
    return P;
}

std::vector<std::string> reordered(const std::vector<std::string>& names, const std::vector<int>& order) {
    std::vector<std::string> result;
    for (int i : order) result.push_back(names[size_t(i)]);
    return result;
}

// The names in the model's order, blank-separated.
std::string defaultList(std::vector<Terminal> terms) {
    std::sort(terms.begin(), terms.end(),
              [](const Terminal& a, const Terminal& b) { return a.first < b.first; });
    std::string text;
    for (const Terminal& t : terms) text += (text.empty() ? "" : " ") + t.name;
    return text;
}

// The signed permutation of the title's state list, or false after the warning. The names and
// the initial state follow the states.
bool stateTransformation(const String& list, unsigned states, Matrix& T, std::vector<std::string>& names,
                         std::vector<double>& initial) {
    int first = 0, second = 0;
    std::vector<std::string> entries = TitleIcon::splitList(list, first, second);
    if (entries.empty()) return false;
    bool valid = entries.size() == states;
    T = Matrix(states, states);
    std::vector<std::string> renamed(states);
    std::vector<double> moved(states);
    for (unsigned i = 0; valid && i < states; ++i) {
        const std::string& e = entries[i];
        bool negative = !e.empty() && e[0] == '-';
        char* end = 0;
        long k = strtol(e.c_str() + (negative ? 1 : 0), &end, 10);
        valid = *end == 0 && k >= 1 && k <= long(states) && T.row(int(k - 1)).sum() == 0 &&
                T(unsigned(k - 1), i) == 0;
        if (!valid) break;
        T(unsigned(k - 1), i) = negative ? -1.0 : 1.0;
        renamed[i] = (negative ? "-" : "") + names[size_t(k - 1)];
        moved[i] = (negative ? -1.0 : 1.0) * initial[size_t(k - 1)];
    }
    if (!valid) {
        std::cerr
            << "Warning, the number of indices for reordering state is uncorrect and they will be ignored\n"
               "open the title and adjourn the list"
            << std::endl;
        return false;
    }
    names = renamed;
    initial = moved;
    return true;
}

}  // namespace

std::unique_ptr<DynOp> StateTransSem::buildSystem(bool save, bool print, double period) {
    delete identPoles;
    identPoles = 0;
    names = ModelNames();
    DynOp system = DiagramBuilder(*this).compose(names);

    // Inputs and outputs in the order of the title's lists.
    std::vector<Terminal> ins = terminals(inputs, names.inputs, true),
                          outs = terminals(outputs, names.outputs, false);
    std::vector<int> inOrder, outOrder;
    if (title && title->inputList().size() > 0) {
        inOrder = listedOrder(title->inputList(), ins, "input", names.disturbances);
    } else {
        for (int i = 0; i < int(names.inputs.size()); ++i) inOrder.push_back(i);
        names.disturbances = int(names.inputs.size());
        if (title) title->setInputList(defaultList(ins).c_str());
    }
    if (title && title->outputList().size() > 0) {
        outOrder = listedOrder(title->outputList(), outs, "output", names.objectives);
    } else {
        for (int i = 0; i < int(names.outputs.size()); ++i) outOrder.push_back(i);
        names.objectives = int(names.outputs.size());
        if (title) title->setOutputList(defaultList(outs).c_str());
    }
    if (inOrder.size() == system.inputNumber() && outOrder.size() == system.outputNumber()) {
        system = permutation(outOrder) * system * permutation(inOrder).transpose();
        names.inputs = reordered(names.inputs, inOrder);
        names.outputs = reordered(names.outputs, outOrder);
    }
    if (weightMatrix.rowNumber() == system.outputNumber() &&
        weightMatrix.columnNumber() == system.outputNumber())
        system = weightMatrix * system;

    Matrix T;
    if (system.order() > 0 && title &&
        stateTransformation(title->stateList(), system.order(), T, names.states, names.initialState))
        system = system.changeBasis(T);

    if (!names.isPure())
        system = DynOp(system, system.inputNumber() - unsigned(names.disturbances),
                       system.outputNumber() - unsigned(names.objectives), 0);
    std::unique_ptr<DynOp> model;
    if (!continuous)
        model.reset(new DiscDynOp(system, true, samplingTime));
    else if (period > 0)
        model.reset(new DiscDynOp(system, false, period));
    else
        model.reset(new DynOp(system));
    if (save) saveBuilt(*model, period);
    if (print) writeMatlab(std::cout, *model, names);
    return model;
}

// The model file: the system itself, or with a split of its inputs or outputs an extended system
// holding the blocks of the special names.
void StateTransSem::saveBuilt(const DynOp& model, double period) {
    std::string file = modelFile;
    if (file.empty()) {
        file = title ? title->titleName().asCharPointer() : "TITLE";
        if (period > 0) file += shortNumber(period);
        file += ".dyn";
    }
    bool stored = false;
    if (names.isPure()) {
        stored = Algebra().storeToFile(model, file.c_str());
    } else {
        ExtendedSystem extended(model);
        for (unsigned i = 0; i < blocks.size(); ++i) {
            BlockIcon& b = *CAST(BlockIcon, blocks.at(i));
            for (const char* special : {"Model", "Wym", "Wyr", "Geqd", "W21", "W22"})
                if (b.nodeName() == special) {
                    std::unique_ptr<DynOp> element(b.blockOperator());
                    extended.setElement(special, *element);
                }
        }
        stored = Algebra().storeToFile(extended, file.c_str());
    }
    std::cout << (stored ? "model saved in " : "cannot write the file ") << file << std::endl;
}

void StateTransSem::writeMatlab(std::ostream& os, const DynOp& model, const ModelNames& names) {
    os << "A = " << model.stateA().precision(16) << ";\n";
    os << "B = " << model.stateB().precision(16) << ";\n";
    os << "C = " << model.stateC().precision(16) << ";\n";
    os << "D = " << model.getD().precision(16) << ";\n";
    auto comment = [&os](const char* what, const std::vector<std::string>& list) {
        if (list.empty()) return;
        os << "% " << what << ":";
        for (const std::string& n : list) os << " " << n;
        os << "\n";
    };
    comment("inputs", names.inputs);
    comment("outputs", names.outputs);
    comment("states", names.states);
    if (model.isDiscreteTime()) os << "% sampling time " << model.samplingTimeOf() << " s\n";
    os << "system = ss(A,B,C,D);" << std::endl;
}
