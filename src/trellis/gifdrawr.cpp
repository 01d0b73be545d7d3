// GifDrawer on libgd: the world mapped to the image, colours by name, the primitives as gd calls.
#include "trellis/gifdrawr.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <vector>

#include "quill/orderedc.h"
#include "quill/safefile.h"
#include "trellis/ask.h"
#include "trellis/cppgc.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"
#include "trellis/gdlib.h"

DEFINE_CLASS(GifDrawer, Drawer, 1, 0)

namespace {

int channel(double v) { return int(std::lround(v * 255)); }

}  // namespace

GifDrawer::GifDrawer() : gd(0), image(0), imageWidth(0), imageHeight(0), tooManyReported(false) {}

GifDrawer::~GifDrawer() noexcept(false) {
    if (image) gd->imageDestroy(image);
}

void GifDrawer::open(const char* name, const FloatRect& world, int width, int height) {
    if (image) gd->imageDestroy(image);
    image = 0;
    gd = gdLibrary();
    if (!gd) return;
    imageWidth = width > 0 ? width : 1;
    imageHeight = height > 0 ? height : 1;
    image = gd->imageCreate(imageWidth, imageHeight);
    fileName = name;
    colors.clear();
    tooManyReported = false;
    map.setAbsolute(FloatRect(0, 0, imageWidth, imageHeight));
    map.setWorld(world);
    // The first colour of a palette image is its background.
    colorIndex(String("background"));
}

int GifDrawer::colorIndex(const String& name) {
    auto found = colors.find(name.asCharPointer());
    if (found != colors.end()) return found->second;
    double r = 0, g = 0, b = 0;
    if (name == "background") {
        if (!colorOf("printBackground", r, g, b)) r = g = b = 1.0;
    } else {
        colorOf(name.asCharPointer(), r, g, b);
    }
    int index = gd->imageColorExact(image, channel(r), channel(g), channel(b));
    if (index < 0) index = gd->imageColorAllocate(image, channel(r), channel(g), channel(b));
    if (index < 0) {
        if (!tooManyReported) std::cerr << "Too colors" << std::endl;
        tooManyReported = true;
        index = gd->imageColorClosest(image, channel(r), channel(g), channel(b));
    }
    colors[name.asCharPointer()] = index;
    return index;
}

int GifDrawer::pen(CppGC& gc) {
    int index = colorIndex(gc.foreground);
    gd->imageSetThickness(image, std::max(1, int(std::lround(gc.lineWidth))));
    if (!gc.dashed) return index;
    int style[8] = {index, index, index, index, gdTransparent, gdTransparent, gdTransparent, gdTransparent};
    gd->imageSetStyle(image, style, 8);
    return gdStyled;
}

void GifDrawer::toImage(double x, double y, int& ix, int& iy) const {
    FloatPoint p = map.toAbsolute(FloatPoint(x, y));
    ix = int(std::lround(p.x()));
    iy = int(std::lround(p.y()));
}

void GifDrawer::paint(const OrderedCltn& icons, bool fillBackground) {
    if (!image) return;
    if (fillBackground) {
        const FloatRect& world = map.world();
        FillRect background(float(world.x()), float(world.y()), float(world.width()), float(world.height()),
                            "background");
        background.print(*this);
    }
    for (unsigned i = 0; i < icons.size(); ++i) CAST(DrawIcon, icons.at(i))->print(*this);
}

bool GifDrawer::close() {
    if (!image) return false;
    int size = 0;
    void* gif = gd->imageGifPtr(image, &size);
    if (!gif) errno = ENOMEM;
    String failure =
        !gif ? String("no image") : writeSafely(fileName.asCharPointer(), [gif, size](std::ostream& out) {
            out.write(static_cast<const char*>(gif), size);
        });
    gd->free(gif);
    if (failure.size() == 0) return true;
    showMessage(formatText("Write error on file %s, %s", fileName.asCharPointer(), std::strerror(errno)),
                "Error", MESSAGE_ERROR);
    return false;
}

void GifDrawer::drawLine(CppGC& gc, double x, double y, double width, double height) {
    int x1, y1, x2, y2;
    toImage(x, y, x1, y1);
    toImage(x + width, y + height, x2, y2);
    gd->imageLine(image, x1, y1, x2, y2, pen(gc));
}

void GifDrawer::drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) {
    int x1, y1, x2, y2;
    toImage(x, y, x1, y1);
    toImage(x + width, y + height, x2, y2);
    if (x2 < x1) std::swap(x1, x2);
    if (y2 < y1) std::swap(y1, y2);
    if (filled)
        gd->imageFilledRectangle(image, x1, y1, x2, y2, colorIndex(gc.foreground));
    else
        gd->imageRectangle(image, x1, y1, x2, y2, pen(gc));
}

// gd turns clockwise from three o'clock, the drawing counterclockwise.
void GifDrawer::drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                        bool filled) {
    normalizeArc(x, y, width, height, start, extent);
    if (extent == 0) return;
    int x1, y1, x2, y2;
    toImage(x, y, x1, y1);
    toImage(x + width, y + height, x2, y2);
    int from = 360 - (start + extent) / 64, to = 360 - start / 64;
    int cx = (x1 + x2) / 2, cy = (y1 + y2) / 2, w = std::abs(x2 - x1), h = std::abs(y2 - y1);
    if (filled)
        gd->imageFilledArc(image, cx, cy, w, h, from, to, colorIndex(gc.foreground), gdPie);
    else
        gd->imageArc(image, cx, cy, w, h, from, to, pen(gc));
}

void GifDrawer::drawThickArc(CppGC& gc, double x, double y, double width, double height, int start,
                             int extent, double thickness) {
    double saved = gc.lineWidth;
    gc.lineWidth = std::fabs(map.widthToAbsolute(thickness));
    drawArc(gc, x, y, width, height, start, extent, false);
    gc.lineWidth = saved;
}

void GifDrawer::drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) {
    std::vector<double> xs(points.size()), ys(points.size());
    absolutePoints(x, y, points, xs.data(), ys.data());
    std::vector<gdPoint> corners(points.size() + 1);
    toImage(x, y, corners[0].x, corners[0].y);
    for (unsigned i = 0; i < points.size(); ++i) toImage(xs[i], ys[i], corners[i + 1].x, corners[i + 1].y);
    int n = int(corners.size());
    if (kind == FILLED_POLYGON)
        gd->imageFilledPolygon(image, corners.data(), n, colorIndex(gc.foreground));
    else if (kind == POLYGON)
        gd->imagePolygon(image, corners.data(), n, pen(gc));
    else
        gd->imageOpenPolygon(image, corners.data(), n, pen(gc));
}

void GifDrawer::drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment) {
    gdFontPtr font = gd->fontGetSmall();
    int ix, iy;
    toImage(x, y, ix, iy);
    int length = int(std::strlen(text)) * font->w;
    int boxWidth = int(std::fabs(map.widthToAbsolute(width)));
    if (alignment == DrawString::CENTER && boxWidth > length) ix += (boxWidth - length) / 2;
    if (alignment == DrawString::IMAGE)
        gd->imageFilledRectangle(image, ix, iy, ix + std::max(length, boxWidth), iy + font->h,
                                 colorIndex(gc.background));
    gd->imageString(image, font, ix, iy, reinterpret_cast<unsigned char*>(const_cast<char*>(text)),
                    colorIndex(gc.foreground));
}
