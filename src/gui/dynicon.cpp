// DynamicIcon: the placing of an icon's widgets, its value, its event and the choice of its kind.
#include "gui/dynicon.h"

#include <QColor>
#include <QPalette>
#include <QWidget>
#include <iostream>

#include "gui/dynkinds.h"
#include "quill/cback.h"
#include "trellis/form.h"
#include "trellis/label.h"

DEFINE_ABSTRACT_CLASS(DynamicIcon, Object, 1, 0)

Symbol DynamicIconSelected("DynamicIconSelected");

DynamicIcon* DynamicIcon::make(DynamicControl& control, CppForm& form, int unit, Object& owner) {
    switch (control.kind()) {
        case DynamicControl::SLIDER:
        case DynamicControl::LEVEL:
        case DynamicControl::HISTOGRAM:
            return makeGaugeIcon(control, form, unit, owner);
        case DynamicControl::TREND:
            return makeTrendIcon(control, form, unit, owner);
        default:
            return makeTextIcon(control, form, unit, owner);
    }
}

DynamicIcon::DynamicIcon(DynamicControl& control, Object& owner)
    : control_(control), owner(owner), widget_(0), caption(0) {}

String DynamicIcon::text() const { return control_.value(); }

void DynamicIcon::setText(const char* text) {
    control_.setValue(text);
    show();
}

void DynamicIcon::press() {}

bool DynamicIcon::addPoint(double) { return false; }

bool DynamicIcon::clearPoints() { return false; }

bool DynamicIcon::append(const char*) { return false; }

bool DynamicIcon::cycleNext() {
    if (control_.cycle().size() == 0) return false;
    setText(control_.nextInCycle().asCharPointer());
    return true;
}

void DynamicIcon::setEnabled(bool on) {
    widget_->setSensitive(on);
    if (caption) caption->setSensitive(on);
}

void DynamicIcon::setVisible(bool on) {
    for (CppWidget* w : {widget_, static_cast<CppWidget*>(caption)}) {
        if (!w) continue;
        if (on)
            w->manage();
        else
            w->unmanage();
    }
}

void DynamicIcon::place(CppForm& form, CppWidget* widget, int unit) {
    widget_ = widget;
    int x = control_.x() * unit, y = control_.y() * unit;
    int width = control_.width() * unit, height = control_.height() * unit;
    int captionWidth = control_.labelWidth() * unit;
    if (captionWidth > 0) {
        caption = new CppLabel(formatText("%sCaption", control_.name().asCharPointer()), &form,
                               control_.label().asCharPointer());
        form.attachAt(*caption, x, y);
        caption->resize(captionWidth - unit / 2, height);
    }
    form.attachAt(*widget, x + captionWidth, y);
    widget->resize(width - captionWidth, height);
    applyColours(*widget->handle(), control_);
    show();
}

void DynamicIcon::raise() {
    CallData data(control_.name().asCharPointer());
    owner.cbackOn(DynamicIconSelected, &data);
}

void DynamicIcon::pressed(Cback&) { raise(); }

void applyColours(QWidget& widget, const DynamicControl& control) {
    QPalette palette = widget.palette();
    if (control.background().size()) {
        QColor colour(control.background().asCharPointer());
        for (QPalette::ColorRole role : {QPalette::Button, QPalette::Window, QPalette::Base})
            palette.setColor(role, colour);
        widget.setAutoFillBackground(true);
    }
    if (control.foreground().size()) {
        QColor colour(control.foreground().asCharPointer());
        for (QPalette::ColorRole role : {QPalette::ButtonText, QPalette::WindowText, QPalette::Text})
            palette.setColor(role, colour);
    }
    widget.setPalette(palette);
}
