// The print dialogue's widgets and reading, and printing a drawing on a file or the default printer.
#include "trellis/printdlg.h"

#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QWidget>
#include <cstdlib>

#include "quill/cback.h"
#include "quill/filename.h"
#include "quill/orderedc.h"
#include "trellis/ask.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/drawer.h"
#include "trellis/drawicon.h"
#include "trellis/form.h"
#include "trellis/gifdrawr.h"
#include "trellis/label.h"
#include "trellis/psdrawer.h"
#include "trellis/text.h"

DEFINE_CLASS(PrintOptions, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(PrintDialog, FormDialog, 1, 0)

namespace {

const int GAP = 6;
const int LABEL_WIDTH = 130;
const char* const PAGE_WIDTH = "Page width  (cm.)";
const char* const PAGE_HEIGHT = "Page height (cm.)";
const char* const GIF_WIDTH = "Gif width  (10 pixel)";
const char* const GIF_HEIGHT = "Gif height (10 pixel)";

// A row under above: a label, then the widget beside it.
void placeRow(CppForm& form, CppWidget* above, CppLabel* label, CppWidget& widget) {
    CppWidget* top = above ? above : &form;
    if (label) {
        form.attachHorizontal(&form, label, GAP);
        form.attachVertical(top, label, GAP + 4);
        label->resize(LABEL_WIDTH, label->handle()->sizeHint().height());
    }
    form.attachHorizontal(&form, &widget, LABEL_WIDTH + 2 * GAP);
    form.attachVertical(top, &widget, GAP);
}

// A form of two radio buttons side by side.
CppForm& radioPair(CppForm& parent, const char* name, ToggleButton*& first, const char* firstText,
                   ToggleButton*& second, const char* secondText) {
    CppForm* box = new CppForm(name, &parent);
    first = new ToggleButton(formatText("%sFirst", name), box, firstText, true);
    second = new ToggleButton(formatText("%sSecond", name), box, secondText, true);
    box->attachAt(*first, 0, 0);
    box->attachHorizontal(first, second, 2 * GAP);
    box->attachVertical(box, second, 0);
    return *box;
}

}  // namespace

PrintOptions::PrintOptions()
    : kind(POSTSCRIPT),
      width(18.0),
      height(12.0),
      landscape(false),
      blackAndWhite(false),
      fillBackground(true),
      fileName("print"),
      onPrinter(false) {}

PrintDialog::PrintDialog(CppWidget* parent, const PrintOptions& settings)
    : FormDialog("PrintDialog", parent, "Print Parameters") {
    CppForm& f = form();
    CppForm& kindBox = radioPair(f, "KindBox", postscript, "Postscript", gif, "Gif");
    placeRow(f, 0, new CppLabel("KindLabel", &f, "Print kind: "), kindBox);
    widthLabel = new CppLabel("WidthLabel", &f, PAGE_WIDTH);
    width = new CppText("WidthText", &f, false, 1, 8);
    placeRow(f, &kindBox, widthLabel, *width);
    heightLabel = new CppLabel("HeightLabel", &f, PAGE_HEIGHT);
    height = new CppText("HeightText", &f, false, 1, 8);
    placeRow(f, width, heightLabel, *height);
    CppForm& orientation = radioPair(f, "OrientationBox", portrait, "Portrait", landscape, "Landscape");
    placeRow(f, height, new CppLabel("OrientationLabel", &f, "Orientation: "), orientation);
    CppForm& colors = radioPair(f, "ColorBox", blackWhite, "Black & White", color, "Color print");
    placeRow(f, &orientation, 0, colors);
    fill = new ToggleButton("FillBackground", &f, "Fill background");
    placeRow(f, &colors, 0, *fill);
    file = new CppText("FileText", &f, false, 1, 24);
    placeRow(f, fill, new CppLabel("FileLabel", &f, "File Name"), *file);
    CppCommand* browser = new CppCommand("Browse", &f, "Browse");
    f.attachHorizontal(file, browser, GAP);
    f.attachVertical(fill, browser, GAP);
    f.attachHorizontal(browser, &f, GAP);
    toFile = new CppCommand("PrintFile", &f, "Print the file");
    toPrinter = new CppCommand("PrintPrinter", &f, "Print on printer");
    cancel = new CppCommand("Cancel", &f, "Cancel");
    placeRow(f, file, 0, *toFile);
    f.attachHorizontal(&f, toFile, GAP);
    f.attachHorizontal(toFile, toPrinter, GAP);
    f.attachHorizontal(toPrinter, cancel, GAP);
    for (CppCommand* button : {toPrinter, cancel}) f.attachVertical(file, button, 2 * GAP);
    f.attachVertical(toFile, &f, GAP);

    (settings.kind == PrintOptions::GIF ? gif : postscript)->setState(true);
    (settings.landscape ? landscape : portrait)->setState(true);
    (settings.blackAndWhite ? blackWhite : color)->setState(true);
    fill->setState(settings.fillBackground);
    width->setText(formatText("%4.1f", settings.width));
    height->setText(formatText("%4.1f", settings.height));
    file->setText(settings.fileName.asCharPointer());
    showKind();
    gif->addCback(ToggleButtonChanged, cbackMethod<&PrintDialog::kindChanged>, *this);
    browser->addCback(CppCommandPressed, cbackMethod<&PrintDialog::browse>, *this);
}

void PrintDialog::kindChanged(Cback&) { showKind(); }

void PrintDialog::showKind() {
    bool isGif = gif->state();
    widthLabel->setText(isGif ? GIF_WIDTH : PAGE_WIDTH);
    heightLabel->setText(isGif ? GIF_HEIGHT : PAGE_HEIGHT);
}

void PrintDialog::browse(Cback&) {
    String name = file->getText();
    if (askFileName(name, "Browse Print File", "File Name", gif->state() ? ".gif" : ".ps", true))
        file->setText(name.asCharPointer());
}

bool PrintDialog::readSettings(PrintOptions& settings) {
    String name = file->getText().stripBoth();
    if (name.size() == 0) {
        showMessage("File for print on, not specified", "Error", MESSAGE_ERROR);
        return false;
    }
    settings.kind = gif->state() ? PrintOptions::GIF : PrintOptions::POSTSCRIPT;
    const char* suffix = settings.kind == PrintOptions::GIF ? ".gif" : ".ps";
    if (extensionPart(name.asCharPointer()) != suffix) name += suffix;
    settings.fileName = name;
    settings.width = width->getText().asDouble();
    settings.height = height->getText().asDouble();
    settings.landscape = landscape->state();
    settings.blackAndWhite = blackWhite->state();
    settings.fillBackground = fill->state();
    return true;
}

void PrintDialog::pressed(Cback& cb) {
    PrintOptions& settings = *CAST(PrintOptions, cb.userData);
    if (cb.owner == cancel) return exitLoop(0);
    settings.onPrinter = cb.owner == toPrinter;
    if (readSettings(settings)) exitLoop(1);
}

bool PrintDialog::ask(PrintOptions& settings) {
    for (CppCommand* button : {toFile, toPrinter, cancel})
        button->addCback(CppCommandPressed, cbackMethod<&PrintDialog::pressed>, *this, &settings);
    int answer = runModal();
    for (CppCommand* button : {toFile, toPrinter, cancel}) button->removeCbacks(CppCommandPressed, this);
    return answer == 1;
}

namespace {

bool printOnPrinter(const OrderedCltn& icons, const FloatRect& world, const PrintOptions& settings) {
    if (QPrinterInfo::defaultPrinter().isNull()) {
        showMessage("Print Dialog failed", "Error", MESSAGE_ERROR);
        return false;
    }
    QPrinter printer(QPrinterInfo::defaultPrinter());
    printer.setDocName("_printer_");
    printer.setPageOrientation(settings.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    QPainter painter;
    if (!painter.begin(&printer)) {
        showMessage("Print Dialog failed", "Error", MESSAGE_ERROR);
        return false;
    }
    QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
    TranslCoord map(FloatRect(0, 0, page.width(), page.height()), world);
    WindowDrawer drawer(painter, map);
    for (unsigned i = 0; i < icons.size(); ++i) CAST(DrawIcon, icons.at(i))->print(drawer);
    return painter.end();
}

}  // namespace

bool printDrawing(const OrderedCltn& icons, const FloatRect& world, const PrintOptions& settings) {
    if (settings.onPrinter) return printOnPrinter(icons, world, settings);
    const char* name = settings.fileName.asCharPointer();
    if (settings.kind == PrintOptions::GIF) {
        GifDrawer gifDrawer;
        gifDrawer.open(name, world, int(settings.width * 10), int(settings.height * 10));
        gifDrawer.paint(icons, settings.fillBackground);
        return gifDrawer.close();
    }
    PostscriptDrawer ps;
    ps.open(name, world, FloatRect(0, 0, settings.width, settings.height), settings.landscape,
            settings.blackAndWhite);
    ps.paint(icons, settings.fillBackground);
    return ps.close();
}
