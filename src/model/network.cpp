// The interconnection of a block diagram's systems. Every signal of the diagram is written as rows
// over [x; r], the states of all blocks and the external inputs: a block's output is C x + D u, a
// sum's the signed total of what enters it. The nodes are valued in the order of their
// dependencies through direct gains, and each group that feeds itself (an algebraic loop) is
// solved at once; what the states then receive gives A and B, what the output terminals receive
// gives C and D. The cost grows with the number of signals times the number of states.
#include "model/network.h"

#include <algorithm>
#include <functional>

#include "algebra/algebra.h"
#include "quill/quillerr.h"

namespace {

// A dense block of rows over the columns [x; r], row-major.
struct Rows {
    int count = 0, width = 0;
    std::vector<double> data;
    Rows() = default;
    Rows(int rows, int columns) : count(rows), width(columns), data(size_t(rows) * size_t(columns), 0.0) {}
    double* row(int r) { return data.data() + size_t(r) * size_t(width); }
    const double* row(int r) const { return data.data() + size_t(r) * size_t(width); }
};

// Adds factor times the rows of a matrix's columns to target: target += factor * M * source.
void addProduct(Rows& target, const Matrix& M, const Rows& source, double factor = 1.0) {
    for (unsigned i = 0; i < M.rowNumber(); ++i)
        for (unsigned k = 0; k < M.columnNumber(); ++k) {
            double m = factor * M(i, k);
            if (m == 0.0) continue;
            double* t = target.row(int(i));
            const double* s = source.row(int(k));
            for (int c = 0; c < target.width; ++c) t[c] += m * s[c];
        }
}

Matrix zeros(int rows, int columns) {
    return Matrix(static_cast<unsigned>(rows), static_cast<unsigned>(columns));
}

class Composer {
public:
    explicit Composer(const Network& n) : net(n) {
        for (const DynOp& b : net.blocks) {
            stateOffset.push_back(states);
            states += int(b.order());
        }
        for (int d : net.inputDims) {
            inputOffset.push_back(inputs);
            inputs += d;
        }
        width = states + inputs;
        int nodes = int(net.blocks.size() + net.sumDims.size());
        incoming.assign(size_t(nodes + net.outputDims.size()), {});
        for (const NetLink& l : net.links)
            if (valid(l.from, true) && valid(l.to, false)) incoming[size_t(slot(l.to))].push_back(&l);
        value.assign(size_t(nodes), Rows());
        done.assign(size_t(nodes), false);
    }

    DynOp compose() {
        valueAll();
        Matrix A = zeros(states, states), B = zeros(states, inputs);
        for (size_t b = 0; b < net.blocks.size(); ++b) stateRows(int(b), A, B);
        int outputs = 0;
        for (int d : net.outputDims) outputs += d;
        Matrix C = zeros(outputs, states), D = zeros(outputs, inputs);
        int row = 0;
        for (size_t o = 0; o < net.outputDims.size(); ++o) {
            Rows y = received(int(net.blocks.size() + net.sumDims.size() + o), net.outputDims[o]);
            split(y, C, D, row);
            row += net.outputDims[o];
        }
        if (states == 0) return DynOp(D);
        return DynOp(A, B, C, D);
    }

private:
    int dimOf(const NetEnd& e, bool source) const {
        switch (e.kind) {
            case NetEnd::Input:
                return net.inputDims[size_t(e.index)];
            case NetEnd::Block:
                return int(source ? net.blocks[size_t(e.index)].outputNumber()
                                  : net.blocks[size_t(e.index)].inputNumber());
            case NetEnd::Sum:
                return net.sumDims[size_t(e.index)];
            default:
                return net.outputDims[size_t(e.index)];
        }
    }
    bool valid(const NetEnd& e, bool source) const {
        if (e.index < 0) return false;
        switch (e.kind) {
            case NetEnd::Input:
                return source && size_t(e.index) < net.inputDims.size();
            case NetEnd::Block:
                return size_t(e.index) < net.blocks.size();
            case NetEnd::Sum:
                return size_t(e.index) < net.sumDims.size();
            default:
                return !source && size_t(e.index) < net.outputDims.size();
        }
    }
    // Blocks, then sums, then outputs: the nodes that have a value come first.
    int slot(const NetEnd& e) const {
        if (e.kind == NetEnd::Block) return e.index;
        if (e.kind == NetEnd::Sum) return int(net.blocks.size()) + e.index;
        return int(net.blocks.size() + net.sumDims.size()) + e.index;
    }
    bool isSum(int node) const { return node >= int(net.blocks.size()); }
    bool feedsThrough(int node) const {
        return isSum(node) || !net.blocks[size_t(node)].getD().allAbsNotAbove(0.0);
    }

    // The nodes that node's value needs before it can be known.
    std::vector<int> dependencies(int node) const {
        std::vector<int> result;
        if (!feedsThrough(node)) return result;
        for (const NetLink* l : incoming[size_t(node)])
            if (l->from.kind != NetEnd::Input) result.push_back(slot(l->from));
        return result;
    }

    // Tarjan's strongly connected components, found in an order where each group's dependencies
    // come before it; each group is valued as soon as it is found.
    void valueAll() {
        int nodes = int(value.size()), counter = 0;
        std::vector<int> index(size_t(nodes), -1), low(size_t(nodes), 0), stack;
        std::vector<bool> onStack(size_t(nodes), false);
        std::function<void(int)> visit = [&](int v) {
            index[size_t(v)] = low[size_t(v)] = counter++;
            stack.push_back(v);
            onStack[size_t(v)] = true;
            for (int w : dependencies(v)) {
                if (index[size_t(w)] < 0) {
                    visit(w);
                    low[size_t(v)] = std::min(low[size_t(v)], low[size_t(w)]);
                } else if (onStack[size_t(w)]) {
                    low[size_t(v)] = std::min(low[size_t(v)], index[size_t(w)]);
                }
            }
            if (low[size_t(v)] != index[size_t(v)]) return;
            std::vector<int> group;
            int w;
            do {
                w = stack.back();
                stack.pop_back();
                onStack[size_t(w)] = false;
                group.push_back(w);
            } while (w != v);
            valueGroup(group);
        };
        for (int v = 0; v < nodes; ++v)
            if (index[size_t(v)] < 0) visit(v);
    }

    int valueDim(int node) const {
        return isSum(node) ? net.sumDims[size_t(node) - net.blocks.size()]
                           : int(net.blocks[size_t(node)].outputNumber());
    }

    // What the links into a node carry, as rows, leaving out sources not yet valued (which the
    // loop solution accounts for) when skipUnknown is set.
    Rows received(int node, int dim, bool skipUnknown = false) const {
        Rows u(dim, width);
        for (const NetLink* l : incoming[size_t(node)]) {
            if (skipUnknown && l->from.kind != NetEnd::Input && !done[size_t(slot(l->from))]) continue;
            carried(*l, u.count, [&](int s, int d) { addSource(l->from, s, u.row(d), signAt(*l)); });
        }
        return u;
    }

    static double signAt(const NetLink& l) { return l.to.kind == NetEnd::Sum ? l.sign : 1.0; }

    // Calls pair(source row, destination row) for each row the link carries into a destination
    // of destDim rows.
    template <class Pair>
    void carried(const NetLink& l, int destDim, Pair pair) const {
        int from = dimOf(l.from, true), count = l.count > 0 ? l.count : std::min(from, destDim);
        for (int k = 0; k < count; ++k) {
            int s = l.sourceFirst + k, d = l.destFirst + k;
            if (s >= 0 && s < from && d >= 0 && d < destDim) pair(s, d);
        }
    }

    void addSource(const NetEnd& e, int r, double* target, double factor) const {
        if (e.kind == NetEnd::Input) {
            target[states + inputOffset[size_t(e.index)] + r] += factor;
            return;
        }
        const double* s = value[size_t(slot(e))].row(r);
        for (int c = 0; c < width; ++c) target[c] += factor * s[c];
    }

    // The part of a node's value that does not pass through its direct gain: C x for a block.
    Rows ownPart(int node) const {
        int dim = valueDim(node);
        Rows y(dim, width);
        if (isSum(node)) return y;
        const DynOp& b = net.blocks[size_t(node)];
        if (b.order() == 0) return y;
        Matrix c = b.stateC();
        int offset = stateOffset[size_t(node)];
        for (int i = 0; i < dim; ++i)
            for (unsigned k = 0; k < b.order(); ++k) y.row(i)[offset + int(k)] = c(unsigned(i), k);
        return y;
    }

    // value = own + G * received, with G the node's direct gain (the identity for a sum).
    void valueOne(int node) {
        Rows y = ownPart(node);
        done[size_t(node)] = true;
        if (!feedsThrough(node)) {
            value[size_t(node)] = y;
            return;
        }
        Rows u = received(node, isSum(node) ? valueDim(node) : int(net.blocks[size_t(node)].inputNumber()));
        if (isSum(node))
            y = u;
        else
            addProduct(y, net.blocks[size_t(node)].getD(), u);
        value[size_t(node)] = y;
    }

    void valueGroup(const std::vector<int>& group) {
        bool loop = group.size() > 1;
        for (int w : dependencies(group[0])) loop = loop || w == group[0];
        if (!loop) return valueOne(group[0]);
        solveLoop(group);
    }

    // The group's stacked values v satisfy v = e + L v: e from the states and the nodes valued
    // before, L the gains among the group. Solved as (I - L) v = e.
    void solveLoop(const std::vector<int>& group) {
        std::vector<int> offset;
        int total = 0;
        for (int node : group) {
            offset.push_back(total);
            total += valueDim(node);
        }
        auto position = [&](int node) {
            auto it = std::find(group.begin(), group.end(), node);
            return it == group.end() ? -1 : offset[size_t(it - group.begin())];
        };
        Matrix L = zeros(total, total), E = zeros(total, width);
        for (size_t g = 0; g < group.size(); ++g) {
            int node = group[g];
            bool sum = isSum(node);
            int inputsOf = sum ? valueDim(node) : int(net.blocks[size_t(node)].inputNumber());
            Matrix G = sum ? Matrix::diagonal(unsigned(inputsOf), 1.0) : net.blocks[size_t(node)].getD();
            // The part of the inputs from inside the group, as a selection from the group's values.
            Matrix S = zeros(inputsOf, total);
            for (const NetLink* l : incoming[size_t(node)]) {
                int at = l->from.kind == NetEnd::Input ? -1 : position(slot(l->from));
                if (at < 0) continue;
                carried(*l, inputsOf, [&](int s, int d) { S(unsigned(d), unsigned(at + s)) += signAt(*l); });
            }
            Matrix GS = G * S;
            L.setSubMatrix(offset[g], 0, GS, int(GS.rowNumber()), int(GS.columnNumber()));
            Rows e = ownPart(node);
            addProduct(e, G, received(node, inputsOf, true));
            for (int i = 0; i < e.count; ++i)
                for (int c = 0; c < width; ++c) E(unsigned(offset[g] + i), unsigned(c)) = e.row(i)[c];
        }
        bool singular = false;
        Matrix v = Algebra().solve(Matrix::diagonal(unsigned(total), 1.0) - L, E, &singular);
        if (singular)
            setError(GENERICERR, SEV_ERROR, "ALGEBRAIC_LOOP", "an algebraic loop of the diagram ",
                     "has no solution: ", "its direct gains add up to one");
        for (size_t g = 0; g < group.size(); ++g) {
            Rows y(valueDim(group[g]), width);
            for (int i = 0; i < y.count; ++i)
                for (int c = 0; c < width; ++c) y.row(i)[c] = v(unsigned(offset[g] + i), unsigned(c));
            value[size_t(group[g])] = y;
            done[size_t(group[g])] = true;
        }
    }

    // A block's rows of A and B: its own A, and B times what enters it.
    void stateRows(int block, Matrix& A, Matrix& B) const {
        const DynOp& b = net.blocks[size_t(block)];
        if (b.order() == 0) return;
        int n = int(b.order()), offset = stateOffset[size_t(block)];
        Rows x(n, width);
        Matrix a = b.stateA();
        for (int i = 0; i < n; ++i)
            for (int k = 0; k < n; ++k) x.row(i)[offset + k] = a(unsigned(i), unsigned(k));
        addProduct(x, b.stateB(), received(block, int(b.inputNumber())));
        split(x, A, B, offset);
    }

    void split(const Rows& rows, Matrix& left, Matrix& right, int at) const {
        for (int i = 0; i < rows.count; ++i) {
            const double* r = rows.row(i);
            for (int c = 0; c < states; ++c) left(unsigned(at + i), unsigned(c)) = r[c];
            for (int c = 0; c < inputs; ++c) right(unsigned(at + i), unsigned(c)) = r[states + c];
        }
    }

    const Network& net;
    int states = 0, inputs = 0, width = 0;
    std::vector<int> stateOffset, inputOffset;
    std::vector<std::vector<const NetLink*>> incoming;  // by slot
    std::vector<Rows> value;                            // by slot, blocks and sums
    std::vector<bool> done;
};

}  // namespace

DynOp composeNetwork(const Network& net) { return Composer(net).compose(); }
