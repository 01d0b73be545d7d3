// FileEditor: the file menu's events turned into reading and writing the text, and the editor's own events.
#include "editor/fileedt.h"

#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "quill/cback.h"
#include "quill/safefile.h"
#include "trellis/ask.h"
#include "trellis/filemenu.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(FileEditor, TextEditor, 1, 0)

FileEditor::FileEditor(const char* name, CppWidget* parent, const char* fileName)
    : TextEditor(name, parent, false), menu(0) {
    menu =
        new FileMenu(*this, getShell(), menuBar(), "Text Editor - ", "", FileMenu::WITH_SAVE, FileMenu::QUIT);
    // The file menu comes first in the bar.
    menuBar().removeChild(editMenu());
    menuBar().add(editMenu());
    menu->setDialogTexts("Load File Selection", "File name to Load", "Save File Selection",
                         "File name to Save");
    addCback(FileMenuNew, cbackMethod<&FileEditor::newFile>, *this);
    addCback(FileMenuLoad, cbackMethod<&FileEditor::readFile>, *this);
    addCback(FileMenuSave, cbackMethod<&FileEditor::writeFile>, *this);
    addCback(FileMenuSaveAs, cbackMethod<&FileEditor::renamed>, *this);
    for (const Symbol* end : {&FileMenuExit, &FileMenuQuit, &FileMenuKill})
        addCback(*end, cbackMethod<&FileEditor::ended>, *this);
    struct stat info;
    if (fileName && *fileName && stat(fileName, &info) == 0)
        load(fileName);
    else
        menu->setFileName(fileName);
    start();
}

FileEditor::~FileEditor() noexcept(false) { delete menu; }

bool FileEditor::load(const char* fileName) { return menu->openFile(fileName); }

bool FileEditor::save() { return menu->save(); }

bool FileEditor::saveAs(const char* fileName) { return menu->saveAs(fileName); }

const String& FileEditor::fileName() const { return menu->fileName(); }

void FileEditor::reLoad() {
    menu->setChanged(false);
    if (menu->hasFile()) load(fileName().asCharPointer());
}

bool FileEditor::isModified() const { return menu->isChanged(); }

void FileEditor::textChanged(Cback& cb) {
    TextEditor::textChanged(cb);
    if (TextEditor::isModified()) menu->setChanged(true);
}

void FileEditor::newFile(Cback&) {
    setText("");
    cbackOn(NewEditor);
}

void FileEditor::readFile(Cback& cb) {
    const char* name = cb.callData->asCharPointer();
    setStatus((String("Loading file ") + name).asCharPointer());
    std::ifstream in(name, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    setText(content.str().c_str());
    setStatus("");
    cbackOn(LoadEditor);
}

String FileEditor::textToSave() { return getText(); }

void FileEditor::writeFile(Cback& cb) {
    setStatus((String("Saving file ") + fileName()).asCharPointer());
    String content = textToSave();
    // A failed write leaves no file, which the menu reports.
    writeSafely(cb.callData->asCharPointer(),
                [&content](std::ostream& out) { out.write(content.asCharPointer(), content.size()); });
    setStatus("");
    cbackOn(SaveEditor);
}

void FileEditor::renamed(Cback&) { cbackOn(SaveAsEditor); }

void FileEditor::ended(Cback&) {
    getShell().close();
    cbackOn(CloseEditor);
    cbackOn(FileEdtQuit);
}
