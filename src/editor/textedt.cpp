// TextEditor: the window's layout, the edit menu by first word, search, go to line and replace.
#include "editor/textedt.h"

#include <cstdlib>
#include <cstring>

#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/scrollb.h"
#include "trellis/shell.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(TextEditor, Editor, 1, 0)

namespace {

const int GAP = 4;
const int STATUS_HEIGHT = 22;
const char* const editEntries[] = {"Cu&t   | Ctrl+X", "&Copy  | Ctrl+C", "&Paste | Ctrl+V", "&Undo  | Ctrl+Z",
                                   0};

}  // namespace

TextEditor::TextEditor(const char* name, CppWidget* parent, bool readOnly)
    : Editor(name, parent), searchPosition(0), readOnly(readOnly), modified(false), settingText(false) {
    CppForm& f = form();
    bar = new MenuBar("MenuBar", &f);
    f.attachAt(*bar, 0, 0);
    f.attachHorizontal(bar, &f, 0);
    edit = new PulldownMenu("EditMenu", bar, "&Edit");
    if (readOnly)
        edit->addChoice("&Copy  | Ctrl+C");
    else
        for (const char* const* entry = editEntries; *entry; ++entry) edit->addChoice(*entry);
    edit->addCback(MenuPressed, cbackMethod<&TextEditor::editChosen>, *this);
    buildFields();
    CppViewport* viewport = new CppViewport("TextViewport", &f);
    text = new CppText("Text", viewport, true, 30, 80);
    text->setReadOnly(readOnly);
    text->setFocusFlag(true);
    statusLabel = new CppLabel("StatusLabel", &f, "");
    f.attachHorizontal(&f, statusLabel, GAP);
    f.attachHorizontal(statusLabel, &f, GAP);
    f.attachTopFromBottom(*statusLabel, STATUS_HEIGHT);
    f.attachVertical(statusLabel, &f, 2);
    f.attachHorizontal(&f, viewport, 0);
    f.attachHorizontal(viewport, &f, 0);
    f.attachVertical(searchText, viewport, GAP);
    f.attachBottomToSibling(*viewport, *statusLabel, 2);
    text->addCback(CppTextChanged, cbackMethod<&TextEditor::textChanged>, *this);
}

TextEditor::TextEditor(const char* name, CppWidget* parent, const char* title, const char* text)
    : TextEditor(name, parent, false) {
    getShell().setTitle(title);
    setText(text);
    start();
}

// Three fields under the menu bar, each after the button that uses it:
// "Search", "GoToLine", "Replace". Return in a field does the same.
void TextEditor::buildFields() {
    CppForm& f = form();
    struct Field {
        const char* button;
        const char* name;
        CppText** field;
        CbackMethod action;
    };
    const Field fields[] = {
        {"Search", "SearchText", &searchText, cbackMethod<&TextEditor::searchAsked>},
        {"GoToLine", "GotoText", &gotoText, cbackMethod<&TextEditor::gotoAsked>},
        {"Replace", "ReplaceText", &replaceText, cbackMethod<&TextEditor::replaceAsked>},
    };
    for (int i = 0; i < 3; ++i) {
        CppCommand* button = new CppCommand(formatText("%sButton", fields[i].name), &f, fields[i].button);
        CppText* field = new CppText(fields[i].name, &f, false, 1, 12);
        *fields[i].field = field;
        if (i == 0)
            f.attachHorizontal(&f, button, GAP);
        else
            f.attachLeftPercent(*button, i * 100 / 3);
        f.attachVertical(bar, button, GAP);
        f.attachHorizontal(button, field, GAP);
        if (i == 2)
            f.attachHorizontal(field, &f, GAP);
        else
            f.attachRightPercent(*field, (i + 1) * 100 / 3 - 1);
        f.attachVertical(bar, field, GAP);
        field->setFocusFlag(true);
        button->addCback(CppCommandPressed, fields[i].action, *this);
        field->addCback(CppTextActivated, fields[i].action, *this);
        if (readOnly && i == 2) {
            button->setSensitive(false);
            field->setSensitive(false);
        }
    }
}

void TextEditor::setText(const char* newText) {
    settingText = true;
    text->setText(newText);
    settingText = false;
    modified = false;
    searchPosition = 0;
}

String TextEditor::getText() const { return text->getText(); }

void TextEditor::textChanged(Cback&) {
    if (!settingText) modified = true;
}

void TextEditor::setStatus(const char* status) { statusLabel->setText(status); }

String TextEditor::status() const { return statusLabel->text(); }

void TextEditor::editChosen(Cback& cb) {
    String choice = edit->choiceOf(cb);
    int blank = choice.index(" ");
    String word = blank < 0 ? choice : choice.left(unsigned(blank));
    if (word == "Cut")
        text->cut();
    else if (word == "Copy")
        text->copy();
    else if (word == "Paste")
        text->paste();
    else if (word == "Undo")
        text->undo();
}

bool TextEditor::search(const char* wanted) {
    if (!wanted || !*wanted) return false;
    lastSearch = wanted;
    String buffer = text->getText();
    const char* start = buffer.asCharPointer();
    int from = searchPosition < int(buffer.size()) ? searchPosition : int(buffer.size());
    const char* hit = std::strstr(start + from, wanted);
    if (!hit) hit = std::strstr(start, wanted);
    if (!hit) {
        setStatus(formatText("\"%s\" not found", wanted));
        return false;
    }
    int position = int(hit - start), length = int(std::strlen(wanted));
    text->select(position, length);
    searchPosition = position + length;
    setStatus("");
    return true;
}

void TextEditor::goToLine(int line) {
    String buffer = text->getText();
    const char* start = buffer.asCharPointer();
    const char* lineStart = start;
    for (int n = 1; n < line; ++n) {
        const char* newline = std::strchr(lineStart, '\n');
        if (!newline) break;
        lineStart = newline + 1;
    }
    text->setCaret(int(lineStart - start));
}

bool TextEditor::replace(const char* searched, const char* replacement) {
    if (!searched || !*searched) return false;
    lastReplacement = replacement ? replacement : "";
    if (text->hasSelection() && text->selectedText() == searched) {
        int position = text->selectionStart();
        text->replaceSelection(lastReplacement.asCharPointer());
        searchPosition = position + int(lastReplacement.size());
    }
    return search(searched);
}

void TextEditor::searchAsked(Cback&) { search(searchText->getText().asCharPointer()); }

void TextEditor::gotoAsked(Cback&) { goToLine(std::atoi(gotoText->getText().asCharPointer())); }

void TextEditor::replaceAsked(Cback&) {
    replace(searchText->getText().asCharPointer(), replaceText->getText().asCharPointer());
}
