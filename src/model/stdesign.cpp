// StateTransSem: pole placement and observers on the diagram's model, and the structure of a
// closed-loop extended system.
#include <cstdio>
#include <iostream>

#include "algebra/algebra.h"
#include "control/discdyn.h"
#include "model/stsem.h"
#include "quill/intarray.h"

namespace {

// Row or column indices first, first + 1, ..., first + count - 1.
IntArray range(unsigned first, unsigned count) {
    IntArray list(count);
    for (unsigned i = 0; i < count; ++i) list[int(i)] = int(first + i);
    return list;
}

// Poles as the placement takes them, one row (real, imaginary) each, from a matrix text of that
// shape or from a list of real poles.
Matrix polesFromText(const char* text) {
    Matrix m = Algebra().parseMatrix(text);
    if (m.columnNumber() == 2 && m.rowNumber() > 1) return m;
    Vector v = m.toVector();
    Matrix poles(v.size(), 2);
    for (unsigned i = 0; i < v.size(); ++i) poles(i, 0) = v[i];
    return poles;
}

// Stable poles to start from: the model's own, moved to the left of -1 or inside the circle of
// radius 0.5.
String proposedPoles(const DynOp& model) {
    Matrix p = model.poles();
    std::string text = "[";
    for (unsigned i = 0; i < p.rowNumber(); ++i) {
        double re = p(i, 0), im = p(i, 1);
        if (model.isDiscreteTime()) {
            re *= 0.5;
            im *= 0.5;
        } else {
            re = -std::fabs(re) - 1.0;
        }
        char row[64];
        snprintf(row, sizeof row, "%s%.4g %.4g", i ? "; " : "", re, im);
        text += row;
    }
    return String((text + "]").c_str());
}

}  // namespace

void StateTransSem::poleAssignment() { designFeedback(true); }
void StateTransSem::stateObserver() { designFeedback(false); }

void StateTransSem::designFeedback(bool control) {
    std::unique_ptr<DynOp> model = checkedModel();
    unsigned controls = model->inputNumber() - unsigned(names.disturbances);
    unsigned measures = model->outputNumber() - unsigned(names.objectives);
    if (control && controls == 0) {
        showError(
            "The system must have control inputs, as long as disturbances\n"
            "transform your model in an extended System and retry");
        return;
    }
    if (!control && measures == 0) {
        showError(
            "The system must have measurable outputs, as long as objectives\n"
            "transform your model in an extended System and retry");
        return;
    }
    unsigned d = unsigned(names.disturbances), o = unsigned(names.objectives);
    if (control && o > 0 && model->subSystem(0, d, o, controls).isZero())
        showWarning(
            "Warning, No controls are present on the objectives,\n"
            "rebuild the extended system adding control signals on the objectives");
    if (!control && d > 0 && model->subSystem(o, 0, measures, d).isZero())
        showWarning(
            "Warning, No noise is present on the measures,\n"
            "rebuild the extended system adding noise signal on the measures");
    String text = proposedPoles(*model);
    if (!askValue("Select Poles", "poles (real, or one row \"real imaginary\" each)", text,
                  control ? "Control" : "Observer"))
        return;
    Matrix poles = polesFromText(text.asCharPointer());
    if (poles.rowNumber() != model->order()) {
        char message[128];
        snprintf(message, sizeof message, "The number of entries is uncorrect\nthe correnct number is %u",
                 model->order());
        showError(message);
        return;
    }
    if (control)
        placeControl(*model, poles, range(d, controls));
    else
        placeObserver(*model, poles, range(o, measures));
}

// u = -H x on the controls: the gain, the poles it reached, and "H.dyn".
void StateTransSem::placeControl(const DynOp& model, const Matrix& poles, const IntArray& columns) {
    Matrix H = model.place(poles, &columns);
    if (H.rowNumber() != columns.size()) return;
    std::cout << "state feedback H in exit " << H << std::endl;
    std::unique_ptr<DynOp> loop = model.inTimeDomain(model.stateFeedback(H, &columns));
    std::cout << "verify the state feedback poles " << loop->poles() << std::endl;
    saveResult(*model.inTimeDomain(DynOp(H)), "H.dyn");
}

// x' = A x + B u + K (y - C x - D u) on the measures, by placing the dual system's poles: the
// gain, the poles of the error, the observer from [u; y] to the estimate, and the error system.
void StateTransSem::placeObserver(const DynOp& model, const Matrix& poles, const IntArray& rows) {
    DynOp dual = model.transpose();
    Matrix Kt = dual.place(poles, &rows);
    if (Kt.rowNumber() != rows.size()) return;
    Matrix K = Kt.transpose();
    std::cout << "observer feedback K in exit " << K << std::endl;
    Matrix A = model.stateA(), B = model.stateB(), C = model.getC(&rows), D = model.getD();
    Matrix Dm(rows.size(), model.inputNumber());
    for (unsigned i = 0; i < rows.size(); ++i)
        for (unsigned j = 0; j < model.inputNumber(); ++j) Dm(i, j) = D(unsigned(rows[int(i)]), j);
    Matrix error = A - K * C;
    DynOp errorSystem(error, Matrix::diagonal(model.order(), 1.0), Matrix::diagonal(model.order(), 1.0),
                      Matrix(model.order(), model.order()));
    std::unique_ptr<DynOp> errorInTime = model.inTimeDomain(errorSystem);
    std::cout << "verify the observer error poles " << errorInTime->poles() << std::endl;
    Matrix inputs(model.order(), model.inputNumber() + rows.size());
    inputs.setSubMatrix(0, 0, B - K * Dm, int(model.order()), int(model.inputNumber()));
    inputs.setSubMatrix(0, int(model.inputNumber()), K, int(model.order()), int(rows.size()));
    DynOp observer(error, inputs, Matrix::diagonal(model.order(), 1.0),
                   Matrix(model.order(), model.inputNumber() + rows.size()));
    saveResult(*model.inTimeDomain(observer), "Observer.dyn");
    saveResult(*errorInTime, "ObserverError.dyn");
}

void StateTransSem::saveResult(const DynOp& system, const char* fileName) {
    if (!Algebra().storeToFile(system, fileName))
        std::cout << "cannot write the file " << fileName << std::endl;
}

// The squared norm of each scalar channel of a square closed loop at a low frequency.
void StateTransSem::structureClosedLoop() {
    std::unique_ptr<DynOp> model = checkedModel();
    if (model->inputNumber() != model->outputNumber()) {
        std::cout << "The closed loop extended system should be square" << std::endl;
        return;
    }
    const double frequency = 1e-3;
    unsigned n = model->inputNumber();
    Matrix structure(n, n);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) {
            std::unique_ptr<DynOp> channel = model->inTimeDomain(model->subSystem(i, j, 1, 1));
            double gain = channel->singularValueAt(frequency);
            structure(i, j) = gain * gain;
        }
    std::cout << structure << std::endl;
}
