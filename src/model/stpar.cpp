// StateTransPar and ProcessPar: read-only rows and the text of a process's variables.
#include "model/stpar.h"

#include <QColor>
#include <QPalette>
#include <QWidget>
#include <cstring>
#include <string>

#include "editor/iconnode.h"
#include "quill/quillerr.h"
#include "trellis/cppgc.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/label.h"
#include "trellis/scrollb.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(StateTransPar, ParamEditor, 1, 0)
DEFINE_ABSTRACT_CLASS(ProcessPar, StateTransPar, 1, 0)

const char* const readOnlyRowMark = "@r";

namespace {

const int textWidth = 400, textHeight = 100;

String& stringAt(OrderedCltn& list, unsigned i) { return *CAST(String, list.at(i)); }

bool endsWithMark(const std::string& label) {
    size_t m = strlen(readOnlyRowMark);
    return label.size() >= m && label.compare(label.size() - m, m, readOnlyRowMark) == 0;
}

void showReadOnly(CppText& field) {
    field.setReadOnly(true);
    field.setSensitive(false);
    double r, g, b;
    if (!colorOf("readOnlyBackground", r, g, b)) colorOf("grey50", r, g, b);
    QPalette palette = field.handle()->palette();
    palette.setColor(QPalette::Base, QColor::fromRgbF(float(r), float(g), float(b)));
    field.handle()->setPalette(palette);
}

}  // namespace

StateTransPar::StateTransPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                             const OrderedCltn& values, const char* title)
    : StateTransPar(parent, icon, labels, values, title, false) {
    addRows(unsigned(this->labels().size()));
    finishBuilding();
}

StateTransPar::StateTransPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                             const OrderedCltn& values, const char* title, bool)
    : ParamEditor(parent, icon, labels, values, title, false) {}

void StateTransPar::addRows(unsigned count) {
    for (unsigned i = 0; i < count && i < labels().size() && i < values().size(); ++i) {
        std::string label = stringAt(labels(), i).asCharPointer();
        bool marked = endsWithMark(label);
        if (marked) label.resize(label.size() - strlen(readOnlyRowMark));
        CppText& field = dialog().addRow(label.c_str(), stringAt(values(), i).asCharPointer());
        if (marked) showReadOnly(field);
        readOnly.push_back(marked);
    }
}

bool StateTransPar::isReadOnly(int row) const {
    return row >= 0 && size_t(row) < readOnly.size() && readOnly[row];
}

void StateTransPar::okPressed(Cback&) {
    takeValues();
    confirm();
}

void StateTransPar::takeValues() {
    for (int row = 0; row < dialog().rowCount() && unsigned(row) < values().size(); ++row)
        if (!isReadOnly(row)) stringAt(values(), unsigned(row)) = dialog().rowText(row);
}

void StateTransPar::setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) {
    QASSERT_TEXT(this->labels().isEmpty() && this->values().isEmpty(),
                 "labels.isEmpty() && values.isEmpty()");
    takeIcon(icon, labels, values);
    showValues();
}

void StateTransPar::showValues() {
    for (int row = 0; row < dialog().rowCount() && unsigned(row) < values().size(); ++row)
        dialog().setRowText(row, stringAt(values(), unsigned(row)).asCharPointer());
}

// ProcessPar

ProcessPar::ProcessPar(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                       const OrderedCltn& values, const char* title)
    : StateTransPar(parent, icon, labels, values, title, false), eventText_(0) {
    unsigned rows = this->labels().isEmpty() ? 0 : unsigned(this->labels().size()) - 1;
    addRows(rows);
    ParamDialog& d = dialog();
    String heading = rows < this->labels().size() ? stringAt(this->labels(), rows) : String();
    d.addUnderRows(*new CppLabel("EventLabel", &d.form(), heading.asCharPointer()));
    CppViewport* view = new CppViewport("EventView", &d.form());
    eventText_ = new CppText("EventText", view, true);
    eventText_->setTabMovesFocus(true);
    view->resize(textWidth, textHeight);
    d.addUnderRows(*view);
    showValues();
    finishBuilding();
}

void ProcessPar::showValues() {
    StateTransPar::showValues();
    unsigned last = unsigned(dialog().rowCount());
    if (eventText_)
        eventText_->setText(last < values().size() ? stringAt(values(), last).asCharPointer() : "");
}

void ProcessPar::takeValues() {
    StateTransPar::takeValues();
    unsigned last = unsigned(dialog().rowCount());
    if (last < values().size()) stringAt(values(), last) = eventText_->getText();
}
