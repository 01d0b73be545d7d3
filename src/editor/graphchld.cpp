// GraphEditor: child windows tied to the drawing by title (comments, shown texts, sub-drawings).
#include <QWidget>
#include <cstring>
#include <vector>

#include "editor/fileedt.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "editor/textshow.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

const int CHILD_STEP = 30;
const int CHILD_ORIGIN = 100;

}  // namespace

Editor* GraphEditor::openChildEditor(const char* className, const char* textOrFile, const char* title,
                                     Object* userData, bool show, bool fromFile) {
    String key(title);
    if (childEditors.includesKey(key)) {
        Editor& known = *CAST(Editor, childEditors.atKey(key));
        GraphEditor* graph = known.isKindOf(class_GraphEditor) ? static_cast<GraphEditor*>(&known) : 0;
        bool sameGraph = !graph || (graph->gui().fromFile() == fromFile && graph->fileName() == textOrFile);
        if (sameGraph) {
            if (known.isKindOf(class_TextEditor)) static_cast<TextEditor&>(known).setText(textOrFile);
            if (holdsChild(known)) {
                known.getShell().raise();
            } else {
                known.getShell().realize();
                openChildren.add(known);
                gui_->setShowerChildren(true);
            }
            replaceChildData(known, userData);
            return &known;
        }
        closeChild(known);
    }
    Editor* made = makeChild(className, textOrFile, title, fromFile);
    int place = CHILD_STEP * int(childEditors.size()) + CHILD_ORIGIN;
    made->getShell().handle()->move(place, place);
    childEditors.atPut(*new String(key), *made);
    openChildren.add(*made);
    gui_->setShowerChildren(true);
    replaceChildData(*made, userData);
    made->addCback(AnyCback, cbackMethod<&GraphEditor::childEvent>, *this);
    made->getShell().addCback(WindowManagerCloseRequest, cbackMethod<&GraphEditor::childClosing>, *this,
                              made);
    if (made->isKindOf(class_TextEditor) && !static_cast<TextEditor*>(made)->isReadOnly())
        static_cast<TextEditor*>(made)->textWidget().addCback(
            CppTextChanged, cbackMethod<&GraphEditor::childTextChanged>, *this, made);
    if (!show) made->getShell().close();
    return made;
}

Editor* GraphEditor::makeChild(const char* className, const char* textOrFile, const char* title,
                               bool fromFile) {
    String kind(className);
    if (kind == "TextEditor") return new TextEditor("TextEditor", 0, title, textOrFile);
    if (kind == "TextShower") {
        TextShower* shower = new TextShower("TextShower", 0, title);
        shower->show(textOrFile);
        return shower;
    }
    if (kind == "FileEditor") return new FileEditor("FileEditor", 0, textOrFile);
    GraphEditor* graph = new GraphEditor(0, className, title, true, readOnly, true, fromFile, "");
    if (fromFile && textOrFile && *textOrFile) {
        String message = graph->relock(textOrFile);
        if (message.size())
            gui_->showError((String(textOrFile) + message).asCharPointer());
        else
            graph->gui().setFileName(textOrFile);
    }
    graph->start();
    if (graph->gui().hasFile()) graph->load(textOrFile);
    return graph;
}

bool GraphEditor::holdsChild(const Editor& child) const { return openChildren.indexOfSame(child) >= 0; }

void GraphEditor::replaceChildData(Editor& child, Object* userData) {
    auto found = childData.find(&child);
    if (found != childData.end() && found->second != userData) semantic_->closeComment(found->second);
    if (userData)
        childData[&child] = userData;
    else
        childData.erase(&child);
}

void GraphEditor::childTextChanged(Cback& cb) {
    TextEditor& editor = *CAST(TextEditor, cb.userData);
    auto found = childData.find(&editor);
    if (found == childData.end()) return;
    semantic_->saveComment(editor.getText().asCharPointer(), found->second);
    setChanged();
}

// The comment window of an icon that goes closes with it.
void GraphEditor::closeCommentOf(IconNode& icon) {
    std::vector<Editor*> windows;
    for (auto& entry : childData)
        if (entry.second->isKindOf(class_Assoc) &&
            static_cast<Assoc*>(entry.second)->value() == static_cast<Object*>(&icon))
            windows.push_back(const_cast<Editor*>(entry.first));
    for (Editor* window : windows) closeChild(*window);
}

void GraphEditor::childClosing(Cback& cb) { closeChild(*CAST(Editor, cb.userData)); }

void GraphEditor::childEvent(Cback& cb) {
    Editor& child = *CAST(Editor, cb.owner);
    auto found = childData.find(&child);
    semantic_->childEditorEvent(child, cb, cb.callData, found == childData.end() ? 0 : found->second);
    if (cb.event == CloseEditor || cb.event == FileEdtQuit) closeChild(child);
}

void GraphEditor::closeChild(Editor& child) {
    dropSame(openChildren, child);
    gui_->setShowerChildren(!openChildren.isEmpty());
    auto found = childData.find(&child);
    if (found != childData.end()) {
        semantic_->closeComment(found->second);
        childData.erase(found);
    }
    if (child.isKindOf(class_GraphEditor)) {
        GraphEditor& graph = static_cast<GraphEditor&>(child);
        graph.relock("");
    }
    if (readOnly || child.isKindOf(class_GraphShower)) {
        child.getShell().close();
        return;
    }
    String* key = CAST(String, childEditors.keyOf(child));
    QASSERT_TEXT(key != nil, "child editor not found");
    if (key == nil) return;
    delete childEditors.removeKey(*key);
    delete key;
    child.removeConsumerCbacks();
    delete &child;
}
