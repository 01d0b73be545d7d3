// TextEditor: a text pane with the edit menu, search, go to line and replace.
#ifndef EDITOR_TEXTEDT_H
#define EDITOR_TEXTEDT_H

#include "editor/editor.h"
#include "quill/quillstr.h"

class Cback;
class CppLabel;
class CppText;
class MenuBar;
class PulldownMenu;

extern Class class_TextEditor;

class TextEditor : public Editor {
    DECLARE_MEMBERS(TextEditor)
public:
    // A window of its own that edits a text, titled title; the owner reads
    // the text back (a comment, for one).
    TextEditor(const char* name, CppWidget* parent, const char* title, const char* text);

    // The text, replacing all; the editor is then unmodified.
    void setText(const char* text);
    String getText() const;
    // Selects the first match at or behind the search position, wrapping
    // once to the start; the next search starts behind it. Case counts; an
    // empty text does nothing. Answers whether it found one.
    bool search(const char* text);
    // The caret at the start of line n (from 1); beyond the last line, the last.
    void goToLine(int line);
    // Replaces the selection when it is the searched text, then searches on.
    bool replace(const char* searched, const char* replacement);
    virtual bool isModified() const { return modified; }
    bool isReadOnly() const { return readOnly; }

    CppText& textWidget() const { return *text; }
    MenuBar& menuBar() const { return *bar; }
    PulldownMenu& editMenu() const { return *edit; }
    CppText& searchField() const { return *searchText; }
    CppText& gotoField() const { return *gotoText; }
    void setStatus(const char* status);
    String status() const;

protected:
    // A read-only editor has only "Copy" in its edit menu.
    TextEditor(const char* name, CppWidget* parent, bool readOnly);
    // The text changed: the editor is modified.
    virtual void textChanged(Cback& cb);

private:
    void buildFields();
    void editChosen(Cback& cb);
    void searchAsked(Cback& cb);
    void gotoAsked(Cback& cb);
    void replaceAsked(Cback& cb);

    CppText* text;
    MenuBar* bar;
    PulldownMenu* edit;
    CppText* searchText;
    CppText* gotoText;
    CppText* replaceText;
    CppLabel* statusLabel;
    int searchPosition;
    String lastSearch;
    String lastReplacement;
    bool readOnly;
    bool modified;
    bool settingText;  // setText is at work: no change counts
};

#endif
