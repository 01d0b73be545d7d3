// PrintOptions, the dialogue "PrintDialog" that fills them, and the printing of a drawing by them.
#ifndef TRELLIS_PRINTDLG_H
#define TRELLIS_PRINTDLG_H

#include "quill/point.h"
#include "quill/quillstr.h"
#include "trellis/formdlg.h"

class ToggleButton;
class CppLabel;

extern Class class_PrintOptions;
extern Class class_PrintDialog;

class PrintOptions : public Object {
    DECLARE_MEMBERS(PrintOptions)
public:
    enum Kind { POSTSCRIPT = 0, GIF = 1 };
    PrintOptions();

    int kind;
    // Centimetres for PostScript, tens of pixels for GIF.
    double width;
    double height;
    bool landscape;
    bool blackAndWhite;
    bool fillBackground;
    String fileName;
    bool onPrinter;  // "Print on printer" rather than "Print the file"
};

// "Print Parameters": the kind, the size, the orientation, the colours,
// the background, the file; "Print the file", "Print on printer", "Cancel".
class PrintDialog : public FormDialog {
    DECLARE_MEMBERS(PrintDialog)
public:
    PrintDialog(CppWidget* parent, const PrintOptions& settings);

    // The settings as the dialogue shows them; false with the message shown
    // when they can't be used. The file name gets ".ps" or ".gif".
    bool readSettings(PrintOptions& settings);
    // Runs the dialogue until a print button gives usable settings (true)
    // or Cancel (false).
    bool ask(PrintOptions& settings);

    CppCommand& fileButton() const { return *toFile; }
    CppCommand& cancelButton() const { return *cancel; }
    CppText& fileField() const { return *file; }
    CppText& widthField() const { return *width; }
    ToggleButton& gifToggle() const { return *gif; }
    ToggleButton& landscapeToggle() const { return *landscape; }
    ToggleButton& blackAndWhiteToggle() const { return *blackWhite; }

private:
    void kindChanged(Cback& cb);
    // The size labels of the kind chosen.
    void showKind();
    void browse(Cback& cb);
    void pressed(Cback& cb);

    ToggleButton* postscript;
    ToggleButton* gif;
    CppLabel* widthLabel;
    CppLabel* heightLabel;
    CppText* width;
    CppText* height;
    ToggleButton* portrait;
    ToggleButton* landscape;
    ToggleButton* blackWhite;
    ToggleButton* color;
    ToggleButton* fill;
    CppText* file;
    CppCommand* toFile;
    CppCommand* toPrinter;
    CppCommand* cancel;
};

// Prints the icons that lie in world by the settings: a PostScript or GIF
// file, or the default printer. Answers false after reporting a failure.
bool printDrawing(const OrderedCltn& icons, const FloatRect& world, const PrintOptions& settings);

#endif
