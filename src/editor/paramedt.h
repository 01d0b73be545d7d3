// ParamEditor and LinkParamEdt: the parameter dialogs of icons and links, over ParamDialog, and their four
// events.
#ifndef EDITOR_PARAMEDT_H
#define EDITOR_PARAMEDT_H

#include "quill/orderedc.h"
#include "quill/symbol.h"

class CppText;
class CppWidget;
class IconNode;
class ParamDialog;
class ToggleButton;

extern Class class_ParamEditor;
extern Class class_LinkParamEdt;

// Raised on the editor of the parameters.
extern Symbol ParamConfirmPressed;  // "Ok": the values hold the rows
extern Symbol ParamCancelPressed;   // "Cancel"
extern Symbol ParamCommentPressed;  // "Ok" with "Use entry as label" set
extern Symbol ParamHelpPressed;     // "Help"; the dialog stays up

// A row of the dialog "ParamDialog" for each label and value (Strings) of
// the icon, and the toggle "UseAsLabel" under them when the icon has a
// comment. The editor keeps copies of the lists; the icon takes them by
// setParameters.
class ParamEditor : public Object {
    DECLARE_MEMBERS(ParamEditor)
public:
    ParamEditor(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
                const char* title);
    // Disconnects and closes the dialog.
    ~ParamEditor() noexcept(false) override;

    // The rows go into the values, then ParamConfirmPressed, or
    // ParamCommentPressed when the toggle is set.
    virtual void okPressed(Cback& cb);
    virtual void cancelPressed(Cback& cb);

    // Takes the dialog up, modal, with its buttons connected; stop the reverse.
    void show();
    void stop();
    // Empties both lists.
    void release();
    void setTitle(const char* title);
    // Primes a dialog that was released for another icon of the same class.
    virtual void setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values);

    IconNode* icon() const { return icon_; }
    OrderedCltn& labels() { return labels_; }
    OrderedCltn& values() { return values_; }
    ParamDialog& dialog() const { return *dialog_; }
    ToggleButton* useAsLabel() const { return useAsLabel_; }

protected:
    // The dialog without rows: the subclass adds its own, then finishes.
    ParamEditor(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
                const char* title, bool withRows);
    // The toggle under the rows, and the buttons connected.
    void finishBuilding();
    // Takes copies of the lists, and the toggle's state from the icon.
    void takeIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values);
    // ParamCommentPressed or ParamConfirmPressed, by the toggle.
    void confirm();

private:
    void helpPressed(Cback& cb);
    void connectButtons(bool on);

    OrderedCltn labels_;
    OrderedCltn values_;
    IconNode* icon_;
    ParamDialog* dialog_;
    ToggleButton* useAsLabel_;
};

// The dialog of a ClassArc: the row "Name   " ("generic" for a link without
// a name) and the text "LabelsText" of its labels, one a line. Its values
// are the name, then the labels.
class LinkParamEdt : public ParamEditor {
    DECLARE_MEMBERS(LinkParamEdt)
public:
    LinkParamEdt(CppWidget* parent, IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values,
                 const char* title);

    // The values become the name ("generic" kept gives none), then each
    // line of the text, trimmed.
    void okPressed(Cback& cb) override;
    void setIcon(IconNode& icon, const OrderedCltn& labels, const OrderedCltn& values) override;

    CppText& labelsText() const { return *labelsText_; }

private:
    // The name and the labels of the values, shown.
    void showValues();

    CppText* labelsText_;
};

#endif
