// DiscDynOp, the discrete-time state-space operator: a DynOp with a sampling time, whose stability
// domain is the unit circle.
#ifndef CONTROL_DISCDYN_H
#define CONTROL_DISCDYN_H

#include "control/dynop.h"

extern Class class_DiscDynOp;

// A sampling time that is not positive counts as 1 at the frequency points.
class DiscDynOp : public DynOp {
    DECLARE_MEMBERS(DiscDynOp)
public:
    DiscDynOp();
    DiscDynOp(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, double samplingTime,
              unsigned controls = 0, unsigned measures = 0, unsigned feedForward = 0);
    DiscDynOp(const Vector& numerator, const Vector& denominator, double samplingTime);
    // samplingTime 0 or below takes the function's own; a positive one discretises a continuous
    // function.
    DiscDynOp(const RationalFunction& f, double samplingTime);
    // Discretises with a zero-order hold unless alreadyDiscrete, the system is static or zero, or
    // samplingTime is not positive.
    DiscDynOp(const DynOp& s, bool alreadyDiscrete, double samplingTime);
    DiscDynOp(const Matrix& D, double samplingTime);  // static gain
    DiscDynOp(const DiscDynOp& s);
    DiscDynOp(const DiscDynOp& s, unsigned controls, unsigned measures, unsigned feedForward);
    // Stream form: the DynOp's, then the sampling time.
    DiscDynOp(std::istream& is, Object* where);
    DiscDynOp(BinIstream& is, Object* where);
    DiscDynOp& operator=(const DiscDynOp& s);

    double getSamplingTime() const { return samplingTime; }

    // The compositions of DynOp, of this sampling time.
    DiscDynOp operator*(const DynOp& other) const { return timed(DynOp::operator*(other)); }
    DiscDynOp operator+(const DynOp& other) const { return timed(DynOp::operator+(other)); }
    DiscDynOp operator+(const Matrix& M) const { return timed(DynOp::operator+(M)); }
    DiscDynOp operator*(const Matrix& M) const { return timed(DynOp::operator*(M)); }
    DiscDynOp operator*(double x) const { return timed(DynOp::operator*(x)); }
    friend DiscDynOp operator*(const Matrix& M, const DiscDynOp& s) {
        return s.timed(M * static_cast<const DynOp&>(s));
    }
    DiscDynOp operator-() const { return timed(DynOp::operator-()); }
    DiscDynOp append(const DynOp& other) const { return timed(DynOp::append(other)); }
    DiscDynOp appendGain(const Matrix& D2) const { return timed(DynOp::appendGain(D2)); }
    DiscDynOp sumOfOutputs(const DynOp& other) const { return timed(DynOp::sumOfOutputs(other)); }
    DiscDynOp subSystem(unsigned firstOutput, unsigned firstInput, unsigned outputs = 0, unsigned inputs = 0,
                        bool minimal = false) const {
        return timed(DynOp::subSystem(firstOutput, firstInput, outputs, inputs, minimal));
    }
    DiscDynOp transpose() const { return timed(DynOp::transpose()); }
    DiscDynOp changeBasis(const Matrix& T) const { return timed(DynOp::changeBasis(T)); }
    DiscDynOp reduceOrder(unsigned n, bool keepFirst = true) const {
        return timed(DynOp::reduceOrder(n, keepFirst));
    }
    DiscDynOp scaleObjectives(double alpha) const { return timed(DynOp::scaleObjectives(alpha)); }
    DiscDynOp stateFeedback(const Matrix& K, const IntArray* columns = 0) const {
        return timed(DynOp::stateFeedback(K, columns));
    }
    DiscDynOp closedLoop(const DynOp& controller) const { return timed(DynOp::closedLoop(controller)); }
    DiscDynOp outputFeedback(const DynOp& controller) const {
        return timed(DynOp::outputFeedback(controller));
    }
    DiscDynOp closeBlockLoop(const Matrix& coupling) const { return timed(DynOp::closeBlockLoop(coupling)); }
    DiscDynOp contrSubSystem(const IntArray* columns, Matrix& T, double tolerance, bool print = false,
                             unsigned forcedOrder = 0) const {
        return timed(DynOp::contrSubSystem(columns, T, tolerance, print, forcedOrder));
    }
    DiscDynOp obsSubSystem(const IntArray* rows, Matrix& T, double tolerance, bool print = false,
                           unsigned forcedOrder = 0) const {
        return timed(DynOp::obsSubSystem(rows, T, tolerance, print, forcedOrder));
    }
    DiscDynOp stabilizableSubSystem(const IntArray* columns, Matrix& T, double tolerance,
                                    double unstableTolerance, bool print = false,
                                    unsigned forcedOrder = 0) const {
        return timed(
            DynOp::stabilizableSubSystem(columns, T, tolerance, unstableTolerance, print, forcedOrder));
    }

    void selectUnstablePoles(const Matrix& poles, IntArray& list, double tolerance) const override;
    Matrix splitBlock(const Matrix& block, double tolerance) const override;
    const char* typeName() const override;
    bool isUnstablePole(double value, double tolerance) const override;
    bool isStable() const override;
    // Five columns: re, im, magnitude, the continuous-time decay ln|p| / T and frequency.
    Matrix poles() const override;
    double normHinf() const override;
    double normHinfInFrequency(double& wStart) const override;
    HinfNorm certifiedNormHinf() const override;
    // Diagonal elements within tolerance of magnitude 1 become exactly +-1.
    void cleanPolesInZero(double tolerance) override;

    SchurSelect selectFunction() const override;
    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    bool isDiscreteTime() const override { return true; }
    double samplingTimeOf() const override { return samplingTime; }
    std::unique_ptr<DynOp> inTimeDomain(const DynOp& s) const override;

protected:
    double stabilityValue(double re, double im) const override;
    std::complex<double> frequencyPoint(double w) const override { return std::polar(1.0, w * period()); }
    // The sampling time used at the frequency points.
    double period() const { return samplingTime > 0.0 ? samplingTime : 1.0; }
    // s, already discrete, with this sampling time.
    DiscDynOp timed(const DynOp& s) const { return DiscDynOp(s, true, samplingTime); }

    double samplingTime = 0.0;
};

// Zero-order-hold discretisation: [A B] from the exponential of [A B; 0 0] T.
void discretize(const Matrix& A, const Matrix& B, double samplingTime, Matrix& Ad, Matrix& Bd);

#endif
