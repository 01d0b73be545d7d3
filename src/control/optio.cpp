// OptimumGramian: the copy, the stream form and printing.
#include <iostream>

#include "control/optgram.h"
#include "quill/objio.h"

namespace {

DynOp* copyOf(const DynOp* s) { return s ? static_cast<DynOp*>(s->deepCopy()) : 0; }

// A nested system of the stream, or null for nil.
template <class Stream>
DynOp* readSystem(Stream& is) {
    Object* read = readOptional(is);
    return read ? CAST(DynOp, read) : 0;
}

}  // namespace

OptimumGramian::OptimumGramian(const OptimumGramian& g) : Algebra(g) {
    n = g.n, fulln = g.fulln, subn = g.subn, conn = g.conn;
    inputs = g.inputs, outputs = g.outputs;
    nc = g.nc, nd = g.nd, nm = g.nm, np = g.np;
    kindText = g.kindText, nameText = g.nameText;
    gainAdapt = g.gainAdapt;
    system = copyOf(g.system);
    transform = g.transform, H = g.H, D12factor = g.D12factor, T11 = g.T11;
    tolerance = g.tolerance;
    L = g.L, Hw = g.Hw;
    fullSystem = copyOf(g.fullSystem);
    gamma = g.gamma;
    controlIndices = g.controlIndices;
    subSystem = copyOf(g.subSystem);
    R = g.R, Rprev = g.Rprev;
    disturbanceIndices = g.disturbanceIndices;
    conSubSystem = copyOf(g.conSubSystem);
    Qfactor = g.Qfactor, Hcon = g.Hcon;
    inputTransform = g.inputTransform, outputTransform = g.outputTransform;
    owner = g.owner;
    designName = g.designName;
}

// A bytewise copy takes its own storage and its own systems.
void OptimumGramian::clearCopiedState() {
    Algebra::clearCopiedState();
    for (Object* member :
         {static_cast<Object*>(&kindText), static_cast<Object*>(&nameText), static_cast<Object*>(&transform),
          static_cast<Object*>(&H), static_cast<Object*>(&D12factor), static_cast<Object*>(&T11),
          static_cast<Object*>(&L), static_cast<Object*>(&Hw), static_cast<Object*>(&controlIndices),
          static_cast<Object*>(&R), static_cast<Object*>(&Rprev), static_cast<Object*>(&disturbanceIndices),
          static_cast<Object*>(&Qfactor), static_cast<Object*>(&Hcon), static_cast<Object*>(&inputTransform),
          static_cast<Object*>(&outputTransform), static_cast<Object*>(&designName)})
        member->clearCopiedState();
    system = copyOf(system);
    fullSystem = copyOf(fullSystem);
    subSystem = copyOf(subSystem);
    conSubSystem = copyOf(conSubSystem);
}

OptimumGramian::OptimumGramian(std::istream& is, Object* where) : Algebra(is, where) { readFields(is); }

OptimumGramian::OptimumGramian(BinIstream& is, Object* where) : Algebra(is, where) { readFields(is); }

template <class Stream>
void OptimumGramian::readFields(Stream& is) {
    for (std::uint32_t* count : {&n, &fulln, &subn, &conn, &inputs, &outputs, &nc, &nd, &nm, &np})
        *count = readNumber<std::uint32_t>(is);
    tolerance = readNumber<double>(is);
    gamma = readNumber<double>(is);
    readMembers(is);
}

template <class Stream>
void OptimumGramian::readMembers(Stream& is) {
    for (DynOp** s : {&system, &fullSystem, &subSystem, &conSubSystem}) *s = readSystem(is);
    readFrom(is, "UnsArray", &controlIndices);
    readFrom(is, "UnsArray", &disturbanceIndices);
    for (Matrix* m : {&transform, &H, &D12factor, &T11, &L, &Hw, &R, &Rprev, &Qfactor, &Hcon, &inputTransform,
                      &outputTransform})
        readFrom(is, "Matrix", m);
    readFrom(is, "String", &kindText);
}

template <class Stream>
void OptimumGramian::storeMembers(Stream& os) const {
    for (const DynOp* s : {system, fullSystem, subSystem, conSubSystem}) storeOptional(os, s);
    controlIndices.storeOn(os);
    disturbanceIndices.storeOn(os);
    for (const Matrix* m : {&transform, &H, &D12factor, &T11, &L, &Hw, &R, &Rprev, &Qfactor, &Hcon,
                            &inputTransform, &outputTransform})
        m->storeOn(os);
    kindText.storeOn(os);
}

void OptimumGramian::storer(std::ostream& os) const {
    Algebra::storer(os);
    for (std::uint32_t count : {n, fulln, subn, conn, inputs, outputs, nc, nd, nm, np}) os << count << ' ';
    os << tolerance << ' ' << gamma << ' ';
    storeMembers(os);
}

void OptimumGramian::storer(BinOstream& os) const {
    Algebra::storer(os);
    for (std::uint32_t count : {n, fulln, subn, conn, inputs, outputs, nc, nd, nm, np}) os << count;
    os << tolerance << gamma;
    storeMembers(os);
}

void OptimumGramian::printOn(std::ostream& os) const {
    os << "OptimumGramian " << kindText << "; n = " << n << ", full order = " << fulln
       << ", stabilizable order = " << subn << ", controllable order = " << conn << "\n"
       << "disturbances = " << nd << ", controls = " << nc << ", objectives = " << np << ", measures = " << nm
       << "\ngamma = " << gamma << ", tolerance = " << tolerance << "\nH = " << H << "\nL = " << L
       << "\nHw = " << Hw << "\nT = " << transform << "\n";
}
