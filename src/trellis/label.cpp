// CppLabel over QLabel.
#include "trellis/label.h"

#include <QLabel>

#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(CppLabel, CppPrimitive, 1, 0)

CppLabel::CppLabel(const char* name, CppWidget* parent, const char* text, bool managed)
    : CppPrimitive(name, parent, managed) {
    setHandle(new QLabel(toQt(text ? text : name), parentContainer()));
}

void CppLabel::setText(const char* text) { static_cast<QLabel*>(handle())->setText(toQt(text)); }

String CppLabel::text() const { return fromQt(static_cast<QLabel*>(handle())->text()); }

void CppLabel::setFramed(bool framed) {
    static_cast<QLabel*>(handle())->setFrameStyle(framed ? QFrame::Panel | QFrame::Sunken : QFrame::NoFrame);
}
