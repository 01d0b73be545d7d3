// CppWidget, CppComposite and CppPrimitive: construction on a Qt widget, realising, geometry, focus.
#include "trellis/widget.h"

#include <QFontMetrics>
#include <QWidget>

#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "trellis/cursor.h"
#include "trellis/handles.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(CppWidget, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(CppComposite, CppWidget, 1, 0)
DEFINE_ABSTRACT_CLASS(CppPrimitive, CppWidget, 1, 0)

Symbol WidgetResize("WidgetResize");
Symbol FocusInCback("FocusInCback");

CppWidget::CppWidget(const char* name, CppWidget* parent, bool managed)
    : sizedByProgram(false),
      window(0),
      parent_(parent),
      name_(name ? name : ""),
      focusFlag(0),
      managed(managed),
      realized(0) {}

CppWidget::~CppWidget() noexcept(false) {
    if (parent_ && parent_->isKindOf(class_CppComposite))
        static_cast<CppComposite*>(parent_)->removeChild(*this);
    if (window) {
        hWnd2Widget.remove(window);
        QWidget* w = window;
        window = 0;
        delete w;
    }
}

void CppWidget::setHandle(QWidget* w) {
    QASSERT(window == 0);
    window = w;
    hWnd2Widget.add(w, *this);
    if (!managed) w->hide();
    if (parent_ && parent_->isKindOf(class_CppComposite)) static_cast<CppComposite*>(parent_)->add(*this);
    // A child added to a window already on the screen appears at once.
    if (managed && hasParentWidget() && w->parentWidget() && w->parentWidget()->isVisible()) w->show();
}

QWidget* CppWidget::parentContainer() const {
    if (!parent_) return 0;
    if (parent_->isKindOf(class_CppComposite)) return static_cast<CppComposite*>(parent_)->childContainer();
    return parent_->handle();
}

void CppWidget::realize() { realized = 1; }

int CppWidget::keyEvent(int, bool) { return 0; }

void CppWidget::notify() {}

void CppWidget::getGeometry(int& x, int& y, int& width, int& height) {
    if (!realized && parent_ && hasParentWidget() && parent_->isRealized()) {
        realized = 1;
        realize();
    }
    QRect r = window->geometry();
    x = r.x();
    y = r.y();
    width = r.width();
    height = r.height();
}

void CppWidget::move(int x, int y) { window->move(x, y); }

void CppWidget::resize(int width, int height) {
    sizedByProgram = true;
    window->resize(width, height);
}

int CppWidget::hasParentWidget() const { return 1; }

void CppWidget::setFocus() {
    if (focusFlag) window->setFocus();
}

void CppWidget::sizeToFit() {
    if (!sizedByProgram) window->resize(window->sizeHint().expandedTo(window->minimumSizeHint()));
}

void CppWidget::manage() {
    managed = 1;
    window->show();
}

void CppWidget::unmanage() {
    managed = 0;
    window->hide();
}

void CppWidget::setSensitive(bool sensitive) { window->setEnabled(sensitive); }

bool CppWidget::isSensitive() const { return window->isEnabled(); }

CppShell* CppWidget::shell() {
    CppWidget* w = this;
    while (w->hasParentWidget() && w->parent_) w = w->parent_;
    return w->isKindOf(class_CppShell) ? static_cast<CppShell*>(w) : 0;
}

String CppWidget::setCursor(const char* cursorName) {
    String previous = cursor;
    if (cursorName) {
        cursor = cursorName;
        window->setCursor(Qt::CursorShape(cursorShape(cursorName)));
    } else {
        cursor = "";
        window->unsetCursor();
    }
    return previous;
}

void CppWidget::textSize(const char* text, int extraColumns, int extraRows, int& width, int& height) const {
    int lines = 1, longest = 0, current = 0;
    for (const char* p = text ? text : ""; *p; ++p) {
        if (*p == '\n') {
            ++lines;
            current = 0;
        } else if (++current > longest) {
            longest = current;
        }
    }
    QFontMetrics metrics(window->font());
    width = metrics.averageCharWidth() * (longest + extraColumns);
    height = metrics.height() * (lines + extraRows);
}

// CppComposite

CppComposite::CppComposite(const char* name, CppWidget* parent, bool managed)
    : CppWidget(name, parent, managed), children(new OrderedCltn) {}

CppComposite::~CppComposite() noexcept(false) {
    // Children are taken off the list before they go, so they don't call back.
    while (!children->isEmpty()) {
        CppWidget* child = CAST(CppWidget, children->removeLast());
        child->parent_ = 0;
        delete child;
    }
    delete children;
    children = 0;
}

void CppComposite::realize() {
    CppWidget::realize();
    for (int i = 0; i < childCount(); ++i) {
        CppWidget* child = widgetAt(i);
        if (child->isManaged()) child->realize();
    }
}

void CppComposite::add(CppWidget& child) { children->add(child); }

void CppComposite::removeChild(CppWidget& child) {
    int i = children->indexOfSame(child);
    if (i >= 0) children->removeAtIndex(i);
}

QWidget* CppComposite::childContainer() const { return handle(); }

CppWidget* CppComposite::childNamed(const char* childName) const {
    for (int i = 0; i < childCount(); ++i)
        if (widgetAt(i)->name().isEqual(childName)) return widgetAt(i);
    return 0;
}

int CppComposite::childCount() const { return children->size(); }

CppWidget* CppComposite::widgetAt(int i) const { return CAST(CppWidget, children->at(i)); }

// CppPrimitive

CppPrimitive::CppPrimitive(const char* name, CppWidget* parent, bool managed)
    : CppWidget(name, parent, managed) {}

// Handles

Object* widgetOfHandle(const QWidget* handle) {
    for (const QWidget* w = handle; w; w = w->parentWidget()) {
        Object* found = hWnd2Widget.find(w);
        if (found != nil) return found;
    }
    return nil;
}
