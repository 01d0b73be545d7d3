// The shapes: DrawLine with DrawRect, FillRect, DrawArc, FillArc, DrawString and DrawImageString.
#ifndef TRELLIS_DRAWPRIM_H
#define TRELLIS_DRAWPRIM_H

#include "trellis/drawicon.h"

extern Class class_DrawLine;
extern Class class_DrawRect;
extern Class class_FillRect;
extern Class class_DrawArc;
extern Class class_FillArc;
extern Class class_DrawString;
extern Class class_DrawImageString;

// From the reference point to the other end, (x + width, y + height).
class DrawLine : public SimpleIcon {
    DECLARE_MEMBERS(DrawLine)
public:
    DrawLine(float x = 0, float y = 0, float width = 0, float height = 0, const char* colorName = 0,
             CppGC* gc = 0);
    // Stream form: the base, then width and height.
    DrawLine(std::istream& is, Object* where);
    DrawLine(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // A negative extent swaps the sides.
    FloatRect getBoundingBox() const override;
    // Keeps the direction of each extent.
    void setBoundingBox(const FloatRect& box) override;

    float width;
    float height;

protected:
    void paint(Drawer& drawer) override;
};

class DrawRect : public DrawLine {
    DECLARE_MEMBERS(DrawRect)
public:
    DrawRect(float x = 0, float y = 0, float width = 0, float height = 0, const char* colorName = 0,
             CppGC* gc = 0);
    DrawRect(std::istream& is, Object* where) : DrawLine(is, where) {}
    DrawRect(BinIstream& is, Object* where) : DrawLine(is, where) {}

protected:
    void paint(Drawer& drawer) override;
};

class FillRect : public DrawRect {
    DECLARE_MEMBERS(FillRect)
public:
    FillRect(float x = 0, float y = 0, float width = 0, float height = 0, const char* colorName = 0,
             CppGC* gc = 0);
    FillRect(std::istream& is, Object* where) : DrawRect(is, where) {}
    FillRect(BinIstream& is, Object* where) : DrawRect(is, where) {}

protected:
    void paint(Drawer& drawer) override;
};

// The arc of the ellipse in the box, from start for extent, in 1/64 degree.
class DrawArc : public DrawLine {
    DECLARE_MEMBERS(DrawArc)
public:
    DrawArc(float x = 0, float y = 0, float width = 0, float height = 0, int start = 0, int extent = 360 * 64,
            const char* colorName = 0, CppGC* gc = 0);
    // Stream form: the base, then start and extent.
    DrawArc(std::istream& is, Object* where);
    DrawArc(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    int start;
    int extent;

protected:
    void paint(Drawer& drawer) override;
};

class FillArc : public DrawArc {
    DECLARE_MEMBERS(FillArc)
public:
    FillArc(float x = 0, float y = 0, float width = 0, float height = 0, int start = 0, int extent = 360 * 64,
            const char* colorName = 0, CppGC* gc = 0);
    FillArc(std::istream& is, Object* where) : DrawArc(is, where) {}
    FillArc(BinIstream& is, Object* where) : DrawArc(is, where) {}

protected:
    void paint(Drawer& drawer) override;
};

// A text at the reference point in a box width wide, aligned in it; the
// font is a family name, as high as height (at first the context's size).
class DrawString : public DrawLine {
    DECLARE_MEMBERS(DrawString)
public:
    enum Alignment { LEFT = 0, CENTER = 1, IMAGE = 2 };

    DrawString(float x = 0, float y = 0, float width = 0, const char* text = 0, int alignment = LEFT,
               const char* colorName = 0, CppGC* gc = 0);
    // Stream form (version 2): the base, the text and the font as Strings,
    // the alignment. Version 1 has no alignment: it reads as LEFT.
    DrawString(std::istream& is, Object* where);
    DrawString(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    String text;
    String font;
    int alignment;

protected:
    DrawString(std::istream& is, Object* where, const Class& read);
    DrawString(BinIstream& is, Object* where, const Class& read);
    void paint(Drawer& drawer) override;
    template <class Paint>
    void withHeight(Paint paint);
};

// A text painted with its box in the context's background colour.
class DrawImageString : public DrawString {
    DECLARE_MEMBERS(DrawImageString)
public:
    DrawImageString(float x = 0, float y = 0, float width = 0, const char* text = 0,
                    const char* colorName = 0, CppGC* gc = 0);
    DrawImageString(std::istream& is, Object* where) : DrawString(is, where, class_DrawImageString) {}
    DrawImageString(BinIstream& is, Object* where) : DrawString(is, where, class_DrawImageString) {}

protected:
    void paint(Drawer& drawer) override;
};

#endif
