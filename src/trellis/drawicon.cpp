// DrawIcon's stream form and responsibilities, CompositeIcon's list, SimpleIcon's colour and context.
#include "trellis/drawicon.h"

#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/orderedc.h"
#include "trellis/cppgc.h"

DEFINE_ABSTRACT_CLASS(DrawIcon, Object, 1, 0)
DEFINE_CLASS(CompositeIcon, DrawIcon, 1, 0)
DEFINE_ABSTRACT_CLASS(SimpleIcon, DrawIcon, 1, 0)

// DrawIcon

DrawIcon::DrawIcon(std::istream& is, Object* where) : Object(is, where), x(0), y(0) {
    x = readNumber<float>(is);
    y = readNumber<float>(is);
}

DrawIcon::DrawIcon(BinIstream& is, Object* where) : Object(is, where), x(0), y(0) { is >> x >> y; }

void DrawIcon::storer(std::ostream& os) const {
    Object::storer(os);
    os << x << ' ' << y << ' ';
}

void DrawIcon::storer(BinOstream& os) const {
    Object::storer(os);
    os << x << y;
}

int DrawIcon::compare(const Object& ob) const { return this < &ob ? -1 : this > &ob ? 1 : 0; }

void DrawIcon::print(Drawer&) { derivedClassResponsibility("print"); }
void DrawIcon::draw(Drawer&) { derivedClassResponsibility("draw"); }
void DrawIcon::erase(Drawer&) { derivedClassResponsibility("erase"); }
void DrawIcon::highLight(Drawer&) { derivedClassResponsibility("highLight"); }
void DrawIcon::unhighLight(Drawer&) { derivedClassResponsibility("unhighLight"); }

FloatRect DrawIcon::getBoundingBox() const {
    derivedClassResponsibility("getBoundingBox");
    return FloatRect();
}

void DrawIcon::setBoundingBox(const FloatRect&) { derivedClassResponsibility("setBoundingBox"); }
void DrawIcon::setForeground(const char*) { derivedClassResponsibility("setForeground"); }
void DrawIcon::setBackground(const char*) { derivedClassResponsibility("setBackground"); }
void DrawIcon::drawFunction(int) { derivedClassResponsibility("drawFunction"); }
void DrawIcon::setHighlight(const char*) { derivedClassResponsibility("setHighlight"); }

// CompositeIcon

CompositeIcon::CompositeIcon() : elements(new OrderedCltn) {}

CompositeIcon::CompositeIcon(std::istream& is, Object* where) : DrawIcon(is, where), elements(0) {
    elements = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
}

CompositeIcon::CompositeIcon(BinIstream& is, Object* where) : DrawIcon(is, where), elements(0) {
    elements = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
}

CompositeIcon::~CompositeIcon() noexcept(false) {
    if (!elements) return;
    deleteIcons();
    delete elements;
}

void CompositeIcon::storer(std::ostream& os) const {
    DrawIcon::storer(os);
    elements->storeOn(os);
}

void CompositeIcon::storer(BinOstream& os) const {
    DrawIcon::storer(os);
    elements->storeOn(os);
}

void CompositeIcon::add(DrawIcon& icon) { elements->add(icon); }

void CompositeIcon::remove(DrawIcon& icon) {
    if (elements->indexOfSame(icon) >= 0) elements->removeSame(icon);
}

void CompositeIcon::deleteIcons() { elements->deleteContents(); }

DrawIcon& CompositeIcon::element(int i) const { return *CAST(DrawIcon, elements->at(i)); }

void CompositeIcon::print(Drawer& drawer) {
    placed([&](DrawIcon& icon) { icon.print(drawer); });
}

void CompositeIcon::draw(Drawer& drawer) {
    placed([&](DrawIcon& icon) { icon.draw(drawer); });
}

void CompositeIcon::erase(Drawer& drawer) {
    placed([&](DrawIcon& icon) { icon.erase(drawer); });
}

void CompositeIcon::highLight(Drawer& drawer) {
    placed([&](DrawIcon& icon) { icon.highLight(drawer); });
}

void CompositeIcon::unhighLight(Drawer& drawer) {
    placed([&](DrawIcon& icon) { icon.unhighLight(drawer); });
}

// Elements stand relative to the composite's point: each is moved there for
// the call, and back.
template <class Call>
void CompositeIcon::placed(Call call) const {
    for (unsigned i = 0; i < elements->size(); ++i) {
        DrawIcon& icon = element(i);
        float ownX = icon.x, ownY = icon.y;
        icon.x += x;
        icon.y += y;
        call(icon);
        icon.x = ownX;
        icon.y = ownY;
    }
}

FloatRect CompositeIcon::getBoundingBox() const {
    FloatRect box;
    placed([&](DrawIcon& icon) { box = box.unionWith(icon.getBoundingBox()); });
    return box;
}

void CompositeIcon::setBoundingBox(const FloatRect& placedBox) {
    FloatRect box(placedBox.x() - x, placedBox.y() - y, placedBox.width(), placedBox.height());
    FloatRect from;
    for (unsigned i = 0; i < elements->size(); ++i) from = from.unionWith(element(i).getBoundingBox());
    double sx = from.width() > 0 ? box.width() / from.width() : 1.0;
    double sy = from.height() > 0 ? box.height() / from.height() : 1.0;
    for (unsigned i = 0; i < elements->size(); ++i) {
        FloatRect r = element(i).getBoundingBox();
        element(i).setBoundingBox(FloatRect(box.x() + (r.x() - from.x()) * sx,
                                            box.y() + (r.y() - from.y()) * sy, r.width() * sx,
                                            r.height() * sy));
    }
}

void CompositeIcon::setForeground(const char* colorName) {
    for (unsigned i = 0; i < elements->size(); ++i) element(i).setForeground(colorName);
}

void CompositeIcon::setBackground(const char* colorName) {
    for (unsigned i = 0; i < elements->size(); ++i) element(i).setBackground(colorName);
}

void CompositeIcon::drawFunction(int function) {
    for (unsigned i = 0; i < elements->size(); ++i) element(i).drawFunction(function);
}

void CompositeIcon::setHighlight(const char* colorName) {
    for (unsigned i = 0; i < elements->size(); ++i) element(i).setHighlight(colorName);
}

// SimpleIcon

SimpleIcon::SimpleIcon(float x, float y, const char* colorName, CppGC* gc)
    : DrawIcon(x, y), color(colorName ? colorName : "black"), context(gc ? gc : &CppGC::defaultGC()) {
    context->addReference();
}

SimpleIcon::SimpleIcon(std::istream& is, Object* where) : DrawIcon(is, where), context(0) {
    readFrom(is, class_String, &color);
    context = &CppGC::byNumber(readNumber<int>(is));
    context->addReference();
}

SimpleIcon::SimpleIcon(BinIstream& is, Object* where) : DrawIcon(is, where), context(0) {
    readFrom(is, class_String, &color);
    int number = 0;
    is >> number;
    context = &CppGC::byNumber(number);
    context->addReference();
}

SimpleIcon::~SimpleIcon() noexcept(false) {
    if (context) context->release();
}

void SimpleIcon::storer(std::ostream& os) const {
    DrawIcon::storer(os);
    color.storeOn(os);
    os << context->number() << ' ';
}

void SimpleIcon::storer(BinOstream& os) const {
    DrawIcon::storer(os);
    color.storeOn(os);
    os << context->number();
}

void SimpleIcon::setGC(CppGC& gc) {
    gc.addReference();
    if (context) context->release();
    context = &gc;
}

void SimpleIcon::paintIn(Drawer& drawer, const String& colorName) {
    context->foreground = colorName;
    paint(drawer);
}

const String& SimpleIcon::shownColor() const { return highlightColor.size() ? highlightColor : color; }

void SimpleIcon::print(Drawer& drawer) { paintIn(drawer, shownColor()); }
void SimpleIcon::draw(Drawer& drawer) { paintIn(drawer, shownColor()); }
void SimpleIcon::erase(Drawer& drawer) { paintIn(drawer, context->background); }
void SimpleIcon::highLight(Drawer& drawer) { paintIn(drawer, String("highlight")); }
void SimpleIcon::unhighLight(Drawer& drawer) {
    erase(drawer);
    draw(drawer);
}

void SimpleIcon::setForeground(const char* colorName) { color = colorName; }
void SimpleIcon::setBackground(const char* colorName) { context->background = colorName; }
void SimpleIcon::drawFunction(int function) { context->function = function; }
void SimpleIcon::setHighlight(const char* colorName) { highlightColor = colorName ? colorName : ""; }
