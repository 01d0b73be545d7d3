// FormDialog and ParamDialog: a dialogue laid out by a form, and the dialogue of labelled text rows.
#ifndef TRELLIS_FORMDLG_H
#define TRELLIS_FORMDLG_H

#include "trellis/shell.h"

class CppCommand;
class CppForm;
class CppLabel;
class CppText;
class ToggleButton;

extern Class class_FormDialog;
extern Class class_ParamDialog;

extern Symbol OkButtonPressed;
extern Symbol CancelButtonPressed;
extern Symbol HelpButtonPressed;

// A dialogue whose one child is the form "form" that its builder fills.
class FormDialog : public CppDialog {
    DECLARE_MEMBERS(FormDialog)
public:
    FormDialog(const char* name, CppWidget* parent, const char* title = 0);
    CppForm& form() const { return *form_; }

private:
    CppForm* form_;
};

// Rows of a label and a text field, one under the other, and under them
// the buttons "Ok", "Cancel" and "Help", which raise OkButtonPressed,
// CancelButtonPressed and HelpButtonPressed on the dialogue.
class ParamDialog : public FormDialog {
    DECLARE_MEMBERS(ParamDialog)
public:
    ParamDialog(const char* name, CppWidget* parent, const char* title = 0, int width = 400);
    ~ParamDialog() noexcept(false) override;

    // A new row at the bottom; answers its field, named "Text<row>" unless
    // a name is given.
    CppText& addRow(const char* label, const char* value, const char* fieldName = 0);
    // A toggle under the rows.
    ToggleButton& addToggle(const char* name, const char* label);
    // A widget of the form, put under the rows across the dialogue.
    void addUnderRows(CppWidget& widget);
    int rowCount() const;
    CppText& rowField(int row) const;
    String rowText(int row) const;
    void setRowText(int row, const char* text);
    CppCommand& okButton() const { return *ok; }
    CppCommand& cancelButton() const { return *cancel; }
    CppCommand& helpButton() const { return *help; }

    // Pops up modal until Ok (1) or Cancel (0); Help raises its event and
    // leaves the dialogue up.
    int ask();

private:
    void placeBelowRows(CppWidget& widget);

    OrderedCltn* fields;  // the CppText of each row
    CppWidget* lastRow;   // the lowest widget of the rows, or null
    CppCommand* ok;
    CppCommand* cancel;
    CppCommand* help;
};

#endif
