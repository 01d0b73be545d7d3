// The shapes' stream forms, boxes and painting; DrawString's reading of its first version.
#include "trellis/drawprim.h"

#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"
#include "trellis/cppgc.h"
#include "trellis/drawer.h"

namespace {

// The signature a class had while DrawString was at version 1.
unsigned signatureBeforeAlignment(const Class& c) {
    unsigned s = 0;
    for (const Class* p = &c; p; p = p->base()) {
        unsigned version = p == &class_DrawString ? 1 : p->version();
        s = (s << 4 | s >> 28) ^ version;
    }
    return s;
}

bool readsDrawString1(unsigned found) { return found == signatureBeforeAlignment(class_DrawString); }
bool readsDrawImageString1(unsigned found) {
    return found == signatureBeforeAlignment(class_DrawImageString);
}

void acceptDrawString1(Class* c) { c->setUpgrader(readsDrawString1); }
void acceptDrawImageString1(Class* c) { c->setUpgrader(readsDrawImageString1); }

}  // namespace

DEFINE_CLASS(DrawLine, SimpleIcon, 1, 0)
DEFINE_CLASS(DrawRect, DrawLine, 1, 0)
DEFINE_CLASS(FillRect, DrawRect, 1, 0)
DEFINE_CLASS(DrawArc, DrawLine, 1, 0)
DEFINE_CLASS(FillArc, DrawArc, 1, 0)
DEFINE_CLASS(DrawString, DrawLine, 2, acceptDrawString1)
DEFINE_CLASS(DrawImageString, DrawString, 1, acceptDrawImageString1)

// DrawLine

DrawLine::DrawLine(float x, float y, float width, float height, const char* colorName, CppGC* gc)
    : SimpleIcon(x, y, colorName, gc), width(width), height(height) {}

DrawLine::DrawLine(std::istream& is, Object* where) : SimpleIcon(is, where), width(0), height(0) {
    width = readNumber<float>(is);
    height = readNumber<float>(is);
}

DrawLine::DrawLine(BinIstream& is, Object* where) : SimpleIcon(is, where), width(0), height(0) {
    is >> width >> height;
}

void DrawLine::storer(std::ostream& os) const {
    SimpleIcon::storer(os);
    os << width << ' ' << height << ' ';
}

void DrawLine::storer(BinOstream& os) const {
    SimpleIcon::storer(os);
    os << width << height;
}

FloatRect DrawLine::getBoundingBox() const { return FloatRect(x, y, width, height).normalized(); }

void DrawLine::setBoundingBox(const FloatRect& box) {
    x = float(width < 0 ? box.x() + box.width() : box.x());
    y = float(height < 0 ? box.y() + box.height() : box.y());
    width = float(width < 0 ? -box.width() : box.width());
    height = float(height < 0 ? -box.height() : box.height());
}

void DrawLine::paint(Drawer& drawer) { drawer.drawLine(gc(), x, y, width, height); }

// DrawRect, FillRect

DrawRect::DrawRect(float x, float y, float width, float height, const char* colorName, CppGC* gc)
    : DrawLine(x, y, width, height, colorName, gc) {}

void DrawRect::paint(Drawer& drawer) { drawer.drawRect(gc(), x, y, width, height, false); }

FillRect::FillRect(float x, float y, float width, float height, const char* colorName, CppGC* gc)
    : DrawRect(x, y, width, height, colorName, gc) {}

void FillRect::paint(Drawer& drawer) { drawer.drawRect(gc(), x, y, width, height, true); }

// DrawArc, FillArc

DrawArc::DrawArc(float x, float y, float width, float height, int start, int extent, const char* colorName,
                 CppGC* gc)
    : DrawLine(x, y, width, height, colorName, gc), start(start), extent(extent) {}

DrawArc::DrawArc(std::istream& is, Object* where) : DrawLine(is, where), start(0), extent(0) {
    start = readNumber<int>(is);
    extent = readNumber<int>(is);
}

DrawArc::DrawArc(BinIstream& is, Object* where) : DrawLine(is, where), start(0), extent(0) {
    is >> start >> extent;
}

void DrawArc::storer(std::ostream& os) const {
    DrawLine::storer(os);
    os << start << ' ' << extent << ' ';
}

void DrawArc::storer(BinOstream& os) const {
    DrawLine::storer(os);
    os << start << extent;
}

void DrawArc::paint(Drawer& drawer) { drawer.drawArc(gc(), x, y, width, height, start, extent, false); }

FillArc::FillArc(float x, float y, float width, float height, int start, int extent, const char* colorName,
                 CppGC* gc)
    : DrawArc(x, y, width, height, start, extent, colorName, gc) {}

void FillArc::paint(Drawer& drawer) { drawer.drawArc(gc(), x, y, width, height, start, extent, true); }

// DrawString, DrawImageString

DrawString::DrawString(float x, float y, float width, const char* text, int alignment, const char* colorName,
                       CppGC* gc)
    : DrawLine(x, y, width, 0, colorName, gc),
      text(text ? text : ""),
      font("Helvetica"),
      alignment(alignment) {
    height = float(this->gc().fontSize);
}

DrawString::DrawString(std::istream& is, Object* where) : DrawString(is, where, class_DrawString) {}

DrawString::DrawString(BinIstream& is, Object* where) : DrawString(is, where, class_DrawString) {}

DrawString::DrawString(std::istream& is, Object* where, const Class& read)
    : DrawLine(is, where), alignment(LEFT) {
    readFrom(is, class_String, &text);
    readFrom(is, class_String, &font);
    if (read.readVersion() != signatureBeforeAlignment(read)) alignment = readNumber<int>(is);
}

DrawString::DrawString(BinIstream& is, Object* where, const Class& read)
    : DrawLine(is, where), alignment(LEFT) {
    readFrom(is, class_String, &text);
    readFrom(is, class_String, &font);
    if (read.readVersion() != signatureBeforeAlignment(read)) is >> alignment;
}

void DrawString::storer(std::ostream& os) const {
    DrawLine::storer(os);
    text.storeOn(os);
    font.storeOn(os);
    os << alignment << ' ';
}

void DrawString::storer(BinOstream& os) const {
    DrawLine::storer(os);
    text.storeOn(os);
    font.storeOn(os);
    os << alignment;
}

void DrawString::paint(Drawer& drawer) {
    gc().fontFamily = font;
    withHeight([&](double top) { drawer.drawString(gc(), x, top, width, text.asCharPointer(), alignment); });
}

// The text is as high as the string's height, which starts as the
// context's font size.
template <class Paint>
void DrawString::withHeight(Paint paint) {
    double size = gc().fontSize;
    if (height > 0) gc().fontSize = height;
    paint(double(y));
    gc().fontSize = size;
}

DrawImageString::DrawImageString(float x, float y, float width, const char* text, const char* colorName,
                                 CppGC* gc)
    : DrawString(x, y, width, text, IMAGE, colorName, gc) {}

void DrawImageString::paint(Drawer& drawer) {
    gc().fontFamily = font;
    withHeight([&](double top) { drawer.drawString(gc(), x, top, width, text.asCharPointer(), IMAGE); });
}
