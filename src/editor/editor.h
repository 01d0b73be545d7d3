// Editor: the abstract base of every document window, and the events by which it tells its owner.
#ifndef EDITOR_EDITOR_H
#define EDITOR_EDITOR_H

#include "quill/qclass.h"
#include "quill/symbol.h"

class CppForm;
class CppShell;
class CppWidget;

extern Class class_Editor;

// Raised on the editor when the action took place.
extern Symbol NewEditor;
extern Symbol LoadEditor;
extern Symbol SaveEditor;
extern Symbol SaveAsEditor;
extern Symbol StartEditor;
extern Symbol CloseEditor;
extern Symbol PrintEditor;
// A file editor ends: its owner may delete it.
extern Symbol FileEdtQuit;

class Editor : public Object {
    DECLARE_MEMBERS(Editor)
public:
    ~Editor() noexcept(false) override;

    // Reads the document again; each kind of editor has its own.
    virtual void reLoad();
    CppShell& getShell() const { return *shell; }
    // The form that fills the window.
    CppForm& form() const;

protected:
    // A window of its own under parent, or under the top level without one.
    Editor(const char* name, CppWidget* parent);
    // Shows the window and raises StartEditor.
    void start();

private:
    CppShell* shell;
};

#endif
