// Editor: its window, a shell filled by a form, and its start.
#include "editor/editor.h"

#include "quill/cback.h"
#include "trellis/form.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(Editor, Object, 1, 0)

Symbol NewEditor("NewEditor");
Symbol LoadEditor("LoadEditor");
Symbol SaveEditor("SaveEditor");
Symbol SaveAsEditor("SaveAsEditor");
Symbol StartEditor("StartEditor");
Symbol CloseEditor("CloseEditor");
Symbol PrintEditor("PrintEditor");
Symbol FileEdtQuit("FileEdtQuit");

namespace {

const int WIDTH = 760;
const int HEIGHT = 540;

}  // namespace

Editor::Editor(const char* name, CppWidget* parent)
    : shell(new CppShell(name, parent ? parent : topLevelWidget)) {
    new CppForm("EditorForm", shell);
    shell->resize(WIDTH, HEIGHT);
}

Editor::~Editor() noexcept(false) {
    if (validObject(shell)) delete shell;
}

CppForm& Editor::form() const { return *CAST(CppForm, shell->childNamed("EditorForm")); }

void Editor::reLoad() { derivedClassResponsibility("reLoad"); }

void Editor::start() {
    shell->realize();
    cbackOn(StartEditor);
}
