// ExtendedSystem: construction, the components, the dual, the choice between the continuous and
// the discrete operations, printing and the stream form.
#include "control/extsys.h"

#include <algorithm>
#include <cstring>
#include <iostream>

#include "quill/binstrm.h"
#include "quill/collectn.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(ExtendedSystem, DiscDynOp, 1, 0)

const char* const ExtendedSystem::componentNames[componentCount] = {
    "Model", "Wu1", "Wu2", "W22", "W21", "W11", "Wr1", "Geqd", "Wr2", "W12", "Wyr", "Wym", "Wd", "Wdr"};

// Construction and the components

// A missing component is a gain without inputs and outputs.
ExtendedSystem::ExtendedSystem() : DiscDynOp(Matrix(0, 0), 0.0) {
    for (DynOp*& c : components) c = new DynOp(Matrix(0, 0));
}

ExtendedSystem::ExtendedSystem(const DynOp& system) : DiscDynOp(system, true, system.samplingTimeOf()) {
    for (DynOp*& c : components) c = new DynOp(Matrix(0, 0));
    if (system.isKindOf(class_ExtendedSystem)) *this = static_cast<const ExtendedSystem&>(system);
}

ExtendedSystem::ExtendedSystem(const ExtendedSystem& s) : DiscDynOp(s), original(s.original) {
    copyComponents(s);
}

ExtendedSystem::~ExtendedSystem() noexcept(false) { deleteComponents(); }

ExtendedSystem& ExtendedSystem::operator=(const ExtendedSystem& s) {
    if (this == &s) return *this;
    DiscDynOp::operator=(s);
    deleteComponents();
    copyComponents(s);
    original = s.original;
    return *this;
}

void ExtendedSystem::copyComponents(const ExtendedSystem& s) {
    for (unsigned i = 0; i < componentCount; ++i) components[i] = CAST(DynOp, s.components[i]->deepCopy());
}

void ExtendedSystem::deleteComponents() {
    for (DynOp*& c : components) {
        if (c) delete c;
        c = 0;
    }
}

// A bytewise copy shares the components until it takes its own.
void ExtendedSystem::clearCopiedState() {
    DiscDynOp::clearCopiedState();
    for (DynOp*& c : components) c = CAST(DynOp, c->deepCopy());
}

unsigned ExtendedSystem::indexOf(const char* name, const char* method) const {
    for (unsigned i = 0; i < componentCount; ++i)
        if (std::strcmp(componentNames[i], name) == 0) return i;
    setError(OBNOTFOUND, SEV_ERROR, className(), method, name);
}

const DynOp& ExtendedSystem::getElement(const char* name) const {
    return *components[indexOf(name, "getElement")];
}

void ExtendedSystem::setElement(const char* name, const DynOp& component) {
    DynOp*& c = components[indexOf(name, "setElement")];
    DynOp* copy = CAST(DynOp, component.deepCopy());
    delete c;
    c = copy;
}

// A component counts as zero when it is a zero system or a static gain within zeroTolerance.
bool ExtendedSystem::hasElement(const char* name) const {
    return present(Component(indexOf(name, "hasElement")));
}

bool ExtendedSystem::present(Component c) const {
    const DynOp& s = part(c);
    return !s.isZero() && !(s.isStaticGain() && s.getD().allAbsNotAbove(zeroTolerance));
}

ExtendedSystem ExtendedSystem::dual() const {
    ExtendedSystem r(*this);
    r.DynOp::operator=(transpose());
    r.original = !original;
    return r;
}

ExtendedSystem ExtendedSystem::operator*(const Matrix& M) const {
    ExtendedSystem r(*this);
    r.DynOp::operator=(DynOp(DynOp::operator*(M), controlNumber_, measureNumber_, feedForwardNumber_));
    return r;
}

// The operations of the two time domains

void ExtendedSystem::selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const {
    if (isDiscrete())
        DiscDynOp::selectUnstablePoles(poles, list, tolerance);
    else
        DynOp::selectUnstablePoles(poles, list, tolerance);
}

Matrix ExtendedSystem::splitBlock(const Matrix& block, double tolerance) const {
    return isDiscrete() ? DiscDynOp::splitBlock(block, tolerance) : DynOp::splitBlock(block, tolerance);
}

std::unique_ptr<DynOp> ExtendedSystem::inTimeDomain(const DynOp& s) const {
    return isDiscrete() ? DiscDynOp::inTimeDomain(s) : DynOp::inTimeDomain(s);
}

const char* ExtendedSystem::typeName() const {
    return isDiscrete() ? DiscDynOp::typeName() : DynOp::typeName();
}

bool ExtendedSystem::isUnstablePole(double value, double tolerance) const {
    return isDiscrete() ? DiscDynOp::isUnstablePole(value, tolerance)
                        : DynOp::isUnstablePole(value, tolerance);
}

bool ExtendedSystem::isStable() const { return isDiscrete() ? DiscDynOp::isStable() : DynOp::isStable(); }

Matrix ExtendedSystem::poles() const { return isDiscrete() ? DiscDynOp::poles() : DynOp::poles(); }

double ExtendedSystem::normHinf() const { return isDiscrete() ? DiscDynOp::normHinf() : DynOp::normHinf(); }

double ExtendedSystem::normHinfInFrequency(double& wStart) const {
    return isDiscrete() ? DiscDynOp::normHinfInFrequency(wStart) : DynOp::normHinfInFrequency(wStart);
}

void ExtendedSystem::cleanPolesInZero(double tolerance) {
    if (isDiscrete())
        DiscDynOp::cleanPolesInZero(tolerance);
    else
        DynOp::cleanPolesInZero(tolerance);
}

std::complex<double> ExtendedSystem::frequencyPoint(double w) const {
    return isDiscrete() ? DiscDynOp::frequencyPoint(w) : DynOp::frequencyPoint(w);
}

SchurSelect ExtendedSystem::selectFunction() const {
    return isDiscrete() ? DiscDynOp::selectFunction() : DynOp::selectFunction();
}

double ExtendedSystem::stabilityValue(double re, double im) const {
    return isDiscrete() ? DiscDynOp::stabilityValue(re, im) : DynOp::stabilityValue(re, im);
}

// Printing and streams

bool ExtendedSystem::isEqual(const Object& ob) const {
    if (!DiscDynOp::isEqual(ob)) return false;
    const ExtendedSystem& s = static_cast<const ExtendedSystem&>(ob);
    for (unsigned i = 0; i < componentCount; ++i)
        if (!components[i]->isEqual(*s.components[i])) return false;
    return original == s.original;
}

void ExtendedSystem::printOn(std::ostream& os) const {
    static const Component printOrder[componentCount] = {Wu2, Model, W22, W21, W11, Wr1, Geqd,
                                                         Wr2, W12,   Wyr, Wym, Wu1, Wd,  Wdr};
    DiscDynOp::printOn(os);
    for (Component c : printOrder) os << componentNames[c] << " " << part(c) << "\n";
    os << "is original " << (original ? "YES" : "NO") << "\n";
}

// The components are owned: a stream that gives one twice, or the system
// itself, is refused. A read that fails part-way leaves what it had read.
template <class Stream>
void ExtendedSystem::readComponents(Stream& is) {
    for (DynOp*& c : components) c = 0;
    for (unsigned i = 0; i < componentCount; ++i) {
        DynOp* c = CAST(DynOp, readFrom(is, "", nil));
        if (c == this || std::find(components, components + i, c) != components + i)
            setError(RDSYNERR, SEV_ERROR, "a component of its own", "a shared one");
        components[i] = c;
    }
}

ExtendedSystem::ExtendedSystem(std::istream& is, Object* where) : DiscDynOp(is, where) {
    readComponents(is);
    original = readNumber<int>(is);
}

ExtendedSystem::ExtendedSystem(BinIstream& is, Object* where) : DiscDynOp(is, where) {
    readComponents(is);
    is >> original;
}

void ExtendedSystem::storer(std::ostream& os) const {
    DiscDynOp::storer(os);
    for (const DynOp* c : components) c->storeOn(os);
    os << original << ' ';
}

void ExtendedSystem::storer(BinOstream& os) const {
    DiscDynOp::storer(os);
    for (const DynOp* c : components) c->storeOn(os);
    os << original;
}
