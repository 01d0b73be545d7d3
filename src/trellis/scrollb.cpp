// CppScrollbar over QScrollBar, CppViewport over QScrollArea.
#include "trellis/scrollb.h"

#include <QScrollArea>
#include <QScrollBar>

#include "quill/cback.h"

DEFINE_ABSTRACT_CLASS(CppScrollbar, CppPrimitive, 1, 0)
DEFINE_ABSTRACT_CLASS(CppViewport, CppComposite, 1, 0)

Symbol CppScrollbarChanged("CppScrollbarChanged");

CppScrollbar::CppScrollbar(const char* name, CppWidget* parent, bool horizontal)
    : CppPrimitive(name, parent) {
    QScrollBar* bar = new QScrollBar(horizontal ? Qt::Horizontal : Qt::Vertical, parentContainer());
    setHandle(bar);
    QObject::connect(bar, &QScrollBar::valueChanged, [this](int value) {
        CallData data(value);
        cbackOn(CppScrollbarChanged, &data);
    });
}

void CppScrollbar::setRange(int minimum, int maximum, int thumb) {
    QScrollBar* bar = static_cast<QScrollBar*>(handle());
    bar->setRange(minimum, maximum);
    bar->setPageStep(thumb);
    bar->setSingleStep(thumb / 10 > 1 ? thumb / 10 : 1);
}

int CppScrollbar::value() const { return static_cast<QScrollBar*>(handle())->value(); }

void CppScrollbar::setValue(int value) { static_cast<QScrollBar*>(handle())->setValue(value); }

int CppScrollbar::minimum() const { return static_cast<QScrollBar*>(handle())->minimum(); }

int CppScrollbar::maximum() const { return static_cast<QScrollBar*>(handle())->maximum(); }

int CppScrollbar::thumb() const { return static_cast<QScrollBar*>(handle())->pageStep(); }

CppViewport::CppViewport(const char* name, CppWidget* parent, bool managed)
    : CppComposite(name, parent, managed) {
    QScrollArea* area = new QScrollArea(parentContainer());
    area->setWidgetResizable(true);
    setHandle(area);
}

void CppViewport::add(CppWidget& child) {
    CppComposite::add(child);
    static_cast<QScrollArea*>(handle())->setWidget(child.handle());
}
