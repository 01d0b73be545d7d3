// ExtendedSystem::make: the checks of the components and their composition into one system.
//
// With the plant output and the tracking error against the desired response
//     y = Model Wu1 u + W11 d1 + W21 d2,        e = Geqd Wr1 r - Wyr y,
// the composed system maps
//     inputs  [d1; d2; r; n; nr | u]
//     outputs [W12 y; W22 y; Wr2 e; Wu2 u | Wym y + Wd n; Wr1 r + Wdr nr]
// d1 and d2 are disturbances on the plant output, r the reference, n the noise on the measured
// outputs, nr the noise on the measured reference, u the controls; the objectives come before
// the measures. Without a reference (Wr1 zero) the design has one degree of freedom and the last
// measure group is absent; with one, the compensator reads the reference beside the outputs. A
// zero component takes no part: its channels are left out.
//
// The system is built in two stages so that the states of each component appear once: the
// signals s = [y; Wr1 r; Wd n; Wdr nr; u] from the inputs, then the outputs from s.
#include <iostream>
#include <vector>

#include "control/extsys.h"

namespace {

// Consecutive groups of channels, and the matrix that selects one group from all of them.
class Channels {
public:
    unsigned add(unsigned count) {
        starts.push_back(total);
        counts.push_back(count);
        total += count;
        return unsigned(counts.size() - 1);
    }
    unsigned count(unsigned group) const { return counts[group]; }
    Matrix select(unsigned group) const {
        Matrix E(counts[group], total);
        for (unsigned i = 0; i < counts[group]; ++i) E(i, starts[group] + i) = 1.0;
        return E;
    }
    unsigned total = 0;

private:
    std::vector<unsigned> starts, counts;
};

// Systems on common inputs whose outputs are stacked: one channel group for each.
class OutputStack {
public:
    unsigned add(const DynOp& part) {
        if (part.outputNumber()) parts.push_back(part);
        return channels.add(part.outputNumber());
    }
    unsigned skip() { return channels.add(0); }
    // The parts side by side, all fed by the same inputs.
    DynOp system(unsigned inputs) const {
        DynOp all = parts[0];
        Matrix I = Matrix::diagonal(inputs, 1.0), fan = I;
        for (size_t k = 1; k < parts.size(); ++k) {
            all = all.append(parts[k]);
            fan = dynop::stack(fan, I);
        }
        return all * fan;
    }
    Channels channels;

private:
    std::vector<DynOp> parts;
};

bool refuse(const char* text) {
    std::cout << text << std::endl;
    return false;
}

}  // namespace

bool ExtendedSystem::make() {
    if (!checkComponents()) return false;
    DiscDynOp::operator=(DiscDynOp(compose(), true, part(Model).samplingTimeOf()));
    original = 1;
    return true;
}

// A dimension check is made when both components it names take part.
bool ExtendedSystem::checkComponents() const {
    auto in = [this](Component c) { return part(c).inputNumber(); };
    auto out = [this](Component c) { return part(c).outputNumber(); };
    auto differ = [this](Component a, unsigned da, Component b, unsigned db) {
        return present(a) && present(b) && da != db;
    };
    if (!present(Model)) return refuse("the Model is equal zero, load a model");
    if (differ(Geqd, in(Geqd), Wr1, out(Wr1)))
        return refuse("input dimension of Geqd different from output dimension of Wr1");
    if (differ(Wu1, out(Wu1), Model, in(Model)))
        return refuse("output dimension of Wu1 different from input dimension of Model");
    bool oneDegreeOfFreedom = !present(Wr1);
    std::cout << "oneDegreeOfFreedom = " << (oneDegreeOfFreedom ? "YES" : "NO") << std::endl;
    if (!present(W21)) return refuse("W21 should not be zero");
    if (!present(Wd)) return refuse("Wd should not be zero");
    if (oneDegreeOfFreedom && present(Wdr)) return refuse("one degree of freedom design, Wdr should be zero");
    if (differ(W21, out(W21), Model, out(Model)))
        return refuse("output dimension of W21 different from output dimension of Model");
    if (differ(W11, out(W11), Model, out(Model)))
        return refuse("output dimension of W11 different from output dimension of Model");
    if (differ(Wdr, out(Wdr), Wr1, out(Wr1)))
        return refuse("output dimension of Wdr different from output dimension of Wr1");
    if (!present(W11) && !present(Wr1)) return refuse("W11 and Wr1 cannot be both zero");
    if (differ(Wyr, in(Wyr), Model, out(Model)))
        return refuse("input dimension of Wyr different from output dimension of Model");
    if (differ(Wyr, out(Wyr), Geqd, out(Geqd)))
        return refuse("output dimension of Wyr different from output dimension of Geqd");
    if (differ(Wym, in(Wym), Model, out(Model)))
        return refuse("input dimension of Wym different from output dimension of Model");
    if (differ(Wym, out(Wym), Wd, out(Wd)))
        return refuse("output dimension of Wym different from output dimension of Wd");
    if (differ(W22, in(W22), Model, out(Model)))
        return refuse("input dimension of W22 different from output dimension of Model");
    if (differ(Wr2, in(Wr2), Wyr, out(Wyr)))
        return refuse("input dimension of Wr2 different from output dimension of Wyr");
    if (differ(W12, in(W12), Model, out(Model)))
        return refuse("input dimension of W12 different from output dimension of Model");
    if (!present(W12) && !present(Wr2)) return refuse("cannot be both W12 and Wr2 zero");
    return true;
}

DynOp ExtendedSystem::compose() const {
    auto inputsOf = [this](Component c) { return present(c) ? part(c).inputNumber() : 0u; };
    Channels w;
    unsigned d1 = w.add(inputsOf(W11)), d2 = w.add(inputsOf(W21)), r = w.add(inputsOf(Wr1)),
             n = w.add(inputsOf(Wd)), nr = w.add(inputsOf(Wdr)), u = w.add(inputsOf(Wu1));

    DynOp y = part(W21) * w.select(d2);
    if (present(W11)) y = y + part(W11) * w.select(d1);
    if (present(Wu1)) y = y + part(Model) * part(Wu1) * w.select(u);
    OutputStack s;
    unsigned sy = s.add(y);
    unsigned sr = present(Wr1) ? s.add(part(Wr1) * w.select(r)) : s.skip();
    unsigned sn = s.add(part(Wd) * w.select(n));
    unsigned snr = present(Wdr) ? s.add(part(Wdr) * w.select(nr)) : s.skip();
    unsigned su = s.add(DynOp(w.select(u)));
    DynOp signals = s.system(w.total);

    const Channels& c = s.channels;
    Matrix Fy = c.select(sy);
    OutputStack z;
    if (present(W12)) z.add(part(W12) * Fy);
    if (present(W22)) z.add(part(W22) * Fy);
    bool desired = present(Geqd) && present(Wr1);
    if (present(Wr2) && (desired || present(Wyr))) {
        DynOp e = present(Wyr) ? (-part(Wyr)) * Fy : DynOp(Matrix(part(Geqd).outputNumber(), c.total));
        if (desired) e = e + part(Geqd) * c.select(sr);
        z.add(part(Wr2) * e);
    }
    if (present(Wu2) && c.count(su)) z.add(part(Wu2) * c.select(su));
    unsigned objectives = z.channels.total;
    DynOp measured(c.select(sn));
    z.add(present(Wym) ? part(Wym) * Fy + measured : measured);
    if (present(Wr1)) z.add(DynOp(present(Wdr) ? c.select(sr) + c.select(snr) : c.select(sr)));
    return DynOp(z.system(c.total) * signals, w.count(u), z.channels.total - objectives, 0);
}
