// ParamEditor and LinkParamEdt: the rows of a ParamDialog from an icon's parameters, and back at "Ok".
#include "editor/paramedt.h"

#include <cstring>
#include <string>

#include "editor/iconarc.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/button.h"
#include "trellis/drawicon.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/label.h"
#include "trellis/scrollb.h"
#include "trellis/shell.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(ParamEditor, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(LinkParamEdt, ParamEditor, 1, 0)

Symbol ParamConfirmPressed("ParamConfirmPressed");
Symbol ParamCancelPressed("ParamCancelPressed");
Symbol ParamCommentPressed("ParamCommentPressed");
Symbol ParamHelpPressed("ParamHelpPressed");

namespace {

const int WIDTH = 400;
const int LABELS_HEIGHT = 100;
const char* const GENERIC = "generic";

void copyStrings(OrderedCltn& into, const OrderedCltn& from) {
    for (unsigned i = 0; i < from.size(); ++i) into.add(*new String(*CAST(String, from.at(i))));
}

String& stringAt(OrderedCltn& list, unsigned i) { return *CAST(String, list.at(i)); }

// A comment with nothing drawn in it: the entry may become the label.
bool commentIsEmpty(IconNode& icon) { return !icon.commentIcon() || icon.commentIcon()->icons().isEmpty(); }

IconNode& checkedArc(IconNode& ic) {
    QASSERT_TEXT(ic.isKindOf(class_ClassArc), "ic->isKindOf(class_ClassArc)");
    return ic;
}

}  // namespace

ParamEditor::ParamEditor(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                         const OrderedCltn& values, const char* title)
    : ParamEditor(parent, icon, labels, values, title, true) {}

ParamEditor::ParamEditor(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                         const OrderedCltn& values, const char* title, bool withRows)
    : icon_(0), dialog_(new ParamDialog("ParamDialog", parent, title, WIDTH)), useAsLabel_(0) {
    takeIcon(icon, labels, values);
    if (!withRows) return;
    for (unsigned i = 0; i < labels_.size() && i < values_.size(); ++i)
        dialog_->addRow(stringAt(labels_, i).asCharPointer(), stringAt(values_, i).asCharPointer());
    finishBuilding();
}

ParamEditor::~ParamEditor() noexcept(false) {
    stop();
    delete dialog_;
    release();
}

void ParamEditor::finishBuilding() {
    if (icon_->hasComment()) {
        useAsLabel_ = &dialog_->addToggle("UseAsLabel", "Use entry as label");
        useAsLabel_->setState(commentIsEmpty(*icon_));
    }
    connectButtons(true);
}

void ParamEditor::takeIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) {
    icon_ = &icon;
    copyStrings(labels_, labels);
    copyStrings(values_, values);
    if (useAsLabel_) useAsLabel_->setState(commentIsEmpty(icon));
}

// Connecting twice would answer each button twice: the old listeners go first.
void ParamEditor::connectButtons(bool on) {
    dialog_->removeCback(OkButtonPressed, cbackMethod<&ParamEditor::okPressed>, *this);
    dialog_->removeCback(CancelButtonPressed, cbackMethod<&ParamEditor::cancelPressed>, *this);
    dialog_->removeCback(HelpButtonPressed, cbackMethod<&ParamEditor::helpPressed>, *this);
    dialog_->removeCback(WindowManagerCloseRequest, cbackMethod<&ParamEditor::cancelPressed>, *this);
    if (!on) return;
    // Closing the window is a Cancel: the dialogue always ends in an event.
    dialog_->addCback(WindowManagerCloseRequest, cbackMethod<&ParamEditor::cancelPressed>, *this);
    dialog_->addCback(OkButtonPressed, cbackMethod<&ParamEditor::okPressed>, *this);
    dialog_->addCback(CancelButtonPressed, cbackMethod<&ParamEditor::cancelPressed>, *this);
    dialog_->addCback(HelpButtonPressed, cbackMethod<&ParamEditor::helpPressed>, *this);
}

void ParamEditor::okPressed(Cback&) {
    for (int row = 0; row < dialog_->rowCount() && unsigned(row) < values_.size(); ++row)
        stringAt(values_, unsigned(row)) = dialog_->rowText(row);
    confirm();
}

void ParamEditor::confirm() {
    cbackOn(useAsLabel_ && useAsLabel_->state() ? ParamCommentPressed : ParamConfirmPressed);
}

void ParamEditor::cancelPressed(Cback&) { cbackOn(ParamCancelPressed); }

void ParamEditor::helpPressed(Cback&) { cbackOn(ParamHelpPressed); }

void ParamEditor::show() {
    connectButtons(true);
    dialog_->popup(CppDialog::GRAB_EXCLUSIVE);
}

void ParamEditor::stop() {
    connectButtons(false);
    dialog_->popdown();
}

void ParamEditor::release() {
    labels_.deleteContents();
    values_.deleteContents();
}

void ParamEditor::setTitle(const char* title) { dialog_->setTitle(title); }

void ParamEditor::setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) {
    QASSERT_TEXT(labels_.isEmpty() && values_.isEmpty(), "labels.isEmpty() && values.isEmpty()");
    unsigned labSz = unsigned(dialog_->rowCount()), valSz = labSz;
    QASSERT_TEXT(labels.size() == labSz, "labels.size() == labSz");
    QASSERT_TEXT(values.size() == valSz, "values.size() == valSz");
    takeIcon(icon, labels, values);
    for (unsigned row = 0; row < valSz; ++row)
        dialog_->setRowText(int(row), stringAt(values_, row).asCharPointer());
}

// LinkParamEdt

LinkParamEdt::LinkParamEdt(CppWidget* parent, IconNode& icon, const OrderedCltn& labels,
                           const OrderedCltn& values, const char* title)
    : ParamEditor(parent, checkedArc(icon), labels, values, title, false), labelsText_(0) {
    ParamDialog& d = dialog();
    d.addRow("Name   ", "");
    CppLabel* heading = new CppLabel("LabelsLabel", &d.form(), "Labels");
    d.addUnderRows(*heading);
    CppViewport* view = new CppViewport("LabelsView", &d.form());
    labelsText_ = new CppText("LabelsText", view, true);
    labelsText_->setTabMovesFocus(true);
    view->resize(WIDTH, LABELS_HEIGHT);
    d.addUnderRows(*view);
    showValues();
    finishBuilding();
}

void LinkParamEdt::showValues() {
    String name = values().isEmpty() ? String() : stringAt(values(), 0);
    dialog().setRowText(0, name.size() ? name.asCharPointer() : GENERIC);
    String joined;
    for (unsigned i = 1; i < values().size(); ++i) {
        if (i > 1) joined += "\n";
        joined += stringAt(values(), i);
    }
    labelsText_->setText(joined.asCharPointer());
}

void LinkParamEdt::okPressed(Cback&) {
    OrderedCltn& v = values();
    v.deleteContents();
    String name = dialog().rowText(0).stripBoth();
    v.add(*new String(name == GENERIC ? String() : name));
    String text = labelsText_->getText();
    for (const char* line = text.asCharPointer();; ++line) {
        const char* end = std::strchr(line, '\n');
        std::string part(line, end ? end : line + std::strlen(line));
        v.add(*new String(String(part.c_str()).stripBoth()));
        if (!end) break;
        line = end;
    }
    confirm();
}

void LinkParamEdt::setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) {
    QASSERT_TEXT(this->labels().isEmpty() && this->values().isEmpty(),
                 "labels.isEmpty() && values.isEmpty()");
    takeIcon(checkedArc(icon), labels, values);
    showValues();
}
