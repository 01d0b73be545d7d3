// CppForm's attachments, its first layout with the ordering rounds, and the re-layout at resize.
#include "trellis/form.h"

#include <QResizeEvent>
#include <QWidget>
#include <initializer_list>

#include "quill/assoc.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"

DEFINE_CLASS(FormPosData, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(CppForm, CppComposite, 1, 0)
DEFINE_ABSTRACT_CLASS(ButtonBox, CppForm, 1, 0)

Object* const FormPosData::PERCENT = reinterpret_cast<Object*>(-1);

namespace {

const int MAX_ROUNDS = 1000;

// The window of a form: a size given by the window system lays it out
// again. The form lets go of it before the window goes.
class FormWidget : public QWidget {
public:
    FormWidget(CppForm& form, QWidget* parent) : QWidget(parent), form(&form) {}
    void forget() { form = 0; }

protected:
    void resizeEvent(QResizeEvent* e) override {
        QWidget::resizeEvent(e);
        if (!form) return;
        if (e->size().width() != form->width() || e->size().height() != form->height())
            form->setSize(e->size().width(), e->size().height());
        form->cbackOn(WidgetResize);
    }

private:
    CppForm* form;
};

struct Geometry {
    int x, y, width, height;
};

Geometry geometryOf(CppWidget& w) {
    Geometry g;
    w.getGeometry(g.x, g.y, g.width, g.height);
    return g;
}

Geometry siblingGeometry(Object* attach) { return geometryOf(*CAST(CppWidget, attach)); }

}  // namespace

FormPosData::FormPosData(Object* form)
    : leftAttach(form),
      rightAttach(0),
      topAttach(form),
      bottomAttach(0),
      leftOffset(0),
      rightOffset(0),
      topOffset(0),
      bottomOffset(0) {}

// CppForm

CppForm::CppForm(const char* name, CppWidget* parent, bool managed)
    : CppComposite(name, parent, managed), layoutDone_(false), width_(0), height_(0) {
    QASSERT(children != 0);
    setHandle(new FormWidget(*this, parentContainer()));
}

CppForm::~CppForm() noexcept(false) {
    static_cast<FormWidget*>(handle())->forget();
    // The pairs go; the widgets stay on the list for the composite to destroy.
    OrderedCltn pairs(*children);
    children->removeAll();
    for (int i = 0; i < int(pairs.size()); ++i) {
        Assoc* pair = CAST(Assoc, pairs.at(i));
        children->add(*pair->key());
        delete pair->value();
        delete pair;
    }
}

void CppForm::add(CppWidget& child) { children->add(*new Assoc(child, *new FormPosData(this))); }

void CppForm::removeChild(CppWidget& child) {
    int i = indexOfChild(&child);
    if (i < 0) return;
    Assoc* pair = CAST(Assoc, children->removeAtIndex(i));
    delete pair->value();
    delete pair;
}

int CppForm::childCount() const { return children->size(); }

Assoc& CppForm::pairAt(int i) const { return *CAST(Assoc, children->at(i)); }

CppWidget* CppForm::widgetAt(int i) const { return CAST(CppWidget, pairAt(i).key()); }

int CppForm::indexOfChild(const Object* child) const {
    for (int i = 0; i < childCount(); ++i)
        if (pairAt(i).key() == child) return i;
    return -1;
}

CppWidget* CppForm::childAt(int index) const {
    QASSERT_TEXT(index >= 0 && index < int(children->size()), "index >= 0 && index < children->size()");
    return widgetAt(index);
}

FormPosData& CppForm::positionOf(const CppWidget& child) const {
    int i = indexOfChild(&child);
    return *CAST(FormPosData, i < 0 ? 0 : pairAt(i).value());
}

void CppForm::realize() {
    if (!layoutDone_) doLayout();
    CppComposite::realize();
}

void CppForm::sizeToFit() {
    if (!layoutDone_) doLayout();
}

void CppForm::resize(int width, int height) {
    CppWidget::resize(width, height);
    setSize(width, height);
}

// Attachments

void CppForm::attachHorizontal(CppWidget* left, CppWidget* right, int gap) {
    if (right == this) {
        FormPosData& pos = positionOf(*left);
        pos.rightAttach = this;
        pos.rightOffset = gap;
        return;
    }
    FormPosData& pos = positionOf(*right);
    pos.leftAttach = left;
    pos.leftOffset = gap;
    if (!left) return;
    Geometry g = geometryOf(*right);
    int x = left == this ? gap : geometryOf(*left).x + geometryOf(*left).width + gap;
    right->move(x, g.y);
}

void CppForm::attachVertical(CppWidget* top, CppWidget* bottom, int gap) {
    if (bottom == this) {
        FormPosData& pos = positionOf(*top);
        pos.bottomAttach = this;
        pos.bottomOffset = gap;
        return;
    }
    FormPosData& pos = positionOf(*bottom);
    pos.topAttach = top;
    pos.topOffset = gap;
    if (!top) return;
    Geometry g = geometryOf(*bottom);
    int y = top == this ? gap : geometryOf(*top).y + geometryOf(*top).height + gap;
    bottom->move(g.x, y);
}

void CppForm::attachAt(CppWidget& child, int dx, int dy) {
    attachHorizontal(this, &child, dx);
    attachVertical(this, &child, dy);
}

void CppForm::attachLeftFromRight(CppWidget& child, int n) {
    FormPosData& pos = positionOf(child);
    pos.leftAttach = &child;
    pos.leftOffset = -n;
}

void CppForm::attachRightAt(CppWidget& child, int n) {
    FormPosData& pos = positionOf(child);
    pos.rightAttach = &child;
    pos.rightOffset = -n;
}

void CppForm::attachTopFromBottom(CppWidget& child, int n) {
    FormPosData& pos = positionOf(child);
    pos.topAttach = &child;
    pos.topOffset = -n;
}

void CppForm::attachBottomAt(CppWidget& child, int n) {
    FormPosData& pos = positionOf(child);
    pos.bottomAttach = &child;
    pos.bottomOffset = -n;
}

void CppForm::attachRightToSibling(CppWidget& child, CppWidget& sibling, int gap) {
    FormPosData& pos = positionOf(child);
    pos.rightAttach = &sibling;
    pos.rightOffset = gap;
}

void CppForm::attachBottomToSibling(CppWidget& child, CppWidget& sibling, int gap) {
    FormPosData& pos = positionOf(child);
    pos.bottomAttach = &sibling;
    pos.bottomOffset = gap;
}

void CppForm::attachLeftPercent(CppWidget& child, int percent) {
    FormPosData& pos = positionOf(child);
    pos.leftAttach = FormPosData::PERCENT;
    pos.leftOffset = percent;
}

void CppForm::attachRightPercent(CppWidget& child, int percent) {
    FormPosData& pos = positionOf(child);
    pos.rightAttach = FormPosData::PERCENT;
    pos.rightOffset = percent;
}

void CppForm::attachTopPercent(CppWidget& child, int percent) {
    FormPosData& pos = positionOf(child);
    pos.topAttach = FormPosData::PERCENT;
    pos.topOffset = percent;
}

void CppForm::attachBottomPercent(CppWidget& child, int percent) {
    FormPosData& pos = positionOf(child);
    pos.bottomAttach = FormPosData::PERCENT;
    pos.bottomOffset = percent;
}

// First layout

void CppForm::doLayout() {
    for (int i = 0; i < childCount(); ++i)
        if (widgetAt(i)->isManaged()) widgetAt(i)->sizeToFit();
    orderChildren();
    int workWidth = width_, workHeight = height_;
    for (int pass = 0; pass < 4; ++pass)
        for (int i = 0; i < childCount(); ++i) {
            CppWidget& child = *widgetAt(i);
            if (child.isManaged())
                placeFirst(child, *CAST(FormPosData, pairAt(i).value()), workWidth, workHeight);
        }
    layoutDone_ = true;
    width_ = workWidth;
    height_ = workHeight;
    handle()->resize(workWidth, workHeight);
}

// Whether the pair at position refers, by its first such attachment in the
// order left, right, top, bottom, to a sibling later in the list.
bool CppForm::mustFollow(int position, int& siblingIndex) const {
    Assoc& pair = pairAt(position);
    FormPosData& pos = *CAST(FormPosData, pair.value());
    for (Object* attach : {pos.leftAttach, pos.rightAttach, pos.topAttach, pos.bottomAttach}) {
        if (attach == 0 || attach == FormPosData::PERCENT || attach == pair.key() || attach == this) continue;
        siblingIndex = indexOfChild(attach);
        if (siblingIndex > position) return true;
    }
    return false;
}

void CppForm::orderChildren() {
    int current = 0, rounds = 0, sibling = 0;
    while (current < childCount() && rounds < MAX_ROUNDS) {
        if (!mustFollow(current, sibling)) {
            ++current;
            continue;
        }
        Object* moved = children->at(sibling);
        (*children)[sibling] = children->at(current);
        (*children)[current] = moved;
        ++rounds;
    }
}

void CppForm::placeFirst(CppWidget& child, FormPosData& pos, int& workWidth, int& workHeight) {
    Geometry g = geometryOf(child);
    // x and the width.
    if (pos.leftAttach == this)
        g.x = pos.leftOffset;
    else if (pos.leftAttach == &child)
        g.x = workWidth + pos.leftOffset;
    else if (pos.leftAttach == FormPosData::PERCENT)
        g.x = workWidth * pos.leftOffset / 100;
    else if (pos.leftAttach != 0)
        g.x = siblingGeometry(pos.leftAttach).x + siblingGeometry(pos.leftAttach).width + pos.leftOffset;
    if (pos.rightAttach == &child) {
        g.width = -g.x - pos.rightOffset;
        if (g.x + g.width > workWidth) workWidth = g.x + g.width;
    } else if (pos.rightAttach == this || pos.rightAttach == 0) {
        if (pos.rightAttach == this && pos.leftAttach == &child) g.width = -pos.rightOffset - pos.leftOffset;
        if (g.x + g.width + pos.rightOffset > workWidth) workWidth = g.x + g.width + pos.rightOffset;
    } else if (pos.rightAttach == FormPosData::PERCENT) {
        g.width = int(workWidth * pos.rightOffset / 100.0 - g.x);
    } else {
        g.width = siblingGeometry(pos.rightAttach).x - pos.rightOffset - g.x;
    }
    // y and the height, the same way.
    if (pos.topAttach == this)
        g.y = pos.topOffset;
    else if (pos.topAttach == &child)
        g.y = workHeight + pos.topOffset;
    else if (pos.topAttach == FormPosData::PERCENT)
        g.y = workHeight * pos.topOffset / 100;
    else if (pos.topAttach != 0)
        g.y = siblingGeometry(pos.topAttach).y + siblingGeometry(pos.topAttach).height + pos.topOffset;
    if (pos.bottomAttach == &child) {
        g.height = -g.y - pos.bottomOffset;
        if (g.y + g.height > workHeight) workHeight = g.y + g.height;
    } else if (pos.bottomAttach == this || pos.bottomAttach == 0) {
        if (pos.bottomAttach == this && pos.topAttach == &child) g.height = -pos.bottomOffset - pos.topOffset;
        if (g.y + g.height + pos.bottomOffset > workHeight) workHeight = g.y + g.height + pos.bottomOffset;
    } else if (pos.bottomAttach == FormPosData::PERCENT) {
        g.height = int(workHeight * pos.bottomOffset / 100.0 - g.y);
    } else {
        g.height = siblingGeometry(pos.bottomAttach).y - pos.bottomOffset - g.y;
    }
    child.move(g.x, g.y);
    child.resize(g.width, g.height);
}

// Re-layout

void CppForm::setSize(int width, int height) {
    width_ = width;
    height_ = height;
    if (!layoutDone_) return;
    for (int i = 0; i < childCount(); ++i) {
        CppWidget& child = *widgetAt(i);
        if (child.isManaged()) placeAgain(child, *CAST(FormPosData, pairAt(i).value()), width, height);
    }
}

void CppForm::placeAgain(CppWidget& child, FormPosData& pos, int w, int h) {
    Geometry g = geometryOf(child);
    if (pos.leftAttach == &child)
        g.x = w + pos.leftOffset;
    else if (pos.leftAttach == FormPosData::PERCENT)
        g.x = w * pos.leftOffset / 100;
    else if (pos.leftAttach != this && pos.leftAttach != 0)
        g.x = siblingGeometry(pos.leftAttach).x + siblingGeometry(pos.leftAttach).width + pos.leftOffset;
    if (pos.rightAttach == this)
        g.width = w - g.x - pos.rightOffset;
    else if (pos.rightAttach == FormPosData::PERCENT)
        g.width = int(w * pos.rightOffset / 100.0 - g.x);
    else if (pos.rightAttach == &child)
        g.width = -g.x - pos.rightOffset;
    else if (pos.rightAttach != 0)
        g.width = siblingGeometry(pos.rightAttach).x - pos.rightOffset - g.x;
    // The sibling branch of y is chosen by leftAttach, not topAttach: a child
    // with a free left edge keeps its y whatever its top refers to.
    if (pos.topAttach == &child)
        g.y = h + pos.topOffset;
    else if (pos.topAttach == FormPosData::PERCENT)
        g.y = h * pos.topOffset / 100;
    else if (pos.topAttach != this && pos.leftAttach != 0)
        g.y = siblingGeometry(pos.topAttach).y + siblingGeometry(pos.topAttach).height + pos.topOffset;
    if (pos.bottomAttach == this)
        g.height = h - g.y - pos.bottomOffset;
    else if (pos.bottomAttach == FormPosData::PERCENT)
        g.height = int(h * pos.bottomOffset / 100.0 - g.y);
    else if (pos.bottomAttach == &child)
        g.height = -g.y - pos.bottomOffset;
    else if (pos.bottomAttach != 0)
        g.height = siblingGeometry(pos.bottomAttach).y - pos.bottomOffset - g.y;
    if (g.width < 1) g.width = 1;
    if (g.height < 1) g.height = 1;
    child.move(g.x, g.y);
    child.resize(g.width, g.height);
}

// ButtonBox

ButtonBox::ButtonBox(const char* name, CppWidget* parent, int gap) : CppForm(name, parent), gap(gap) {}

void ButtonBox::add(CppWidget& child) {
    CppWidget* before = childCount() > 0 ? childAt(childCount() - 1) : this;
    CppForm::add(child);
    attachHorizontal(before, &child, gap);
    attachVertical(this, &child, gap);
}
