// DrawIcon, CompositeIcon and SimpleIcon: the drawing objects that a picture is a list of.
#ifndef TRELLIS_DRAWICON_H
#define TRELLIS_DRAWICON_H

#include "quill/point.h"
#include "quill/quillstr.h"

class CppGC;
class Drawer;
class OrderedCltn;

extern Class class_DrawIcon;
extern Class class_CompositeIcon;
extern Class class_SimpleIcon;

// A shape in world coordinates around its reference point (x, y). Every
// operation of the base reports itself as the subclasses' responsibility.
class DrawIcon : public Object {
    DECLARE_MEMBERS(DrawIcon)
public:
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    int compare(const Object& ob) const override;  // by address

    // Paints the icon on the drawer.
    virtual void print(Drawer& drawer);
    virtual void draw(Drawer& drawer);
    // Paints it in the background colour.
    virtual void erase(Drawer& drawer);
    virtual void highLight(Drawer& drawer);
    virtual void unhighLight(Drawer& drawer);
    // The box in world coordinates, its extent never negative.
    virtual FloatRect getBoundingBox() const;
    // Moves and scales the icon into the box.
    virtual void setBoundingBox(const FloatRect& box);
    virtual void setForeground(const char* colorName);
    virtual void setBackground(const char* colorName);
    virtual void drawFunction(int function);
    // Paints the icon in the colour from now on, in its own again after null.
    virtual void setHighlight(const char* colorName);

    float x;
    float y;

protected:
    DrawIcon(float x = 0, float y = 0) : x(x), y(y) {}
    // Stream form: the base, then x and y.
    DrawIcon(std::istream& is, Object* where);
    DrawIcon(BinIstream& is, Object* where);
};

// Icons painted in order, the later on top, each placed relative to the
// composite's point (x, y). It owns them.
class CompositeIcon : public DrawIcon {
    DECLARE_MEMBERS(CompositeIcon)
public:
    CompositeIcon();
    CompositeIcon(const CompositeIcon&) = delete;
    // Stream form: the base, then the collection of icons.
    CompositeIcon(std::istream& is, Object* where);
    CompositeIcon(BinIstream& is, Object* where);
    ~CompositeIcon() noexcept(false) override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    void add(DrawIcon& icon);
    // Takes the icon out when it is an element; the caller owns it again.
    void remove(DrawIcon& icon);
    // Deletes every element, nested composites with theirs.
    void deleteIcons();
    const OrderedCltn& icons() const { return *elements; }

    void print(Drawer& drawer) override;
    void draw(Drawer& drawer) override;
    void erase(Drawer& drawer) override;
    void highLight(Drawer& drawer) override;
    void unhighLight(Drawer& drawer) override;
    // The union of the elements' boxes; empty for no elements.
    FloatRect getBoundingBox() const override;
    // Maps each element from the present box into the new one.
    void setBoundingBox(const FloatRect& box) override;
    void setForeground(const char* colorName) override;
    void setBackground(const char* colorName) override;
    void drawFunction(int function) override;
    void setHighlight(const char* colorName) override;

private:
    DrawIcon& element(int i) const;
    template <class Call>
    void placed(Call call) const;

    OrderedCltn* elements;
};

// An icon of one colour, drawn through a graphic context.
class SimpleIcon : public DrawIcon {
    DECLARE_MEMBERS(SimpleIcon)
public:
    SimpleIcon(const SimpleIcon&) = delete;
    ~SimpleIcon() noexcept(false) override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // Sets the context's colour to the icon's and paints the shape.
    void print(Drawer& drawer) override;
    void draw(Drawer& drawer) override;
    void erase(Drawer& drawer) override;
    // Paints in the colour "highlight", and back in its own.
    void highLight(Drawer& drawer) override;
    void unhighLight(Drawer& drawer) override;
    void setForeground(const char* colorName) override;
    void setBackground(const char* colorName) override;
    void drawFunction(int function) override;
    void setHighlight(const char* colorName) override;

    const String& colorName() const { return color; }
    CppGC& gc() const { return *context; }
    // Takes a reference on the context, and releases the former one.
    void setGC(CppGC& gc);

protected:
    // A null context is the default one.
    SimpleIcon(float x, float y, const char* colorName, CppGC* gc);
    // Stream form: the base, the colour as a String, the context's number.
    SimpleIcon(std::istream& is, Object* where);
    SimpleIcon(BinIstream& is, Object* where);
    // Paints the shape with the context as it stands.
    virtual void paint(Drawer& drawer) = 0;

private:
    void paintIn(Drawer& drawer, const String& colorName);
    // The highlight colour while there is one, else the icon's own.
    const String& shownColor() const;

    String color;
    CppGC* context;
    String highlightColor;  // empty when not highlighted; not stored
};

#endif
