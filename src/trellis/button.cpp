// CppCommand over QPushButton, ToggleButton over QCheckBox or QRadioButton.
#include "trellis/button.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

#include "quill/cback.h"
#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(CppCommand, CppPrimitive, 1, 0)
DEFINE_ABSTRACT_CLASS(ToggleButton, CppPrimitive, 1, 0)

Symbol CppCommandPressed("CppCommandPressed");
Symbol ToggleButtonChanged("ToggleButtonChanged");

CppCommand::CppCommand(const char* name, CppWidget* parent, const char* label, bool managed)
    : CppPrimitive(name, parent, managed) {
    QPushButton* button = new QPushButton(toQtLabel(label ? label : name), parentContainer());
    button->setAutoDefault(false);
    setHandle(button);
    QObject::connect(button, &QPushButton::clicked, [this] { cbackOn(CppCommandPressed); });
}

void CppCommand::setLabel(const char* label) { static_cast<QPushButton*>(handle())->setText(toQtLabel(label)); }

String CppCommand::label() const {
    return fromQt(static_cast<QPushButton*>(handle())->text().replace("&& ", "& "));
}

void CppCommand::press() { static_cast<QPushButton*>(handle())->click(); }

ToggleButton::ToggleButton(const char* name, CppWidget* parent, const char* label, bool radio)
    : CppPrimitive(name, parent) {
    QString text = toQtLabel(label ? label : name);
    QAbstractButton* button = radio ? static_cast<QAbstractButton*>(new QRadioButton(text, parentContainer()))
                                    : static_cast<QAbstractButton*>(new QCheckBox(text, parentContainer()));
    setHandle(button);
    QObject::connect(button, &QAbstractButton::toggled, [this](bool on) {
        CallData data(static_cast<int>(on));
        cbackOn(ToggleButtonChanged, &data);
    });
}

bool ToggleButton::state() const { return static_cast<QAbstractButton*>(handle())->isChecked(); }

void ToggleButton::setState(bool on) { static_cast<QAbstractButton*>(handle())->setChecked(on); }

void ToggleButton::setLabel(const char* label) {
    static_cast<QAbstractButton*>(handle())->setText(toQtLabel(label));
}
