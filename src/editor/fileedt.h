// FileEditor: a TextEditor on a file, with the file menu's cycle of load and save.
#ifndef EDITOR_FILEEDT_H
#define EDITOR_FILEEDT_H

#include "editor/textedt.h"

class FileMenu;

extern Class class_FileEditor;

class FileEditor : public TextEditor {
    DECLARE_MEMBERS(FileEditor)
public:
    // Opens the file when it exists; a name that doesn't exist yet becomes
    // the file that Save creates. Without a name the title shows none.
    FileEditor(const char* name, CppWidget* parent, const char* fileName = 0);
    ~FileEditor() noexcept(false) override;

    // Each goes through the file menu, with its tests and messages.
    bool load(const char* fileName);
    bool save();
    bool saveAs(const char* fileName);
    const String& fileName() const;
    // The file read again, its changes dropped.
    void reLoad() override;
    // Changed since it was read or saved.
    bool isModified() const override;

protected:
    void textChanged(Cback& cb) override;
    // What Save writes: the text shown, unless the window shows something else in its place.
    virtual String textToSave();

private:
    void newFile(Cback& cb);
    void readFile(Cback& cb);
    void writeFile(Cback& cb);
    void renamed(Cback& cb);
    void ended(Cback& cb);

    FileMenu* menu;
};

#endif
