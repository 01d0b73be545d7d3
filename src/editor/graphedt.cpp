// GraphEditor: making the editor, its states, and the icons entering and leaving the board.
#include "editor/graphedt.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/fragment.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/cback.h"
#include "quill/filename.h"
#include "quill/quillerr.h"
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/drawprim.h"
#include "trellis/filemenu.h"
#include "trellis/graphic.h"
#include "trellis/shell.h"
#include "trellis/zoommenu.h"

DEFINE_ABSTRACT_CLASS(GraphEditor, Editor, 1, 0)
DEFINE_ABSTRACT_CLASS(GraphShower, GraphEditor, 1, 0)

GraphEditor::GraphEditor(CppWidget* topLevel, const char* semanticClass, const char* title, bool child,
                         bool shower, bool deferredShow, bool fromFile, const char* fileName)
    : GraphEditor(topLevel, semanticClass, title, child, shower, deferredShow, fromFile, fileName,
                  class_GraphEditor) {}

GraphEditor::GraphEditor(CppWidget* topLevel, const char* semanticClass, const char* title, bool child,
                         bool shower, bool deferredShow, bool fromFile, const char* fileName, const Class&)
    : Editor("GraphEditor", topLevel),
      readOnly(shower),
      child(child),
      status_(OpenMode),
      savedStatus(0),
      currentLink(0),
      currentIcon_(0),
      currentComment(0),
      gui_(0),
      icon_cltn(new Dictionary),
      board_(0),
      semantic_(0),
      selectionArea(0),
      rubberLine(0),
      dragEnabled(true),
      history_(new EditHistory(*this)) {
    Class* kind = findClass(semanticClass);
    QASSERT_TEXT(kind != 0, "semanticClass");
    semantic_ = CAST(Semantic, (kind ? kind : &class_Semantic)->create());
    semantic_->attachEditor(*this);
    board_ = new ChessBoard(semantic_->width(), semantic_->height());
    gui_ = new GraphEdtGui(getShell(), form(), title, semantic_->fileExtension(), readOnly, fromFile, "");
    OrderedCltn icons, links, commands;
    semantic_->iconNames(icons);
    semantic_->linkNames(links);
    semantic_->commandNames(commands);
    gui_->buildMenus(icons, links, commands);
    for (OrderedCltn* names : {&icons, &links, &commands}) {
        while (!names->isEmpty()) deepDelete(names->removeLast());
    }
    connectEvents();
    semantic_->setEditorSizes();
    changeBoardExtent();
    updateEditMenu(0);
    if (!readOnly && !deferredShow) open(fileName);
}

void GraphEditor::open(const char* fileName) {
    start();
    String name = withExtension(fileName);
    bool exists = name.size() && access(name.asCharPointer(), F_OK) == 0;
    if (!exists) gui_->fileMenu().newFile();
    String refusal = name.size() ? relock(name.asCharPointer()) : String();
    if (refusal.size()) {
        gui_->showError((name + refusal).asCharPointer());
        if (exists) gui_->fileMenu().newFile();
        return;
    }
    if (name.size()) gui_->setFileName(name.asCharPointer());
    if (exists)
        load(name.asCharPointer());
    else if (name.size())
        semantic_->fileCreated();  // the new drawing now has its name
}

GraphShower::GraphShower(CppWidget* topLevel, const char* semanticClass, const char* title, bool child,
                         bool deferredShow, bool fromFile, const char* fileName)
    : GraphEditor(topLevel, semanticClass, title, child, true, deferredShow, fromFile, fileName,
                  class_GraphShower) {}

GraphEditor::~GraphEditor() noexcept(false) {
    while (!openChildren.isEmpty()) closeChild(*CAST(Editor, openChildren.last()));
    relock("");
    delete history_;
    gui_->drawArea().list().removeAll();
    OrderedCltn icons;
    icons.addContentsOf(*icon_cltn);
    for (unsigned i = 0; i < icons.size(); ++i) destroyIcon(CAST(IconNode, icons.at(i)));
    discardCut();
    resizeTargets.deleteContents();
    delete icon_cltn;
    delete board_;
    delete selectionArea;
    delete rubberLine;
    OrderedCltn pooled, keys;
    paramPool_.addValuesTo(pooled);
    paramPool_.addKeysTo(keys);
    for (unsigned i = 0; i < pooled.size(); ++i) {
        if (pooled.at(i)->isKindOf(class_OrderedCltn)) CAST(OrderedCltn, pooled.at(i))->deleteContents();
        delete pooled.at(i);
    }
    paramPool_.deleteContents();
    // The pool is keyed by the dialogue's class, or by a text the semantic made for it: the text goes.
    for (unsigned i = 0; i < keys.size(); ++i)
        if (keys.at(i)->isKindOf(class_String)) delete keys.at(i);
    delete gui_;
    delete semantic_;
}

void GraphEditor::connectEvents() {
    struct Link {
        const Symbol& event;
        CbackMethod method;
        bool forShower;
    };
    const Link guiEvents[] = {
        {GraphEdtGuiSave, cbackMethod<&GraphEditor::guiSave>, false},
        {GraphEdtGuiEdit, cbackMethod<&GraphEditor::guiEdit>, false},
        {GraphEdtGuiIcon, cbackMethod<&GraphEditor::guiIcon>, false},
        {GraphEdtGuiLink, cbackMethod<&GraphEditor::guiLink>, false},
        {GraphEdtGuiOpti, cbackMethod<&GraphEditor::guiOption>, false},
        {GraphEdtGuiMenu, cbackMethod<&GraphEditor::guiMenu>, false},
        {GraphEdtGuiStatusMenu, cbackMethod<&GraphEditor::guiStatusMenu>, false},
        {GraphEdtGuiTransfMenu, cbackMethod<&GraphEditor::guiTransform>, false},
        {GraphEdtGuiLinksMenu, cbackMethod<&GraphEditor::guiLinksMenu>, false},
        {GraphEdtGuiResize, cbackMethod<&GraphEditor::guiResize>, false},
        {GraphEdtGuiNew, cbackMethod<&GraphEditor::guiNew>, true},
        {GraphEdtGuiLoad, cbackMethod<&GraphEditor::guiLoad>, true},
        {GraphEdtGuiQuit, cbackMethod<&GraphEditor::guiQuit>, true},
        {GraphEdtGuiPrint, cbackMethod<&GraphEditor::guiPrint>, true},
        {GraphEdtGuiHelp, cbackMethod<&GraphEditor::guiHelp>, true},
        {GraphEdtGuiReset, cbackMethod<&GraphEditor::guiReset>, true},
    };
    for (const Link& link : guiEvents)
        if (link.forShower || !readOnly) gui_->addCback(link.event, link.method, *this);
    gui_->addCback(FileMenuSaveAs, cbackMethod<&GraphEditor::savedAs>, *this);
    DrawArea& area = gui_->drawArea();
    area.addCback(DownGraphic, cbackMethod<&GraphEditor::downGraphic>, *this);
    if (!readOnly) {
        area.addCback(UpGraphic, cbackMethod<&GraphEditor::upGraphic>, *this);
        area.addCback(MoveGraphic, cbackMethod<&GraphEditor::moveGraphic>, *this);
        area.addCback(MoveDownGraphic, cbackMethod<&GraphEditor::moveDownGraphic>, *this);
        area.addCback(DoubleClickGraphic, cbackMethod<&GraphEditor::doubleClickGraphic>, *this);
    }
    addCback(XTimeOut, cbackMethod<&GraphEditor::timeOut>, *this);
}

// ---------------------------------------------------------------- states

void GraphEditor::pushStatus(int status) {
    savedStatus = status_;
    status_ = status;
    if (status >= CriticalStatus) gui_->setBusy(true);
}

void GraphEditor::popStatus(int status) {
    status_ = status ? status : savedStatus;
    if (status_ < CriticalStatus) gui_->setBusy(false);
}

void GraphEditor::showMessage(const char* text) { gui_->showMessage(text); }
void GraphEditor::showWarning(const char* text) { gui_->showWarning(text); }
bool GraphEditor::askQuestion(const char* text) { return gui_->askQuestion(text); }

bool GraphEditor::isChanged() const { return gui_->modified(); }

void GraphEditor::setChanged(bool flag) { gui_->setModified(flag); }

const String& GraphEditor::fileName() const { return gui_->fileName(); }

// The file's name without its extension, in its directory.
String GraphEditor::baseName() const {
    if (!gui_->hasFile()) return String("no-file");
    const char* name = gui_->fileName().asCharPointer();
    return directoryPart(name) + "/" + ::baseName(name);
}

// A name without an extension takes that of the kind of drawing; no name stays none.
String GraphEditor::withExtension(const char* fileName) const {
    String name(fileName ? fileName : "");
    if (name.size() && extensionPart(name.asCharPointer()).size() == 0) name += semantic_->fileExtension();
    return name;
}

void GraphEditor::reLoad() {
    if (gui_->hasFile()) load(gui_->fileName().asCharPointer());
}

// ---------------------------------------------------------------- the board

void GraphEditor::changeBoardExtent() {
    semantic_->setWidth(std::max(semantic_->width(), board_->width()));
    semantic_->setHeight(std::max(semantic_->height(), board_->height()));
    gui_->setWorld(FloatRect(0, 0, semantic_->width(), semantic_->height()));
}

void GraphEditor::insertIcon(IconNode& icon) {
    gui_->drawArea().list().add(*icon.compositeIcon());
    if (board_->add(icon)) changeBoardExtent();
    icon_cltn->add(icon);
    semantic_->iconInserted(icon);
}

void GraphEditor::removeIcon(IconNode& icon) {
    highlightIcon(icon, false);
    dropSame(gui_->drawArea().list(), *icon.compositeIcon());
    board_->remove(icon);
    icon_cltn->removeKey(icon.name());
    semantic_->iconRemoved(icon);
}

void GraphEditor::destroyIcon(IconNode* icon) {
    QASSERT(icon != nil);
    QASSERT(icon != 0);
    if (!icon || icon == nil) return;
    if (icon == currentIcon_) currentIcon_ = 0;
    dropSame(select_icons, *icon);
    dropSame(modify_icons, *icon);
    modifySteps.erase(icon);
    closeCommentOf(*icon);
    icon->release();
    if (icon->isKindOf(class_IconArc))
        semantic_->deleteLink(CAST(IconArc, icon));
    else
        semantic_->deleteIcon(icon);
}

void GraphEditor::deleteIconAndLinks(IconNode& icon) {
    OrderedCltn links;
    icon.fromLinks(links);
    OrderedCltn outgoing;
    icon.toLinks(outgoing);
    links.addContentsOf(outgoing);
    for (unsigned i = 0; i < links.size(); ++i) {
        IconArc* link = CAST(IconArc, links.at(i));
        if (!icon_cltn->includesKey(link->name())) continue;
        removeIcon(*link);
        detachLink(*link);
        destroyIcon(link);
    }
    removeIcon(icon);
    destroyIcon(&icon);
}

const char* GraphEditor::checkPlace(IconNode& icon) {
    OrderedCltn collisions;
    board_->collisionWith(icon, collisions);
    return semantic_->checkCollision(icon, collisions);
}

void GraphEditor::highlightIcon(IconNode& icon, bool on) {
    if (on)
        icon.setSelected(lastPoint);
    else
        icon.unhighlight(lastPoint);
    gui_->redraw();
}
