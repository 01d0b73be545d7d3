// GraphEditor: the window's menus, popups and the double click.
#include <cstring>

#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/drawarea.h"
#include "trellis/drawprim.h"

namespace {

bool isLink(const Object* icon) { return icon && icon->isKindOf(class_IconArc); }

// The text an event carries, or null for none.
const char* entryOf(Cback& cb) {
    if (!cb.callData || cb.callData->kind() == CallData::NONE) return 0;
    Object* value = cb.callData->isObject() ? cb.callData->asObject() : 0;
    if (value == nil) return 0;
    return cb.callData->asCharPointer();
}

// The status pushed for a call, popped however the call ends.
class StatusFor {
public:
    StatusFor(GraphEditor& editor, int status) : editor(editor) { editor.pushStatus(status); }
    ~StatusFor() { editor.popStatus(); }

private:
    GraphEditor& editor;
};

struct DoubleClickChoice {
    const char* label;
    int status;
};

const DoubleClickChoice doubleClickChoices[] = {
    {"Open", GraphEditor::OpenMode},       {"Modify", GraphEditor::ModifyMode},
    {"Comment", GraphEditor::CommentMode}, {"Transform", GraphEditor::TransformMode},
    {"Link", GraphEditor::LinkMode},
};

}  // namespace

// A call to the semantic on an icon, under the watch cursor; its message goes to a box.
void GraphEditor::semanticCall(const char* (Semantic::*call)(IconNode&), IconNode& icon) {
    const char* message = 0;
    {
        StatusFor critical(*this, CriticalStatus);
        gui_->setWatchCursor(true);
        message = (semantic_->*call)(icon);
    }
    gui_->setWatchCursor(false);
    if (message) gui_->showError(message);
}

void GraphEditor::doubleClickGraphic(Cback& cb) {
    if (gui_->drawArea().pointer().button != 1) return;
    if (status_ >= CriticalStatus && status_ != CommandStatus) return;
    FloatPoint point = *CAST(FloatPoint, cb.callData->asObject());
    if (!pick(point)) return;
    downPoint = point;
    IconNode& icon = *currentIcon_;
    if (holdsSame(select_icons, icon)) selectIcon(icon, false);
    currentIcon_ = &icon;
    doubleClickAction(icon);
}

void GraphEditor::doubleClickAction(IconNode& icon) {
    switch (status_) {
        case CommandStatus:
        case OpenMode:
            semanticCall(&Semantic::openIcon, icon);
            break;
        case CommentMode:
            semanticCall(&Semantic::commentIcon, icon);
            break;
        case ModifyMode:
            modifyCurrent();
            break;
        case TransformMode:
            offerTransform();
            break;
        case LinkMode: {
            if (isLink(&icon)) break;
            OrderedCltn names;
            semantic_->linksFromIcon(icon, names);
            bool allowed = false;
            for (unsigned i = 0; i < names.size() && !allowed; ++i)
                allowed = gui_->currentLink() == names.at(i)->asCharPointer();
            names.deleteContents();
            if (allowed) {
                startLink();
                break;
            }
            String description;
            icon.iconDescription(description);
            gui_->showError(formatText("The link %s cannot start from icon %s",
                                       gui_->currentLink().asCharPointer(), description.asCharPointer()));
            break;
        }
    }
}

// ---------------------------------------------------------------- popups

void GraphEditor::guiMenu(Cback& cb) {
    QASSERT_TEXT(status_ == CriticalStatus, "status == CriticalStatus");
    popStatus();
    const char* entry = entryOf(cb);
    if (!entry) return;
    if (!currentIcon_) {
        editEntry(entry);
        return;
    }
    popupChosen(entry);
}

void GraphEditor::popupChosen(const char* entry) {
    IconNode& icon = *currentIcon_;
    String choice(entry);
    if (choice == "Resize...") {
        resize();
        return;
    }
    if (choice == "Cut" || choice == "Copy") {
        if (choice == "Cut" && holdsSame(modify_icons, icon))
            gui_->showError("Cannot cut an edited icon");
        else if (!icon.isDeletable())
            gui_->showError(choice == "Cut" ? "Cannot cut a readOnly icon" : "Cannot copy a readOnly icon");
        else if (holdsSame(select_icons, icon))
            choice == "Cut" ? cut(0) : copy(0);
        else
            choice == "Cut" ? cut(&icon) : copy(&icon);
        return;
    }
    if (holdsSame(select_icons, icon)) selectIcon(icon, false);
    currentIcon_ = &icon;
    if (choice == "Open")
        semanticCall(&Semantic::openIcon, icon);
    else if (choice == "Comment")
        semanticCall(&Semantic::commentIcon, icon);
    else if (choice == "Modify...")
        modifyCurrent();
}

void GraphEditor::guiLinksMenu(Cback& cb) {
    if (status_ == CriticalStatus) popStatus();
    const char* entry = entryOf(cb);
    if (!entry || !currentIcon_) return;
    gui_->setCurrentLink(entry);
    startLink();
}

void GraphEditor::guiTransform(Cback& cb) {
    if (status_ == CriticalStatus) popStatus();
    const char* entry = entryOf(cb);
    if (entry && currentIcon_) transformCurrent(entry);
}

void GraphEditor::guiStatusMenu(Cback& cb) {
    const char* entry = entryOf(cb);
    if (!entry) return;
    for (const DoubleClickChoice& choice : doubleClickChoices) {
        if (strcmp(entry, choice.label) != 0) continue;
        if (status_ < CriticalStatus)
            status_ = choice.status;
        else
            savedStatus = choice.status;
    }
}

// ---------------------------------------------------------------- menus

void GraphEditor::guiEdit(Cback& cb) {
    if (const char* entry = entryOf(cb)) editEntry(entry);
}

void GraphEditor::editEntry(const char* entry) {
    String choice(entry);
    if (choice == "Cut" || choice == "Copy") {
        if (select_icons.isEmpty()) return;
        choice == "Cut" ? cut(0) : copy(0);
    } else if (choice == "Paste") {
        paste();
    } else if (choice == "Select All") {
        selectAll();
    } else if (choice == "Resize Icon...") {
        currentIcon_ = 0;
        resize();
    } else if (choice == "Undo") {
        undo();
    } else if (choice == "Redo") {
        redo();
    }
}

// A parameter dialogue holds its icon: the drawing is not rewound under it.
bool GraphEditor::mayRewind() {
    if (modify_icons.isEmpty()) return true;
    gui_->showError("The editor have some critical action started\n\n  Conclude it before.");
    return false;
}

void GraphEditor::undo() {
    if (!mayRewind()) return;
    clearSelection();
    currentIcon_ = 0;
    if (history_->undo()) gui_->redraw();
}

void GraphEditor::redo() {
    if (!mayRewind()) return;
    clearSelection();
    currentIcon_ = 0;
    if (history_->redo()) gui_->redraw();
}

void GraphEditor::guiOption(Cback& cb) {
    const char* entry = entryOf(cb);
    if (!entry) return;
    const char* message = 0;
    {
        StatusFor command(*this, CommandStatus);
        message = semantic_->executeCommand(entry);
    }
    if (message) gui_->showError(message);
}

void GraphEditor::guiIcon(Cback& cb) {
    if (status_ >= CommandStatus) return;
    const char* entry = entryOf(cb);
    if (!entry) return;
    if (strcmp(entry, "Paste") == 0)
        paste();
    else
        createIcon(entry, gui_->menuIndex(), gui_->iconIndex());
}

void GraphEditor::guiLink(Cback&) {}

void GraphEditor::guiHelp(Cback& cb) {
    if (const char* topic = entryOf(cb)) gui_->help(topic);
}

// The window's offer to leave a critical action: back to the idle state.
void GraphEditor::guiReset(Cback&) {
    abandonGesture();
    history_->cancel();
    status_ = savedStatus < CriticalStatus && savedStatus >= LinkMode ? savedStatus : OpenMode;
    gui_->setBusy(false);
    gui_->setStatus("");
    gui_->redraw();
}

void GraphEditor::abandonGesture() {
    DrawArea& area = gui_->drawArea();
    if (rubberLine) {
        dropSame(area.list(), *rubberLine);
        delete rubberLine;
        rubberLine = 0;
    }
    if (currentLink) semantic_->deleteLink(currentLink);
    currentLink = 0;
    if (selectionArea) {
        dropSame(area.list(), *selectionArea);
        delete selectionArea;
        selectionArea = 0;
    }
    IconNode* icon = currentIcon_;
    bool placing = status_ == PlacingIcon || status_ == PlacingFirst || status_ == CreatingIcon ||
                   status_ == IconParameters;
    if (placing && icon && icon_cltn->assocAt(icon->name()) != icon) {
        dropSame(area.list(), *icon->compositeIcon());
        dropSame(insertList, *icon);
        destroyIcon(icon);
    } else if (status_ == MovingOneIcon && icon && !icon->isKindOf(class_IconArc)) {
        board_->add(*icon);
        followMove(*icon, dragStart);
    } else if (status_ == PlacingComment && currentComment) {
        currentComment->y = 0;
    }
    while (!moving_icons.isEmpty()) {
        Assoc* moving = CAST(Assoc, moving_icons.removeFirst());
        board_->add(*CAST(IconNode, moving->key()));
        delete moving->value();
        delete moving;
    }
    currentComment = 0;
}
