// RobustControlDesign: the final results of a design, from the errors of the two designs to the
// compensator, its reduction and cleaning, and the closed loops it makes.
#include <iostream>
#include <memory>

#include "control/askparam.h"
#include "control/optgram.h"
#include "control/rcdesign.h"
#include "control/robctrl.h"
#include "control/workspc.h"

// "norm = ", the value, ", at omega = " and the frequency, after the label.
double RobustControlDesign::printNorm(const char* label, const DynOp& s) {
    double w = wMin;
    double norm = s.normHinfInFrequency(w);
    std::cout << label << norm << "\nnorm = " << norm << ", at omega = " << w << std::endl;
    return norm;
}

bool RobustControlDesign::systemFromTexts(const char* a, const char* b, const char* c, const char* d,
                                          DynOp& result) {
    Matrix A(a), B(b), C(c), D(d);
    if (A.rowNumber() != A.columnNumber()) {
        std::cout << " A matrix not square" << std::endl;
        return false;
    }
    if (C.columnNumber() != A.rowNumber()) {
        std::cout << " The C matrix has not the same number of columns of the A matrix" << std::endl;
        return false;
    }
    if (B.rowNumber() != A.rowNumber() || D.rowNumber() != C.rowNumber() ||
        D.columnNumber() != B.columnNumber()) {
        std::cout << " The D matrix has not the same number of rows and columns of the B or C matrices, "
                     "respectively"
                  << std::endl;
        return false;
    }
    result = DynOp(A, B, C, D);
    return true;
}

// The compensator gains the free parameter Q of the observer-based form, when the user gives one.
void RobustControlDesign::addQParameter(RobustControl::System& compensator) {
    const DynOp& in = robustControl->getInput();
    unsigned ny = robustControl->isObserverFirst() ? in.controlNumber() : in.measureNumber();
    unsigned nu = robustControl->isObserverFirst() ? in.measureNumber() : in.controlNumber();
    std::cout << "do you want to add to the control the Q paramater?\n"
              << "the number of input of Q are = " << ny << "\n"
              << "the number of outputs of Q are = " << nu << std::endl;
    ParamRequest r("insert Q matrices", 0);
    r.add("A", "[0]").add("B", "[0]").add("C", "[0]").add("D", "[0]");
    DynOp Q;
    if (!askParameters(owner, r) || !systemFromTexts(r.value(0), r.value(1), r.value(2), r.value(3), Q))
        return;
    if (Q.inputNumber() != ny || Q.outputNumber() != nu) {
        std::cout << "the number of input of Q are = " << ny << "\nthe number of outputs of Q are = " << nu
                  << std::endl;
        return;
    }
    compensator = robustControl->compensator(Q);
}

// The closed loop of the model with its A perturbed by Delta, when the user gives one.
void RobustControlDesign::perturbationAnalysis(const DynOp& compensator) {
    std::cout
        << "do you want to perform perturbation analysis?\ninsert uncertainty parameters and press \"OK\"\n"
           "else press \"Cancel\" "
        << std::endl;
    RobustControl::System model = robustControl->getModel();
    ParamRequest r("insert uncertainty matrices", 0);
    r.add("Delta", Matrix(model->order(), model->order()).toString(3).asCharPointer());
    if (!askParameters(owner, r)) return;
    Matrix delta(r.value(0));
    if (delta.rowNumber() != model->order() || delta.columnNumber() != model->order()) {
        std::cout << " A matrix not square" << std::endl;
        return;
    }
    DynOp perturbed(model->getA() + delta, model->getB(), model->getC(), model->getD(),
                    model->controlNumber(), model->measureNumber(), 0, false);
    keepResult("PerturbedModel", *robustControl->timed(perturbed));
    analyseClosedLoop(compensator, "Perturbed", "PerturbedFeedback", &perturbed);
}

// The poles and norms of the two designs' errors.
void RobustControlDesign::reportErrors() {
    const RobustControl& rc = *robustControl;
    RobustControl::System control = rc.controlError(), observer = rc.observerError();
    struct {
        const char* word;
        const DynOp& error;
    } errors[] = {{"Control", *control}, {"Observer", *observer}};
    for (auto& e : errors) {
        std::cout << e.word << " system poles" << e.error.poles() << "\n"
                  << e.word << " error poles = " << e.error.poles() << "\n"
                  << "norm of the " << e.word << " error system: H-infinity " << e.error.normHinf() << ", H2 "
                  << e.error.normH2() << std::endl;
    }
    double w = wMin;
    std::cout << "H-infinite norm of the observer error operator in closed loop = "
              << observer->normHinfInFrequency(w) << std::endl;
    keepResult("ExtendedObserverError", *observer);
    keepResult("ObserverErrorFeedback", *observer);
    keepResult("ControlledSystem", *control);
}

// The compensator reduced to its controllable and observable part while the user asks for it.
DynOp RobustControlDesign::reduceCompensator(DynOp compensator, double& tolerance) {
    for (;;) {
        std::cout
            << "controller poles =" << compensator.poles() << "\n"
            << "The actual controller order is = " << compensator.order() << "\n"
            << "According to the previous residuals norms in testing controllability and observability\n"
            << "you can select a new threshold for \"tolerance\"\n"
            << "press Ok to reduce the controller, Cancel to go on" << std::endl;
        if (!askTolerance(tolerance)) return compensator;
        Matrix T;
        DynOp reduced = compensator.contrSubSystem(0, T, tolerance, true);
        compensator = reduced.obsSubSystem(0, T, tolerance, true);
    }
}

// The compensator's slow modes, the fast ones at their steady value; kept whole when the reduced
// one would not stabilise the extended system.
RobustControl::System RobustControlDesign::withoutFastModes(const DynOp& compensator, unsigned order) {
    const RobustControl& rc = *robustControl;
    RobustControl::System reduced = rc.timed(compensator.slowPart(order));
    if (rc.timed(rc.getExtended()->closedLoop(*reduced))->isStable() ||
        !rc.timed(rc.getExtended()->closedLoop(compensator))->isStable())
        return reduced;
    std::cout << "the compensator of order " << reduced->order()
              << " does not stabilise the closed loop: its order " << compensator.order() << " is kept"
              << std::endl;
    return rc.timed(compensator);
}

namespace {

// The gain of a system at rest: D - C A^-1 B, or D + C (I - A)^-1 B in discrete time.
Matrix steadyGain(Algebra& alg, const DynOp& s) {
    if (s.order() == 0) return s.getD();
    Matrix A = s.getA();
    Matrix M = s.isDiscreteTime() ? Matrix::diagonal(s.order(), 1.0) - A : -A;
    return s.getD() + s.getC() * alg.solve(M, s.getB());
}

}  // namespace

// The inputs of Wr1, behind those of W11 and W21.
void RobustControlDesign::referenceInputs(unsigned& first, unsigned& count) const {
    const ExtendedSystem& in = robustControl->getInput();
    ExtendedSystem original = robustControl->isObserverFirst() ? in.dual() : in;
    first = original.getElement("W11").inputNumber() + original.getElement("W21").inputNumber();
    count = original.getElement("Wr1").inputNumber();
}

void RobustControlDesign::analyseClosedLoop(const DynOp& compensator, const char* title, const char* name,
                                            const DynOp* model) {
    RobustControl::System plant = robustControl->getModel();
    const DynOp& loop = model ? *model : *plant;
    // The compensator's inputs beyond the plant's measures (the measured reference) stay inputs of
    // the loop, behind the plant's disturbances.
    unsigned inputs = compensator.inputNumber(), measures = loop.measureNumber();
    unsigned own = inputs > measures ? inputs - measures : 0;
    RobustControl::System closed = robustControl->timed(loop.closedLoop(DynOp(compensator, own, 0, 0)));
    unsigned first = 0, references = 0;
    referenceInputs(first, references);
    std::cout << (references ? "is two degree of freedom" : "is one degree of freedom") << std::endl;
    if (own) first = loop.inputNumber() - loop.controlNumber();
    if (references) {
        // The steady gain from the reference to the objectives.
        unsigned objectives = closed->outputNumber() - closed->measureNumber();
        Matrix G = dynop::block(steadyGain(*this, *closed), 0, first, objectives, references);
        if (G.rowNumber() == 0 || G.columnNumber() == 0) {
            std::cout << "g is same as emptyMatrix " << std::endl;
        } else {
            std::cout << "G = " << G << std::endl;
            keepResult("gainDes", G);
        }
    }
    keepResult(name, *closed);
    std::cout << "closed loop poles of the " << title << closed->poles() << std::endl;
}

// The output scaling D of the closed loop, its effect on the norm, and, when the user takes it,
// the structuring matrix S of the next design, whose model becomes inv(S) G S: so that it is the
// scaled loop D Geq D^-1 that was printed, S is D^-1 ("reset"), or the present S times D^-1
// ("multiply"), the present scaling being already inside the loop.
void RobustControlDesign::applyStructuring(const DynOp& loop, const String& name) {
    Matrix D = structuring(loop, false);
    if (D.rowNumber() == 0) {
        std::cout << "\nWarning, The algorithm was unable to compute a matrix\n" << std::endl;
        return;
    }
    double w1 = wMin, w2 = wMin;
    RobustControl::System scaled = robustControl->timed(D * (loop * inv(D)));
    std::cout << "\nthe total output structuring matrix D (D*Geq*D^-1) is\n"
              << D << ", the norm after structuring becomes " << scaled->normHinfInFrequency(w1)
              << "\nthe original norm was " << loop.normHinfInFrequency(w2) << std::endl;
    keepResult(name.asCharPointer(), D);
    ParamRequest r("structuring the extended system", 0);
    r.add("choice", "multiply");
    if (!askParameters(owner, r)) return;
    String how(r.value(0));
    bool sameSize = structuringMatrix.rowNumber() == D.rowNumber();
    if (how == "reset" || (how == "multiply" && !sameSize))
        structuringMatrix = inv(D);
    else if (how == "multiply")
        structuringMatrix = structuringMatrix * inv(D);
}

double RobustControlDesign::finalResults(double tolerance, bool inOneStep) {
    if (!(robustControl = readDesign())) return failed(-1.0, "the design could not be read");
    if (!robustControl->hasControl() || !robustControl->hasObserver()) {
        const char* missing = robustControl->hasControl() ? "the observer has not been computed yet"
                                                          : "the control has not been computed yet";
        std::cout << missing << std::endl;
        delete robustControl;
        robustControl = 0;
        return failed(0.0, missing);
    }
    globalWorkspace().clear();
    std::string p = filePrefix().asCharPointer();
    const RobustControl& rc = *robustControl;
    reportErrors();

    RobustControl::System theoretical = rc.closedLoopTheoretical();
    keepResult("ExtendedSystemFeedbackTheoretical", *theoretical,
               (p + "ExtendedSystemFeedbackTheoretical.dyn").c_str());
    std::cout << "output feedback final poles" << theoretical->poles() << std::endl;
    Matrix T;
    RobustControl::System reduced =
        rc.timed(theoretical->contrSubSystem(0, T, tolerance).obsSubSystem(0, T, tolerance));
    keepResult("ExtendedSystemFeedbackReduced", *reduced, (p + "ExtendedSystemFeedbackReduced.dyn").c_str());
    std::cout << "output feedback final poles reduced" << reduced->poles() << std::endl;

    RobustControl::System compensator = rc.compensator();
    keepResult("ExtendedControl", *compensator);
    if (!inOneStep) addQParameter(compensator);
    keepResult("Control0", *compensator);
    analyseClosedLoop(*compensator, " Model with the full size controller", "ModelFeedback0");

    compensator = rc.timed(reduceCompensator(*compensator, tolerance));
    keepResult("Control1", *compensator);
    analyseClosedLoop(*compensator, " Model with reduced order controller", "ModelFeedback1");

    std::cout << "Controller poles =" << compensator->poles() << "\n"
              << (compensator->isDiscreteTime()
                      ? "To clean, forcing to 1 some of the poles of the controller,"
                      : "To clean, forcing to zero some of the poles of the controller,")
              << "\nset to a higher value the threshold \"tolerance\"." << std::endl;
    compensator->cleanPolesInZero(tolerance);
    unsigned order = compensator->order();
    std::cout << "\nIf you want to eliminate some high frequency dynamics of the compensator\nspecify the "
                 "new order,"
              << std::endl;
    if (askToleranceAndOrder(tolerance, order) && order < compensator->order())
        compensator = withoutFastModes(*compensator, order);
    keepResult("Control", *compensator, (p + "Control.dyn").c_str());
    analyseClosedLoop(*compensator, " Model with reduced order and cleaned controller", "ModelFeedback");

    RobustControl::System feedback = rc.timed(rc.getExtended()->closedLoop(*compensator));
    keepResult("ExtendedSystemFeedback", *feedback, (p + "ExtendedSystemFeedback.dyn").c_str());
    result.poles = feedback->poles();
    result.feedbackGain = rc.feedbackGain();
    result.observerGain = rc.observerGain();
    if (rc.firstDesign()) result.gamma = rc.firstDesign()->getGamma();
    std::cout << "poles of the extended system in closed loop = " << result.poles << std::endl;

    perturbationAnalysis(*compensator);

    printNorm("theoretical H-infinite norm of the output feedback w-z operator =", *theoretical);
    printNorm("reduced H-infinite norm of the output feedback w-z operator =", *reduced);
    double experimental =
        printNorm("experimental H-infinite norm of the output feedback w-z operator =", *feedback);
    loopNorm = feedback->certifiedNormHinf();
    std::cout << "certified H-infinite norm of the output feedback w-z operator = " << loopNorm << std::endl;
    std::cout << "\nTheoretical: the only detectable-stabilizable part resulting from a weak separation;\n"
                 "Reduced: eliminating weakly observable-controllable modes;\n"
                 "Experimental: closing explicitly the loop.\n(Unreliable "
              << std::endl;

    std::cout << "\nDo you want to structure the closed loop extended system?" << std::endl;
    String name("D"), choice("Theoretical or Experimental");
    if (askStructuring(name, choice)) {
        applyStructuring(choice == "Theoretical" ? *theoretical : *feedback, name);
    }
    endPhase();
    return experimental;
}
