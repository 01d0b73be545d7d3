// DynOp, the continuous-time state-space operator (A, B, C, D) with its partition of inputs into
// disturbances and controls and of outputs into objectives and measures.
#ifndef CONTROL_DYNOP_H
#define CONTROL_DYNOP_H

#include <complex>
#include <cstdint>
#include <iosfwd>
#include <memory>

#include "algebra/algebra.h"
#include "algebra/matrix.h"
#include "algebra/vector.h"
#include "control/hinfnorm.h"

class CMatrix;
class IntArray;
class RationalFunction;
class RFMatrix;

extern Class class_DynOp;

// The last controlNumber inputs are controls, the earlier ones disturbances; the last
// measureNumber outputs are measures, the earlier ones objectives. A static system is a pure
// gain: only D counts and A, B, C are 1x1 zero matrices. Column lists (IntArray) select inputs; a null
// list means all of them.
class SchurGain;

class DynOp : public Algebra {
    DECLARE_MEMBERS(DynOp)
public:
    DynOp();  // static zero gain, no inputs or outputs
    // D may be nil (0x0), standing for zeros. With simplify, a system whose B or C vanishes
    // becomes static, and one that vanishes altogether becomes a zero gain.
    DynOp(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, unsigned controls = 0,
          unsigned measures = 0, unsigned feedForward = 0, bool simplify = true);
    // Single-input single-output controllable companion form; prints "n " and the order.
    DynOp(const Vector& numerator, const Vector& denominator);
    explicit DynOp(const RationalFunction& f);
    // Not built from the elements: prints " not yet implemented " and gives a zero gain of the size.
    explicit DynOp(const RFMatrix& m);
    explicit DynOp(const Matrix& D);  // static gain
    DynOp(double gain, unsigned controls, unsigned measures, unsigned feedForward);
    DynOp(const DynOp& s);
    DynOp(const DynOp& s, unsigned controls, unsigned measures, unsigned feedForward);
    // Stream form: A, B, C, D as nested Matrix objects, the three flags, then controls, measures
    // and feed-forward.
    DynOp(std::istream& is, Object* where);
    DynOp(BinIstream& is, Object* where);
    DynOp& operator=(const DynOp& s);

    // --- Operations that differ between continuous and discrete time, in their slot order ---
    // The gramian R'R of the Lyapunov equation with C as factor (observability gramian), solved
    // directly to full precision; factor, when given, receives the triangular factor R.
    virtual Matrix gramianOf(Matrix* factor = 0) const;
    // Appends to list the index of each row of poles (re, im) that counts as unstable.
    virtual void selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const;
    // The 2x2 transformation that makes a 2x2 block with real roots diagonal.
    virtual Matrix splitBlock(const Matrix& block, double tolerance) const;
    virtual const char* typeName() const;
    virtual bool isUnstablePole(double value, double tolerance) const;
    virtual bool isStable() const;
    // n x 2 (re, im); nil (0x0) for a static system.
    virtual Matrix poles() const;
    virtual double normHinf() const;
    // Peak of the largest singular value over frequency from wStart; wStart gets its frequency.
    virtual double normHinfInFrequency(double& wStart) const;
    // The H-infinity norm to a relative 1e-6 with its peak frequency and bounds (hinfnorm.cpp);
    // infinite, after a console line, for a system that is not stable.
    virtual HinfNorm certifiedNormHinf() const;
    // The same for a continuous system known to be stable, with inputs, outputs and states; gain
    // evaluates its transfer.
    HinfNorm hamiltonianNorm() const;
    HinfNorm hamiltonianNorm(const SchurGain& gain) const;
    virtual double normH2() const;
    virtual void cleanPolesInZero(double tolerance);
    // Balances and truncates in place to the states whose Hankel singular value is above
    // threshold; returns the diagonal matrix of all the Hankel singular values.
    virtual Matrix balancedRealization(double threshold);
    virtual void removeInputs(unsigned first, unsigned count);
    virtual void removeOutputs(unsigned first, unsigned count);
    // The largest singular value of the frequency response at w; infinite at a pole.
    double singularValueAt(double w) const;
    // All min(outputs, inputs) singular values at w, largest first; infinite at a pole.
    Vector singularValuesAt(double w) const;

    // --- Accessors ---
    // rows x cols block of A from (r, c); all zero gives the whole A.
    Matrix getA(unsigned r = 0, unsigned c = 0, unsigned rows = 0, unsigned cols = 0) const;
    Matrix getB(const IntArray* columns = 0) const;  // the listed columns, in list order
    Matrix getC(const IntArray* rows = 0) const;
    Matrix getD() const { return D; }
    // The state matrices at their true sizes: n x n, n x m, p x n, with n = 0 when static.
    Matrix stateA() const;
    Matrix stateB() const;
    Matrix stateC() const;
    unsigned order() const { return isStatic ? 0 : order_; }
    unsigned inputNumber() const { return inputNumber_; }
    unsigned outputNumber() const { return outputNumber_; }
    unsigned controlNumber() const { return controlNumber_; }
    unsigned measureNumber() const { return measureNumber_; }
    unsigned feedForwardNumber() const { return feedForwardNumber_; }
    bool isSchurForm() const { return isSchur != 0; }
    bool isStaticGain() const { return isStatic != 0; }
    bool isZero() const { return isZeroGain != 0; }

    // --- Composition: new systems, simplified ---
    DynOp operator*(const DynOp& other) const;  // this after other
    DynOp operator+(const DynOp& other) const;  // common inputs, summed outputs
    DynOp operator+(const Matrix& M) const;
    DynOp operator*(const Matrix& M) const;  // input side
    DynOp operator*(double x) const;
    friend DynOp operator*(const Matrix& M, const DynOp& s);  // output side: M C, M D
    DynOp operator-() const;
    DynOp append(const DynOp& other) const;
    DynOp appendGain(const Matrix& D2) const;
    DynOp sumOfOutputs(const DynOp& other) const;
    // outputs, inputs of 0 run to the end; minimal reduces to the controllable, then the
    // observable part.
    DynOp subSystem(unsigned firstOutput, unsigned firstInput, unsigned outputs = 0, unsigned inputs = 0,
                    bool minimal = false) const;
    void addOutputs(const Matrix& C2, const Matrix& D2);  // D2 nil: zeros
    void addInputs(const Matrix& B2, const Matrix& D2);
    DynOp transpose() const;
    void similarity(const Matrix& T, bool orthogonal = false);
    DynOp changeBasis(const Matrix& T) const;
    DynOp reduceOrder(unsigned n, bool keepFirst = true) const;
    // The n slowest modes, the fast ones at their steady value (residualisation): the Schur form
    // sorted by the poles' distance from 0 (from 1 in discrete time, through the logarithm), so
    // the kept poles are exactly the slow ones and the gain at rest is the system's. A complex
    // pair at the cut stays whole, keeping n + 1 states. In continuous form, like reduceOrder.
    DynOp slowPart(unsigned n) const;
    DynOp scaleObjectives(double alpha) const;
    DynOp stateFeedback(const Matrix& K, const IntArray* columns = 0) const;
    DynOp closedLoop(const DynOp& controller) const;
    DynOp outputFeedback(const DynOp& controller) const;
    DynOp closeBlockLoop(const Matrix& coupling) const;

    // --- Structure ---
    // The controllable part through the staircase form; T receives the transformation.
    DynOp contrSubSystem(const IntArray* columns, Matrix& T, double tolerance, bool print = false,
                         unsigned forcedOrder = 0) const;
    DynOp obsSubSystem(const IntArray* rows, Matrix& T, double tolerance, bool print = false,
                       unsigned forcedOrder = 0) const;
    // isControl false: the observable order of the listed output rows.
    unsigned controllableOrder(const IntArray* columns, double tolerance, bool print = false,
                               bool isControl = true) const;
    unsigned observableOrder(const IntArray* rows, double tolerance, bool print = false) const;
    DynOp stabilizableSubSystem(const IntArray* columns, Matrix& T, double tolerance,
                                double unstableTolerance, bool print = false, unsigned forcedOrder = 0) const;
    void toStaircase(const IntArray* columns = 0);
    // The gain K with eig(A - B K) the desired poles (rows re, im; a pair on consecutive rows).
    Matrix place(const Matrix& desiredPoles, const IntArray* columns = 0, bool singleInput = false) const;
    // A to real Schur form, sorted when sorted is set; returns the vectors Q.
    Matrix schurForm(bool sorted = false);
    Matrix contrGramian() const;
    Matrix obsGramian() const;

    RFMatrix transferMatrix() const;
    // The time domain: discrete systems answer true and their sampling time, continuous ones
    // false and 0.
    virtual bool isDiscreteTime() const { return false; }
    virtual double samplingTimeOf() const { return 0.0; }
    // A copy of s in this system's time domain: continuous here, of this sampling time in discrete
    // time. The compositions here give continuous systems and DiscDynOp's keep its sampling time;
    // a result reached through a DynOp reference passes through here to keep its system's domain.
    virtual std::unique_ptr<DynOp> inTimeDomain(const DynOp& s) const;

    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    // The Algebra routines do not change the object; they are reached from const operations.
    Algebra& numerics() const { return const_cast<DynOp&>(*this); }
    // The Hamiltonian bisection of normHinf on a stable continuous system.
    double bisectionNormHinf() const;
    // The Hamiltonian of the level gamma, on the imaginary axis of which lie the frequencies
    // where gamma is a singular value of the transfer; gamma must exceed the norm of D.
    Matrix hamiltonianAt(double gamma) const;
    // The norm of D for a static system or one without inputs or outputs: false otherwise.
    bool feedThroughNorm(HinfNorm& result) const;
    // The gramian P of (a, L), a'P + P a + L'L = 0 here, a'P a - P + L'L = 0 in discrete time,
    // solved directly; factor, when given, receives the triangular R with R'R = P. Nil (0x0) for a
    // static system.
    Matrix gramianOfPair(const Matrix& a, const Matrix& L, Matrix* factor) const;
    // How far the eigenvalue re + j im lies beyond the stability boundary: the real part here, the
    // magnitude less 1 in discrete time; selectUnstablePoles selects those above -tolerance.
    virtual double stabilityValue(double re, double im) const { return (void)im, re; }
    // The point where the frequency w is evaluated: j w here, e^(j w T) in discrete time.
    virtual std::complex<double> frequencyPoint(double w) const { return {0.0, w}; }
    // C (zI - A)^-1 B + D at z = re + j im into G; false, with G untouched, at a pole.
    bool transferAt(double re, double im, CMatrix& G) const;
    // The largest singular value of C (zI - A)^-1 B + D at z = re + j im; infinite at a pole.
    double gainAt(double re, double im) const;
    void printHeader(std::ostream& os) const;

    std::uint32_t order_ = 0;
    std::uint32_t inputNumber_ = 0;
    std::uint32_t controlNumber_ = 0;
    std::uint32_t outputNumber_ = 0;
    std::uint32_t measureNumber_ = 0;
    std::uint32_t feedForwardNumber_ = 0;
    std::int32_t isSchur = 0;
    std::int32_t isStatic = 1;
    std::int32_t isZeroGain = 1;
    Matrix A;
    Matrix C;
    Matrix B;
    Matrix D;

private:
    // The staircase of (A, b) or, for the dual, of (A', c'): T, the transformed A, and the order of
    // the controllable part (forcedOrder when not 0).
    unsigned staircaseOrder(bool dual, const IntArray* selection, double tolerance, Matrix& T, Matrix& a,
                            bool print, unsigned forcedOrder) const;
    // The controllable (observable, when dual) part: the whole system with T = I when it is all.
    DynOp partThroughStaircase(bool dual, const IntArray* selection, Matrix& T, double tolerance, bool print,
                               unsigned forcedOrder) const;
    // The first `kept` states of (T A T', T B, C T') with D, controls and measures.
    DynOp transformedPart(const Matrix& T, unsigned kept) const;
    // The LAPACK selection of stabilizableSubSystem's sorted Schur form.
    static int selectUnstable(const double* re, const double* im);
    void setShape(bool simplify);
    void makeStatic();
    template <class Stream>
    void readFields(Stream& is);
    template <class Stream>
    void readFlags(Stream& is);
};

// The helpers shared by the compositions: blocks that may be empty, and stacking.
namespace dynop {
// rows x cols block of M at (r, c); an empty block when either count is 0.
Matrix block(const Matrix& M, unsigned r, unsigned c, unsigned rows, unsigned cols);
Matrix stack(const Matrix& top, const Matrix& bottom);
Matrix sideBySide(const Matrix& left, const Matrix& right);
// The listed columns of M in list order, all of M for a null list.
Matrix columnsOf(const Matrix& M, const IntArray* columns);
// The right null vectors of K, least significant last: those whose singular value is not above
// limit times the largest (and at least 1).
Matrix nullBasis(Matrix K, double limit);
// A system's matrices cut by its partition: 1 disturbances / objectives, 2 controls / measures.
struct Partition {
    Matrix A, B1, B2, C1, C2, D11, D12, D21, D22;
    Partition(const Matrix& a, const Matrix& b, const Matrix& c, const Matrix& d, unsigned controls,
              unsigned measures);
    explicit Partition(const DynOp& s);
};
}  // namespace dynop

#endif
