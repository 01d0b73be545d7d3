// CmndPanel: the four applications, the editors on files, the recent files and the examples.
#include "panel/cmndpane.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "editor/fileedt.h"
#include "editor/graphedt.h"
#include "gui/rcpanel.h"
#include "interpreter/panel/mainlib.h"
#include "quill/cback.h"
#include "trellis/ask.h"
#include "trellis/filetest.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/list.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(CmndPanel, BaseCmndPanel, 1, 0)

namespace {

const int GAP = 4;
const char* const BLOCK_DIAGRAM = "Block Diagram Editor...";
const char* const TEXTUAL = "Textual...";

// The drawings a file opens in by its extension; any other file opens in the text editor.
struct DrawingKind {
    const char* extension;
    const char* semantic;
    const char* title;
};
const DrawingKind drawingKinds[] = {{".bdg", "StateTransSem", "Block Diagram Editor - "},
                                    {".stg", "StateGraphSem", "State Graph Editor - "},
                                    {".edt", "Semantic", "Graphic Editor - "}};

// The kind of a file name, or of an extension alone.
const DrawingKind* drawingKindOf(const char* name) {
    std::string text(name);
    for (const DrawingKind& k : drawingKinds) {
        size_t length = std::strlen(k.extension);
        if (text.size() >= length && text.compare(text.size() - length, length, k.extension) == 0) return &k;
    }
    return nullptr;
}
const char* const NO_NAME = "no-name";

const char* const commandEntries[] = {"Textual... | Ctrl+T", "Robust Control Design | Ctrl+R",
                                      "Interpreter | Ctrl+U", "Block Diagram Editor... | Ctrl+B"};

// The files of the work directory that open in an editor, sorted.
std::vector<std::string> exampleNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(".", error)) {
        std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() &&
            (drawingKindOf(extension.c_str()) || extension == ".cxx" || extension == ".dyn"))
            names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string absolutePath(const char* name) {
    std::error_code error;
    std::filesystem::path path = std::filesystem::absolute(name, error);
    return error ? std::string(name) : path.lexically_normal().string();
}

}  // namespace

CmndPanel::CmndPanel(const char* programDirectory, const std::string& recentPath)
    : BaseCmndPanel("Tarn Command Panel", "TARN_PATH"),
      programDirectory(programDirectory),
      recentFiles(recentPath),
      exampleFiles() {
    for (const char* entry : commandEntries) commandMenu().addChoice(entry);
    buildLists();
    start();
}

const char* CmndPanel::aboutText() const {
    return "Tarn Command Panel\n\nSpecial edition of the editors of the Tarn Environment\n\n"
           "Version 6.2.09 released on November 1999";
}

// "Recent files" over the upper half, "Examples" below it to the bottom.
void CmndPanel::buildLists() {
    CppForm& layout = form();
    CppLabel* recentLabel = new CppLabel("RecentLabel", &layout, "Recent files (double click to open)");
    recent = new CppList("RecentFiles", &layout, 6, 60);
    CppLabel* exampleLabel = new CppLabel("ExampleLabel", &layout, "Examples in the work directory");
    examples = new CppList("Examples", &layout, 6, 60);
    CppWidget* above = &directoryLabel();
    for (CppWidget* widget :
         {(CppWidget*)recentLabel, (CppWidget*)recent, (CppWidget*)exampleLabel, (CppWidget*)examples}) {
        layout.attachHorizontal(&layout, widget, GAP);
        layout.attachHorizontal(widget, &layout, GAP);
        layout.attachVertical(above, widget, GAP);
        above = widget;
    }
    layout.attachBottomPercent(*recent, 50);
    layout.attachVertical(examples, &layout, GAP);
    fillRecent();
    fillExamples();
    recent->addCback(ListActivated, cbackMethod<&CmndPanel::recentActivated>, *this);
    examples->addCback(ListActivated, cbackMethod<&CmndPanel::exampleActivated>, *this);
}

// The examples of the work directory, read again when it changes.
void CmndPanel::fillExamples() {
    exampleFiles = exampleNames();
    examples->removeAll();
    for (const std::string& name : exampleFiles) examples->addItem(name.c_str());
}

void CmndPanel::fillRecent() {
    recent->removeAll();
    for (const std::string& name : recentFiles.names()) recent->addItem(name.c_str());
}

void CmndPanel::menuCommand(const char* label) {
    String entry(label);
    if (entry == "Interpreter") {
        MainLib* interpreter = new MainLib(0);
        addEditor(*interpreter, MainLibExit);
    } else if (entry == "Robust Control Design") {
        GraphMainLib* design = new GraphMainLib(programDirectory.asCharPointer());
        addEditor(*design, GraphMainLibExit);
    } else if (entry == BLOCK_DIAGRAM)
        openChosen(label, ".bdg");
    else if (entry == TEXTUAL)
        openChosen(label, "");
    else {
        BaseCmndPanel::menuCommand(label);
        if (entry == "Change Dir...") fillExamples();
    }
}

// The file asked for with the label less its "..." as title; "no-name" is a new document.
void CmndPanel::openChosen(const char* label, const char* extension) {
    std::string title(label, std::strlen(label) - 3);
    String name(NO_NAME);
    name += extension;
    if (!askFileName(name, title.c_str(), "File to edit", extension, false)) return;
    std::string base = std::filesystem::path(name.asCharPointer()).stem().string();
    openEditorOn(label, base == NO_NAME ? "" : name.asCharPointer());
}

// A file that exists but can't be read is reported and opens nothing; a new name is a new document.
void CmndPanel::openEditorOn(const char* kind, const char* file) {
    if (*file && access(file, F_OK) == 0 && !isReadableFile(file)) return;
    Editor* editor;
    const DrawingKind* drawing = String(kind) == BLOCK_DIAGRAM ? &drawingKinds[0] : drawingKindOf(kind);
    if (drawing) {
        GraphEditor* diagram =
            new GraphEditor(topLevelWidget, drawing->semantic, drawing->title, false, false, true);
        diagram->open(file);
        editor = diagram;
    } else
        editor = new FileEditor("TextEditor", topLevelWidget, file);
    editor->addCback(CloseEditor, cbackMethod<&CmndPanel::editorEnded>, *this);
    addEditor(*editor, CloseEditor);
    if (*file) {
        recentFiles.add(absolutePath(file));
        fillRecent();
    }
}

void CmndPanel::editorEnded(Cback& cb) { CAST(Editor, cb.owner)->getShell().close(); }

const char* CmndPanel::kindOf(const char* name) {
    const DrawingKind* drawing = drawingKindOf(name);
    return drawing ? drawing->extension : TEXTUAL;
}

void CmndPanel::dropFile(const char* name) { openEditorOn(kindOf(name), name); }

void CmndPanel::recentActivated(Cback& cb) {
    std::string name = recentFiles.names().at(cb.callData->asInt());
    openEditorOn(kindOf(name.c_str()), name.c_str());
}

void CmndPanel::exampleActivated(Cback& cb) {
    const std::string& name = exampleFiles.at(cb.callData->asInt());
    openEditorOn(kindOf(name.c_str()), name.c_str());
}
