// ExtendedSystem, the design problem in one object: a plant with its weights, composed into one
// system whose inputs are disturbances and controls and whose outputs are objectives and measures.
#ifndef CONTROL_EXTSYS_H
#define CONTROL_EXTSYS_H

#include <iosfwd>

#include "control/discdyn.h"

extern Class class_ExtendedSystem;

// The composed system is the DiscDynOp part of the object; a sampling time of 0 makes it a
// continuous system, and every operation that differs between the two time domains follows
// isDiscrete(). The fourteen components are owned; a component that is zero takes no part.
// isOriginal tells whether the composed system stands as made (not the dual).
class ExtendedSystem : public DiscDynOp {
    DECLARE_MEMBERS(ExtendedSystem)
public:
    // The components by name: the order of the stream form.
    static const unsigned componentCount = 14;
    static const char* const componentNames[componentCount];

    ExtendedSystem();  // zero components and a zero continuous system
    // The system with its partition as it stands, continuous unless it is discrete; no components.
    explicit ExtendedSystem(const DynOp& system);
    ExtendedSystem(const ExtendedSystem& s);
    // Stream form: the DiscDynOp's, the components in the order of componentNames, the flag.
    ExtendedSystem(std::istream& is, Object* where);
    ExtendedSystem(BinIstream& is, Object* where);
    ~ExtendedSystem() noexcept(false) override;
    ExtendedSystem& operator=(const ExtendedSystem& s);

    // The component of that name; an unknown name raises OBNOTFOUND.
    const DynOp& getElement(const char* name) const;
    void setElement(const char* name, const DynOp& component);  // keeps a copy
    // True when the component of that name takes part in the composition.
    bool hasElement(const char* name) const;
    // Checks the components in their order and composes them (extmake.cpp); a failing check
    // prints its text and leaves the composed system as it was, and so does a size that no check
    // covers, which raises the matrix dimension error. The sampling time is the Model's.
    bool make();

    // The transposed system with controls and measures exchanged; the components stay.
    ExtendedSystem dual() const;
    // B M and D M: the inputs change, the last controlNumber of them stay the controls.
    ExtendedSystem operator*(const Matrix& M) const;
    // The other compositions are DynOp's, whose results are continuous whatever isDiscrete() says:
    // one that is to keep this system's time domain passes through inTimeDomain.
    using DynOp::append;
    using DynOp::appendGain;
    using DynOp::changeBasis;
    using DynOp::closeBlockLoop;
    using DynOp::closedLoop;
    using DynOp::contrSubSystem;
    using DynOp::obsSubSystem;
    using DynOp::operator*;
    using DynOp::operator+;
    using DynOp::operator-;
    using DynOp::outputFeedback;
    using DynOp::reduceOrder;
    using DynOp::scaleObjectives;
    using DynOp::stabilizableSubSystem;
    using DynOp::stateFeedback;
    using DynOp::subSystem;
    using DynOp::sumOfOutputs;
    using DynOp::transpose;
    friend DynOp operator*(const Matrix& M, const ExtendedSystem& s) {
        return M * static_cast<const DynOp&>(s);
    }
    bool isDiscrete() const { return samplingTime != 0.0; }
    bool isDiscreteTime() const override { return isDiscrete(); }
    std::unique_ptr<DynOp> inTimeDomain(const DynOp& s) const override;
    bool isOriginal() const { return original != 0; }

    // Continuous or discrete by isDiscrete().
    void selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const override;
    Matrix splitBlock(const Matrix& block, double tolerance) const override;
    const char* typeName() const override;
    bool isUnstablePole(double value, double tolerance) const override;
    bool isStable() const override;
    Matrix poles() const override;
    double normHinf() const override;
    double normHinfInFrequency(double& wStart) const override;
    HinfNorm certifiedNormHinf() const override;
    void cleanPolesInZero(double tolerance) override;
    SchurSelect selectFunction() const override;

    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    std::complex<double> frequencyPoint(double w) const override;
    double stabilityValue(double re, double im) const override;

private:
    // The components in the order of componentNames.
    enum Component { Model, Wu1, Wu2, W22, W21, W11, Wr1, Geqd, Wr2, W12, Wyr, Wym, Wd, Wdr };

    const DynOp& part(Component c) const { return *components[c]; }
    bool present(Component c) const;
    bool checkComponents() const;
    DynOp compose() const;
    unsigned indexOf(const char* name, const char* method) const;
    void copyComponents(const ExtendedSystem& s);
    void deleteComponents();
    template <class Stream>
    void readComponents(Stream& is);

    DynOp* components[componentCount];
    int original = 1;
};

#endif
