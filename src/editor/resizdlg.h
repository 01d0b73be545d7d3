// ResizeDialog: the dialog that gives the increments of width, height and font of the icons being resized.
#ifndef EDITOR_RESIZDLG_H
#define EDITOR_RESIZDLG_H

#include "trellis/formdlg.h"

class CppScrollbar;

extern Class class_ResizeDialog;

// Rows "Horizontal Resize", "Vertical Resize" and "Font Resize", each a text
// field with the value and a scroll bar that offsets it, and the buttons
// "Apply", "Reset" and "Close". Sizes go by cells, never below 1; the font
// scale by 0.05, never below 0.1.
class ResizeDialog : public FormDialog {
    DECLARE_MEMBERS(ResizeDialog)
public:
    enum Row { WIDTH = 0, HEIGHT = 1, FONT = 2, ROWS = 3 };

    explicit ResizeDialog(CppWidget* parent);

    // Shows the present values (the smallest of the targets); only the rows
    // that the targets support are sensitive.
    void open(bool width, bool height, bool font, double w, double h, double fontScale);
    // Each row's value less the present one; 0 for an insensitive row.
    void increments(double& dw, double& dh, double& dfont) const;
    // After "Apply": the values shown are the present ones.
    void applied();

    CppText& field(int row) const { return *texts[row]; }
    CppScrollbar& scrollbar(int row) const { return *bars[row]; }
    CppCommand& applyButton() const { return *apply; }
    CppCommand& resetButton() const { return *reset; }
    CppCommand& closeButton() const { return *close; }

private:
    void buildRow(int row);
    double value(int row) const;
    // Shows value in the field, and the scroll bar at its offset from the present value.
    void show(int row, double value);
    void scrolled(Cback& cb);
    void resetPressed(Cback& cb);
    void closePressed(Cback& cb);

    CppLabel* labels[ROWS];
    CppText* texts[ROWS];
    CppScrollbar* bars[ROWS];
    double present[ROWS];
    double opening[ROWS];
    bool showing;  // show() sets the scroll bars: their moves are not the user's
    CppCommand* apply;
    CppCommand* reset;
    CppCommand* close;
};

#endif
