// The icons of text: command and cycling buttons, toggles, text, number and console fields, labels,
// value displays and group frames.
#include <QFont>
#include <QLabel>
#include <QLineEdit>

#include "gui/dynicon.h"
#include "gui/dynkinds.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/text.h"

namespace {

const char* name(const DynamicControl& c) { return c.name().asCharPointer(); }

// A button shows its value, or its label while it has none. Neither a command nor a cycling button
// changes by itself: the owner of the panel answers the press.
class ButtonIcon : public DynamicIcon {
public:
    ButtonIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        button = new CppCommand(name(c), &form);
        button->addCback(CppCommandPressed, cbackMethod<&ButtonIcon::pressed>, *this);
        place(form, button, unit);
    }
    String text() const override { return control().shownText(); }
    void press() override { button->press(); }

private:
    void show() override { button->setLabel(control().shownText().asCharPointer()); }

    CppCommand* button;
};

// "YES" or "NO": the user's click flips it and raises the event; setText does not.
class ToggleIcon : public DynamicIcon {
public:
    ToggleIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        box = new ToggleButton(name(c), &form, c.label().asCharPointer());
        box->addCback(ToggleButtonChanged, cbackMethod<&ToggleIcon::changed>, *this);
        place(form, box, unit);
    }
    void press() override { box->setState(!box->state()); }

private:
    void show() override { box->setState(control().value() == "YES"); }
    void changed(Cback& cb) {
        const char* now = cb.callData->asInt() ? "YES" : "NO";
        if (control().value() == now) return;  // set by the program
        control().setValue(now);
        raise();
    }

    ToggleButton* box;
};

// A text or number field raises the event on Return; a console only shows what is appended to it.
class FieldIcon : public DynamicIcon {
public:
    FieldIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        bool console = c.kind() == DynamicControl::CONSOLE;
        field = new CppText(name(c), &form, console);
        if (console) field->setReadOnly(true);
        if (c.kind() == DynamicControl::NUMBER)
            static_cast<QLineEdit*>(field->handle())->setAlignment(Qt::AlignRight);
        field->addCback(CppTextChanged, cbackMethod<&FieldIcon::edited>, *this);
        field->addCback(CppTextActivated, cbackMethod<&FieldIcon::pressed>, *this);
        place(form, field, unit);
    }
    void press() override { raise(); }
    bool append(const char* text) override {
        if (control().kind() != DynamicControl::CONSOLE) return false;
        field->append(text);
        return true;
    }

private:
    void show() override {
        if (field->getText() != control().value().asCharPointer())
            field->setText(control().value().asCharPointer());
    }
    void edited(Cback&) { control().setValue(field->getText().asCharPointer()); }

    CppText* field;
};

// A label shows its value, or its label while it has none; a value display is sunken; a group is a
// frame with its label as a title, behind the controls placed after it.
class LabelIcon : public DynamicIcon {
public:
    LabelIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        label = new CppLabel(name(c), &form);
        QLabel& q = *static_cast<QLabel*>(label->handle());
        if (c.kind() == DynamicControl::VALUE) {
            label->setFramed(true);
            q.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            q.setIndent(unit / 2);
        } else if (c.kind() == DynamicControl::GROUP) {
            q.setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
            q.setAlignment(Qt::AlignLeft | Qt::AlignTop);
            q.setMargin(unit / 2);
            QFont bold = q.font();
            bold.setBold(true);
            q.setFont(bold);
        }
        place(form, label, unit);
    }

private:
    void show() override { label->setText(control().shownText().asCharPointer()); }

    CppLabel* label;
};

}  // namespace

DynamicIcon* makeTextIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) {
    switch (c.kind()) {
        case DynamicControl::COMMAND:
        case DynamicControl::CYCLE:
            return new ButtonIcon(c, form, unit, owner);
        case DynamicControl::TOGGLE:
            return new ToggleIcon(c, form, unit, owner);
        case DynamicControl::TEXT:
        case DynamicControl::NUMBER:
        case DynamicControl::CONSOLE:
            return new FieldIcon(c, form, unit, owner);
        default:
            return new LabelIcon(c, form, unit, owner);
    }
}
