// ResizeDialog: three rows of a value and a scroll bar that offsets it, "Apply", "Reset" and "Close".
#include "editor/resizdlg.h"

#include <algorithm>
#include <cmath>

#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/scrollb.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(ResizeDialog, FormDialog, 1, 0)

namespace {

const int GAP = 6;
const double THUMB = 0.05;  // of the scroll bar's range

struct RowKind {
    const char* prefix;
    const char* label;
    double unit;   // one step of the scroll bar
    double least;  // no value goes below
};

const RowKind rowKinds[ResizeDialog::ROWS] = {
    {"H", "Horizontal Resize", 1.0, 1.0},
    {"V", "Vertical Resize", 1.0, 1.0},
    {"F", "Font Resize", 0.05, 0.1},
};

}  // namespace

ResizeDialog::ResizeDialog(CppWidget* parent)
    : FormDialog("ResizeDialog", parent, "Resize Icon Dialog"), present(), opening(), showing(false) {
    CppForm& f = form();
    f.resize(420, 0);
    for (int row = 0; row < ROWS; ++row) buildRow(row);
    apply = new CppCommand("Apply", &f);
    reset = new CppCommand("Reset", &f);
    close = new CppCommand("Close", &f);
    CppCommand* buttons[] = {apply, reset, close};
    for (int i = 0; i < 3; ++i) {
        f.attachLeftPercent(*buttons[i], 5 + 32 * i);
        f.attachRightPercent(*buttons[i], 31 + 32 * i);
        f.attachVertical(texts[ROWS - 1], buttons[i], 2 * GAP);
        f.attachVertical(buttons[i], &f, GAP);
    }
    reset->addCback(CppCommandPressed, cbackMethod<&ResizeDialog::resetPressed>, *this);
    close->addCback(CppCommandPressed, cbackMethod<&ResizeDialog::closePressed>, *this);
}

void ResizeDialog::buildRow(int row) {
    CppForm& f = form();
    const RowKind& kind = rowKinds[row];
    CppLabel* label = labels[row] = new CppLabel(formatText("%sResizeLabel", kind.prefix), &f, kind.label);
    texts[row] = new CppText(formatText("%sResizeText", kind.prefix), &f, false, 1, 8);
    bars[row] = new CppScrollbar(formatText("%sResizeScroll", kind.prefix), &f);
    CppWidget* above = row > 0 ? static_cast<CppWidget*>(texts[row - 1]) : &f;
    f.attachHorizontal(&f, label, GAP);
    f.attachRightPercent(*label, 35);
    f.attachVertical(above, label, GAP + 4);
    f.attachLeftPercent(*texts[row], 35);
    f.attachRightPercent(*texts[row], 55);
    f.attachVertical(above, texts[row], GAP);
    f.attachLeftPercent(*bars[row], 57);
    f.attachHorizontal(bars[row], &f, GAP);
    f.attachVertical(above, bars[row], GAP + 4);
    bars[row]->addCback(CppScrollbarChanged, cbackMethod<&ResizeDialog::scrolled>, *this);
}

void ResizeDialog::open(bool width, bool height, bool font, double w, double h, double fontScale) {
    const bool sensitive[ROWS] = {width, height, font};
    const double values[ROWS] = {w, h, fontScale};
    for (int row = 0; row < ROWS; ++row) {
        const RowKind& kind = rowKinds[row];
        present[row] = opening[row] = values[row];
        int lowest = int(std::ceil((kind.least - values[row]) / kind.unit));
        int highest = std::max(10, int(std::lround(3 * values[row] / kind.unit)));
        bars[row]->setRange(std::min(lowest, 0), highest,
                            std::max(1, int(std::lround((highest - lowest) * THUMB))));
        show(row, values[row]);
        for (CppWidget* w : {static_cast<CppWidget*>(labels[row]), static_cast<CppWidget*>(texts[row]),
                             static_cast<CppWidget*>(bars[row])})
            w->setSensitive(sensitive[row]);
    }
    popup();
}

double ResizeDialog::value(int row) const {
    return std::max(rowKinds[row].least, texts[row]->getText().asDouble());
}

void ResizeDialog::increments(double& dw, double& dh, double& dfont) const {
    double* results[ROWS] = {&dw, &dh, &dfont};
    for (int row = 0; row < ROWS; ++row)
        *results[row] = texts[row]->isSensitive() ? value(row) - present[row] : 0;
}

void ResizeDialog::applied() {
    for (int row = 0; row < ROWS; ++row) {
        present[row] = value(row);
        show(row, present[row]);
    }
}

void ResizeDialog::show(int row, double shown) {
    showing = true;
    texts[row]->setText(formatText("%g", shown));
    bars[row]->setValue(int(std::lround((shown - present[row]) / rowKinds[row].unit)));
    showing = false;
}

void ResizeDialog::scrolled(Cback& cb) {
    if (showing) return;
    for (int row = 0; row < ROWS; ++row)
        if (cb.owner == bars[row])
            texts[row]->setText(formatText("%g", present[row] + cb.callData->asInt() * rowKinds[row].unit));
}

void ResizeDialog::resetPressed(Cback&) {
    for (int row = 0; row < ROWS; ++row) show(row, opening[row]);
}

void ResizeDialog::closePressed(Cback&) { popdown(); }
