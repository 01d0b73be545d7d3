// PostscriptDrawer: a list of drawing objects written as a PostScript page behind the prologue "header.ps".
#ifndef TRELLIS_PSDRAWER_H
#define TRELLIS_PSDRAWER_H

#include "quill/quillstr.h"
#include "trellis/drawer.h"

class Set;

extern Class class_PostscriptDrawer;

// Each primitive is one line that calls a procedure of the prologue on
// world coordinates (xx, yy, ww, hh map them to the page). Colours are
// named, and defined in a table built from the names met.
class PostscriptDrawer : public Drawer {
    DECLARE_MEMBERS(PostscriptDrawer)
public:
    PostscriptDrawer();
    ~PostscriptDrawer() noexcept(false) override;

    // Reads the prologue into the output. world is the part of the
    // drawing to print; page gives the picture's width and height in
    // centimetres on an A4 sheet.
    void open(const char* fileName, const FloatRect& world, const FloatRect& page, bool landscape,
              bool blackAndWhite);
    // A background in the colour "background" first, when asked and not
    // in black and white; then each icon of the list.
    void paint(const OrderedCltn& icons, bool fillBackground);
    // Ends the page and writes the file; answers false after reporting a
    // file that can't be written.
    bool close();

    void drawLine(CppGC& gc, double x, double y, double width, double height) override;
    void drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                 bool filled) override;
    void drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) override;
    void drawThickArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                      double thickness) override;
    void drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) override;
    void drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment) override;

    const String& output() const { return text; }
    double conversion() const { return conversionToCm; }
    double latexConversion() const { return latexConversionToCm; }

    // The prologue's path: "header.ps" here, else in TARN_HEADER_PS, else in
    // TARN_PATH's "bin"; empty when there is none.
    static String prologuePath();
    // "(" and ")" written as octal escapes.
    static String escaped(const char* text);

private:
    void readPrologue(const char* title);
    void writeDefinitions();
    void placePage();
    String colorTable() const;
    const char* color(const String& name);
    void box(double x, double y, double width, double height);

    String text;
    String fileName;
    bool blackAndWhite;
    Set* colors;
    float backgroundBrightness;
    FloatRect world;
    FloatRect page;
    bool landscape;
    double conversionToCm;
    double latexConversionToCm;
    int colorTableAt;  // where the colour table goes in the text, -1 before the "%%cm" line
};

#endif
