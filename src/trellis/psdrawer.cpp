// PostscriptDrawer: prologue search and marked lines, definitions, colour table, page placement, primitives.
#include "trellis/psdrawer.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "quill/orderedc.h"
#include "quill/safefile.h"
#include "quill/set.h"
#include "trellis/ask.h"
#include "trellis/cppgc.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(PostscriptDrawer, Drawer, 1, 0)

namespace {

const char* const PROLOGUE = "header.ps";
const double A4_WIDTH = 21.0;
const double A4_HEIGHT = 29.7;

bool fileExists(const std::string& name) {
    struct stat info;
    return stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool startsWith(const std::string& line, const char* word) {
    return line.compare(0, std::strlen(word), word) == 0;
}

// The number behind a marked word, or the default.
double numberBehind(const std::string& line, const char* word, double byDefault) {
    const char* rest = line.c_str() + std::strlen(word);
    char* end = 0;
    double value = std::strtod(rest, &end);
    return end == rest ? byDefault : value;
}

double brightness(double r, double g, double b) { return 0.3 * r + 0.45 * g + 0.25 * b; }

const char* dashWord(const CppGC& gc) { return gc.dashed ? "true" : "false"; }

}  // namespace

PostscriptDrawer::PostscriptDrawer()
    : blackAndWhite(false),
      colors(new Set),
      backgroundBrightness(1.0f),
      landscape(false),
      conversionToCm(25.0),
      latexConversionToCm(32.0),
      colorTableAt(-1) {}

PostscriptDrawer::~PostscriptDrawer() noexcept(false) {
    colors->deleteContents();
    delete colors;
}

String PostscriptDrawer::prologuePath() {
    if (fileExists(PROLOGUE)) return String(PROLOGUE);
    const char* headerDir = std::getenv("TARN_HEADER_PS");
    if (headerDir && *headerDir) {
        std::string path = headerDir;
        if (path.back() != '/') path += '/';
        path += PROLOGUE;
        if (fileExists(path)) return String(path.c_str());
    }
    const char* tarnPath = std::getenv("TARN_PATH");
    if (tarnPath && *tarnPath) {
        std::string path = tarnPath;
        path += path.back() == '/' ? "bin/" : "/bin/";
        path += PROLOGUE;
        if (fileExists(path)) return String(path.c_str());
    }
    return String();
}

String PostscriptDrawer::escaped(const char* text) {
    String out;
    for (const char* p = text ? text : ""; *p; ++p) {
        if (*p == '(')
            out += "\\050";
        else if (*p == ')')
            out += "\\051";
        else
            out += *p;
    }
    return out;
}

void PostscriptDrawer::open(const char* name, const FloatRect& worldRect, const FloatRect& pageRect,
                            bool landscapePage, bool blackWhite) {
    fileName = name;
    world = worldRect;
    page = pageRect;
    landscape = landscapePage;
    blackAndWhite = blackWhite;
    text = "";
    colorTableAt = -1;
    colors->deleteContents();
    colors->add(*new String("background"));
    readPrologue(name);
    placePage();
}

// Passes the prologue's lines to the output, replacing the marked ones.
void PostscriptDrawer::readPrologue(const char* title) {
    String path = prologuePath();
    std::ifstream in(path.asCharPointer());
    if (path.size() == 0 || !in) {
        std::cerr << "PostScript header file does not exist\n" << PROLOGUE << std::endl;
        return;
    }
    std::string line;
    while (std::getline(in, line)) {
        if (startsWith(line, "%%Title:")) {
            text += "%%Title: ";
            text += escaped(title);
            text += "\n";
        } else if (startsWith(line, "%%CreationDate:")) {
            std::time_t now = std::time(0);
            char date[64];
            std::strftime(date, sizeof date, "%a %b %d %H:%M:%S %Y", std::localtime(&now));
            text += formatText("%%%%CreationDate: %s\n", date);
        } else if (startsWith(line, "%%ConversionToCm")) {
            conversionToCm = numberBehind(line, "%%ConversionToCm", 25.0);
        } else if (startsWith(line, "%%LatexConversionToCm")) {
            latexConversionToCm = numberBehind(line, "%%LatexConversionToCm", 32.0);
        } else if (startsWith(line, "%%BoundingBox:")) {
            int x = 0, y = 0, w = 0, h = 0;
            std::sscanf(line.c_str() + 14, "%d %d %d %d", &x, &y, &w, &h);
            text += formatText("%%%%BoundingBox: %d %d %d %d\n", x, y, x + w, y + h);
        } else if (startsWith(line, "%%cm")) {
            writeDefinitions();
        } else {
            text += line.c_str();
            text += "\n";
        }
    }
}

void PostscriptDrawer::writeDefinitions() {
    double pageX = landscape ? page.height() : page.width();
    double pageY = landscape ? page.width() : page.height();
    text += formatText("/cm { %g mul } def\n", conversionToCm);
    text += formatText("/pageX %g cm def\n", pageX);
    text += formatText("/pageY %g cm def\n", pageY);
    text += formatText("/coffX pageX %g div def\n", world.width());
    text += formatText("/coffY pageY %g div neg def\n", world.height());
    text += formatText("/xx { %g sub coffX mul } def\n", world.x());
    text += formatText("/yy { %g sub coffY mul pageY add} def\n", world.y());
    text += "/ww { coffX mul } def\n";
    text += "/hh { coffY mul } def\n";
    colorTableAt = int(text.size());
}

// The picture in the middle of an A4 sheet; a landscape page is turned,
// with the numbers of the original program.
void PostscriptDrawer::placePage() {
    double horizontal = (A4_WIDTH - page.width()) / 2, vertical = (A4_HEIGHT - page.height()) / 2;
    if (!landscape) {
        text += formatText("%g %g translate\n", horizontal * conversionToCm, vertical * conversionToCm);
        return;
    }
    text += formatText("%g 0 translate\n", A4_WIDTH * conversionToCm);
    text += "90 rotate\n";
    text += formatText("%g %g translate\n", conversionToCm * 1.1 * vertical, -conversionToCm * horizontal);
}

// "background" first, then the other names in sorted order.
String PostscriptDrawer::colorTable() const {
    std::vector<std::string> names;
    Iterator it(*colors);
    while (Object* name = it()) names.push_back(name->asCharPointer());
    std::sort(names.begin(), names.end());
    std::stable_partition(names.begin(), names.end(), [](const std::string& n) { return n == "background"; });
    String table("\n%% Color definition\n");
    for (const std::string& name : names) {
        double r = 0, g = 0, b = 0;
        if (name == "background") {
            if (!colorOf("printBackground", r, g, b)) r = g = b = 1.0;
            if (blackAndWhite) r = g = b = 1.0;
        } else if (colorOf(name.c_str(), r, g, b) && blackAndWhite) {
            bool light = brightness(r, g, b) > 0.5, lightBackground = backgroundBrightness > 0.5;
            r = g = b = light == lightBackground ? 1.0 : 0.0;
        }
        table += formatText("/%s { %f %f %f } def\n", name.c_str(), r, g, b);
    }
    return table;
}

const char* PostscriptDrawer::color(const String& name) {
    if (colors->find(name) == nil) colors->add(*new String(name));
    return name.asCharPointer();
}

void PostscriptDrawer::box(double x, double y, double width, double height) {
    text += formatText("%g xx %g yy %g ww %g hh ", x, y, width, height);
}

void PostscriptDrawer::paint(const OrderedCltn& icons, bool fillBackground) {
    double r, g, b;
    backgroundBrightness = colorOf("printBackground", r, g, b) ? float(brightness(r, g, b)) : 1.0f;
    if (fillBackground && !blackAndWhite) {
        FillRect background(float(world.x()), float(world.y()), float(world.width()), float(world.height()),
                            "background");
        background.print(*this);
    }
    for (unsigned i = 0; i < icons.size(); ++i) CAST(DrawIcon, icons.at(i))->print(*this);
}

bool PostscriptDrawer::close() {
    text += "\nshowpage\n%%Trailer\n";
    String table = colorTable();
    if (colorTableAt >= 0) text.replaceRange(unsigned(colorTableAt), 0, table.asCharPointer(), table.size());
    String failure = writeSafely(fileName.asCharPointer(),
                                 [this](std::ostream& out) { out.write(text.asCharPointer(), text.size()); });
    if (failure.size() > 0) {
        showMessage(formatText("Write error on file %s, %s", fileName.asCharPointer(), std::strerror(errno)),
                    "Error", MESSAGE_ERROR);
        return false;
    }
    return true;
}

// Primitives

void PostscriptDrawer::drawLine(CppGC& gc, double x, double y, double width, double height) {
    box(x, y, width, height);
    text += formatText("%s %s line\n", color(gc.foreground), dashWord(gc));
}

void PostscriptDrawer::drawArc(CppGC& gc, double x, double y, double width, double height, int start,
                               int extent, bool filled) {
    normalizeArc(x, y, width, height, start, extent);
    box(x, y, width, height);
    double from = start / 64.0, to = (start + extent) / 64.0;
    if (filled)
        text += formatText("%g %g %s fillArc\n", from, to, color(gc.foreground));
    else
        text += formatText("%g %g %s %s ellipseArc\n", from, to, color(gc.foreground), dashWord(gc));
}

void PostscriptDrawer::drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) {
    box(x, y, width, height);
    text += color(gc.foreground);
    if (filled)
        text += " fillRect\n";
    else
        text += formatText(" %s rect\n", dashWord(gc));
}

// The filled sector of the box grown by the thickness on each side.
void PostscriptDrawer::drawThickArc(CppGC& gc, double x, double y, double width, double height, int start,
                                    int extent, double thickness) {
    normalizeArc(x, y, width, height, start, extent);
    box(x - thickness / 2, y - thickness / 2, width + thickness, height + thickness);
    text += formatText("%g %g %s fillArc\n", start / 64.0, (start + extent) / 64.0, color(gc.foreground));
}

void PostscriptDrawer::drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) {
    double dx = 0, dy = 0;
    if (points.size() > 0) {
        dx = CAST(FloatPoint, points.at(0))->x();
        dy = CAST(FloatPoint, points.at(0))->y();
    }
    box(x, y, dx, dy);
    text += formatText("%s PolyStart \n", color(gc.foreground));
    for (unsigned i = 1; i < points.size(); ++i) {
        const FloatPoint& p = *CAST(FloatPoint, points.at(i));
        text += formatText("%g ww %g hh PolyNext\n", p.x(), p.y());
    }
    const char* end = kind == FILLED_POLYGON ? "FillPolyEnd" : kind == POLYGON ? "PolygonEnd" : "PolylineEnd";
    text += formatText("%s %s\n", dashWord(gc), end);
}

void PostscriptDrawer::drawString(CppGC& gc, double x, double y, double width, const char* string,
                                  int alignment) {
    text += formatText("%g xx %g yy %g ww (%s) %s ", x, y, width, escaped(string).asCharPointer(),
                       color(gc.foreground));
    if (alignment == DrawString::CENTER)
        text += "centerText\n";
    else if (alignment == DrawString::IMAGE)
        text += formatText("%s imageText\n", color(gc.background));
    else
        text += "text\n";
}
