// MainLib's command line: one line run against the global functions, its history, and "RE DO ALL".
#include <cctype>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "interpreter/panel/mainlib.h"
#include "interpreter/variable.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/list.h"
#include "trellis/text.h"

namespace {

// The line without its trailing ";" and blanks.
String stripped(const char* line) {
    String text(line ? line : "");
    int end = int(text.size());
    while (end > 0 && (text.asCharPointer()[end - 1] == ';' ||
                       std::isspace((unsigned char)text.asCharPointer()[end - 1])))
        --end;
    return text.left(unsigned(end));
}

}  // namespace

String MainLib::execute(const char* command) {
    String line = stripped(command);
    if (line.size() == 0) return String();
    String before = globalsListing();
    String message = runLine(line);
    if (message.size() > 0) {
        if (globalsListing() != before) restoreGlobals();
        outputPane->setText(message.asCharPointer());
        return message;
    }
    String collected = mainPane->getText();
    if (collected.size() > 0 && collected.asCharPointer()[collected.size() - 1] != '\n')
        mainPane->append("\n");
    mainPane->append((line + ";\n").asCharPointer());
    changed = true;
    remember(line);
    outputPane->setText(globalsListing().asCharPointer());
    return message;
}

void MainLib::redoAll() {
    String report = runMainText();
    outputPane->setText((report + globalsListing()).asCharPointer());
}

// A line that failed half-way may have changed globals before its fault: the
// main text runs again, its console output muted, and the values stand as
// they stood before the line.
void MainLib::restoreGlobals() {
    struct Muted {
        std::ostringstream sink;
        std::streambuf* former = std::cout.rdbuf(sink.rdbuf());
        ~Muted() { std::cout.rdbuf(former); }
    } muted;
    runMainText();
}

// The main text from a fresh state, line by line; answers the messages of the lines that failed.
String MainLib::runMainText() {
    String lines = mainPane->getText();
    executer.clear();
    String report;
    std::istringstream text(lines.asCharPointer());
    for (std::string raw; std::getline(text, raw);) {
        String line = stripped(raw.c_str());
        if (line.size() == 0) continue;
        String message = runLine(line);
        if (message.size() > 0) report += message + "\n";
    }
    return report;
}

// A fault that the language does not catch itself is answered as a message too.
String MainLib::runLine(const String& command) {
    String message;
    String fault = errorTextOf([&] { message = executer.evaluate(globalPane->getText(), command); });
    return fault.size() > 0 ? fault : message;
}

String MainLib::globalsListing() {
    String listing;
    const OrderedCltn& globals = executer.getGlobals();
    for (unsigned i = 0; i < globals.size(); ++i)
        listing += executer.printVariable(CAST(Variable, globals.at(int(i)))->getName()) + "\n";
    return listing;
}

// The command goes first in the history; an older copy of it leaves.
void MainLib::remember(const String& command) {
    std::vector<std::string> older;
    for (int i = 0; i < commandBox->itemCount(); ++i)
        if (commandBox->itemText(i) != command) older.push_back(commandBox->itemText(i).asCharPointer());
    commandBox->removeAll();
    commandBox->addItem(command.asCharPointer());
    for (const std::string& text : older) commandBox->addItem(text.c_str());
    commandBox->setText("");
}

// Return in the field runs it; a line chosen from the history only stands in the field, to be edited.
void MainLib::commandEntered(Cback& cb) {
    if (cb.callData->asInt() == -1) execute(commandBox->text().asCharPointer());
}

void MainLib::redoPressed(Cback&) { redoAll(); }
