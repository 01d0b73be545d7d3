// CppText: the single-line text field and the multi-line text pane.
#ifndef TRELLIS_TEXT_H
#define TRELLIS_TEXT_H

#include "trellis/widget.h"

class QLineEdit;
class QPlainTextEdit;

extern Class class_CppText;

extern Symbol CppTextChanged;    // the text changed, by the user or the program
extern Symbol CppTextActivated;  // Return in a single-line field

// Positions are byte offsets into the text as getText gives it.
class CppText : public CppPrimitive {
    DECLARE_MEMBERS(CppText)
public:
    // rows and columns give the preferred size in the widget's font.
    CppText(const char* name, CppWidget* parent, bool multiLine = false, int rows = 1, int columns = 20,
            bool managed = true);

    void setText(const char* text);
    String getText() const;
    void append(const char* text);
    void setReadOnly(bool readOnly);
    bool isReadOnly() const;
    // In a multi-line pane Tab and Shift+Tab go to the next and the previous
    // widget instead of typing a tab.
    void setTabMovesFocus(bool flag);

    int caret() const;
    void setCaret(int position);
    // Selects length bytes from start and shows them.
    void select(int start, int length);
    bool hasSelection() const;
    int selectionStart() const;  // the caret when nothing is selected
    String selectedText() const;
    // Replaces the selection (or inserts at the caret), as one undoable edit.
    void replaceSelection(const char* text);

    void cut();
    void copy();
    void paste();
    void undo();

    void sizeToFit() override;

private:
    QLineEdit* line() const;
    QPlainTextEdit* pane() const;

    bool multiLine;
    int rows;
    int columns;
};

#endif
