// RunDialog: the row of the file, the toggle and the button that browses for the file.
#include "panel/rundlg.h"

#include "quill/cback.h"
#include "trellis/ask.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(RunDialog, ParamDialog, 1, 0)

RunDialog::RunDialog(CppWidget* parent) : ParamDialog("Run Program Dialog", parent, "Run Program") {
    addRow("File to run", "", "RunFile");
    trace = &addToggle("TraceOff", "TraceOff");
    browse = new CppCommand("Browse", &form(), "Browse");
    addUnderRows(*browse);
    okButton().setLabel("Run");
    browse->addCback(CppCommandPressed, cbackMethod<&RunDialog::browsePressed>, *this);
}

void RunDialog::browsePressed(Cback&) {
    String name = fileField().getText();
    if (askFileName(name, "Run file", "File to run", "", false)) fileField().setText(name.asCharPointer());
}

std::vector<std::string> RunDialog::command() const {
    std::string file = rowText(0).asCharPointer();
    if (file.empty()) return {};
    if (file.find('/') == std::string::npos) file = "./" + file;
    std::vector<std::string> words = {file};
    if (trace->state()) words.push_back("-traceOff");
    return words;
}

std::vector<std::string> RunDialog::askCommand() {
    if (ask() != 1) return {};
    return command();
}
