// GifDrawer: a list of drawing objects painted on a gd image and written as a GIF file.
#ifndef TRELLIS_GIFDRAWR_H
#define TRELLIS_GIFDRAWR_H

#include <map>
#include <string>

#include "quill/quillstr.h"
#include "trellis/drawer.h"

struct gdImageStruct;
struct GdLibrary;

extern Class class_GifDrawer;

// Colours are given image indices as their names are met, "background"
// (the colour "printBackground", else white) first; an image holds 256.
class GifDrawer : public Drawer {
    DECLARE_MEMBERS(GifDrawer)
public:
    GifDrawer();
    ~GifDrawer() noexcept(false) override;

    // An image width by height pixels showing the world rectangle.
    void open(const char* fileName, const FloatRect& world, int width, int height);
    // A background in "background" first, when asked; then each icon.
    void paint(const OrderedCltn& icons, bool fillBackground);
    // Writes the file; answers false after reporting a failure, or when libgd could not be loaded.
    bool close();

    void drawLine(CppGC& gc, double x, double y, double width, double height) override;
    void drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                 bool filled) override;
    void drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) override;
    void drawThickArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                      double thickness) override;
    void drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) override;
    void drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment) override;

    int width() const { return imageWidth; }
    int height() const { return imageHeight; }

private:
    int colorIndex(const String& name);
    // The pen: the colour's index, or the dashed style made of it.
    int pen(CppGC& gc);
    void toImage(double x, double y, int& ix, int& iy) const;

    const GdLibrary* gd;
    gdImageStruct* image;
    std::map<std::string, int> colors;
    int imageWidth;
    int imageHeight;
    String fileName;
    TranslCoord map;
    bool tooManyReported;
};

#endif
