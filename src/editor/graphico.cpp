// GraphEditor: new icons and their placing, comments, parameter dialogues, transformations and resizing.
#include <algorithm>
#include <iostream>

#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/quillerr.h"
#include "trellis/drawarea.h"
#include "trellis/drawicon.h"

namespace {

bool isLink(const Object* icon) { return icon && icon->isKindOf(class_IconArc); }

String titleFor(const char* action, IconNode& icon) {
    String title(action);
    String description;
    title += icon.iconDescription(description);
    return title;
}

}  // namespace

// ---------------------------------------------------------------- new icons

void GraphEditor::createIcon(const char* name, int menu, int entry) {
    IconNode* icon =
        insertList.isEmpty() ? semantic_->newIcon(name, menu, entry) : CAST(IconNode, insertList.last());
    if (!icon || icon == nil) return;
    currentIcon_ = icon;
    semantic_->uniqueName(*icon, *icon_cltn);
    QASSERT_TEXT(!icon_cltn->includesKey(icon->name()), "!icon_cltn->includesKey(currentIcon->name())");
    icon->update();
    history_->begin("Insert");
    pushStatus(CreatingIcon);
    if (semantic_->modifyIcon(*icon, titleFor("Insert Parameters of ", *icon).asCharPointer()))
        status_ = IconParameters;
    else
        iconConfirmed(0);
}

void GraphEditor::iconConfirmed(int action) {
    IconNode& icon = *currentIcon_;
    if (action == 2 && icon.isDeletable()) {
        dropSame(select_icons, icon);
        dropSame(insertList, icon);
        destroyIcon(&icon);
        history_->cancel();
        popStatus();
        return;
    }
    semantic_->uniqueName(icon, *icon_cltn);
    if (semantic_->needsPlacing(icon) && icon.isMovable()) {
        icon.setPosition(Point(icon.posX(), -100));
        currentComment = action == 1 ? icon.commentIcon() : 0;
        status_ = PlacingFirst;
        gui_->drawArea().list().add(*icon.compositeIcon());
        gui_->setStatus("Select the position where insert the icon");
        return;
    }
    if (const char* refusal = checkPlace(icon)) {
        gui_->showError(refusal);
        dropSame(insertList, icon);
        history_->cancel();
        if (!icon.isDeletable()) {
            std::cerr << "collision with undeleteable icon" << std::endl;
            popStatus();
            return;
        }
        destroyIcon(&icon);
        popStatus();
    } else {
        popStatus();
        placeNewIcon(icon, action == 1);
    }
    nextInsertion();
}

void GraphEditor::placeNewIcon(IconNode& icon, bool withComment) {
    dropSame(insertList, icon);
    insertIcon(icon);
    clearSelection();
    selectIcon(icon, true);
    history_->created(icon);
    setChanged();
    if (withComment) {
        currentComment = icon.commentIcon();
        startComment();
    } else {
        history_->end();
    }
    gui_->redraw();
}

void GraphEditor::nextInsertion() {
    gui_->redraw();
    if (!insertList.isEmpty()) createIcon("", -1, -1);
}

void GraphEditor::finishPlacing(const FloatPoint&) {
    IconNode& icon = *currentIcon_;
    dropSame(gui_->drawArea().list(), *icon.compositeIcon());
    highlightIcon(icon, false);
    const char* refusal = checkPlace(icon);
    if (!refusal) {
        gui_->setStatus("");
        bool withComment = currentComment != 0;
        popStatus();
        placeNewIcon(icon, withComment);
        nextInsertion();
        return;
    }
    if (!icon.isDeletable()) {
        gui_->showError(refusal);
        gui_->drawArea().list().add(*icon.compositeIcon());
        return;
    }
    if (gui_->askQuestion((String(refusal) + "\n  Select another point ?").asCharPointer())) {
        gui_->drawArea().list().add(*icon.compositeIcon());
        return;
    }
    gui_->setStatus("");
    dropSame(insertList, icon);
    destroyIcon(&icon);
    history_->cancel();
    popStatus();
    nextInsertion();
}

// ---------------------------------------------------------------- comments

void GraphEditor::startComment() {
    QASSERT_TEXT(nil != currentIcon_, "nil != currentIcon");
    QASSERT_TEXT(currentComment == currentIcon_->commentIcon(),
                 "currentComment == currentIcon->commentIcon()");
    currentIcon_->defaultComment();
    if (currentComment->icons().isEmpty()) {
        history_->end();
        return;
    }
    currentComment->y = -100;
    pushStatus(PlacingComment);
    gui_->setStatus("Select the position where insert the label");
    gui_->redraw();
}

void GraphEditor::finishComment(const FloatPoint& point) {
    IconNode& icon = *currentIcon_;
    board_->remove(icon);
    currentComment->x = float(point.x() - icon.posX());
    currentComment->y = float(point.y() - icon.posY());
    board_->add(icon);
    currentComment = 0;
    gui_->setStatus("");
    popStatus();
    setChanged();
    history_->end();
    gui_->redraw();
}

// ---------------------------------------------------------------- parameters

void GraphEditor::modifyCurrent() {
    IconNode& icon = *currentIcon_;
    gui_->setWatchCursor(true);
    if (holdsSame(select_icons, icon))
        gui_->showError("Cannot modify a selected icon");
    else if (!holdsSame(modify_icons, icon)) {
        OrderedCltn touched;
        touched.add(icon);
        EditHistory::Step before = history_->snapshot("Modify", touched);
        if (semantic_->modifyIcon(icon, titleFor("Modify Parameters of ", icon).asCharPointer())) {
            modify_icons.add(icon);
            modifySteps[&icon] = before;
        }
    }
    gui_->setWatchCursor(false);
}

void GraphEditor::paramDone(IconNode* icon, int action) {
    if (readOnly) action = 2;
    if (status_ == IconParameters && icon == currentIcon_)
        iconConfirmed(action);
    else if (status_ == LinkParameters && icon == currentIcon_)
        linkConfirmed(action);
    else
        modifyFinished(*icon, action);
}

void GraphEditor::modifyFinished(IconNode& icon, int action) {
    QASSERT_TEXT(holdsSame(modify_icons, icon), "modify_icons.includes(*icon)");
    dropSame(modify_icons, icon);
    highlightIcon(icon, false);
    if (action == 1 && status_ >= CriticalStatus) action = 0;
    EditHistory::Step before = modifySteps[&icon];
    modifySteps.erase(&icon);
    if (action == 2) {
        gui_->refresh();
        return;
    }
    bool onBoard = board_->isOnBoard(icon);
    if (onBoard) board_->remove(icon);
    icon_cltn->removeKey(icon.name());
    icon.release();
    icon.update();
    semantic_->uniqueName(icon, *icon_cltn);
    icon_cltn->add(icon);
    if (onBoard && board_->add(icon)) changeBoardExtent();
    setChanged();
    history_->record(before, {icon.name().asCharPointer()});
    if (action == 1) {
        currentIcon_ = &icon;
        currentComment = icon.commentIcon();
        startComment();
    }
    gui_->redraw();
}

// ---------------------------------------------------------------- transform

void GraphEditor::offerTransform() {
    OrderedCltn group;
    currentIcon_->companions(group);
    if (!group.isEmpty()) {
        gui_->showError("Cannot transform a multiple icon");
        return;
    }
    OrderedCltn names;
    semantic_->transformNames(*currentIcon_, names);
    if (names.isEmpty()) {
        gui_->showError("This icon cannot be transformed");
        return;
    }
    pushStatus(CriticalStatus);
    gui_->popupTransform(names);
    names.deleteContents();
}

void GraphEditor::transformCurrent(const char* className) {
    QASSERT_TEXT(className && *className, "classChoiced.size()");
    IconNode& old = *currentIcon_;
    IconNode* made = semantic_->transformIcon(&old, className);
    if (!made) return;
    OrderedCltn touched;
    touched.add(old);
    history_->begin("Transform", touched);
    Point position = old.position();
    if (holdsSame(select_icons, old)) selectIcon(old, false);
    removeIcon(old);
    made->setName(old.name().asCharPointer());
    moveLinks(old, *made);
    semantic_->copyIconData(*made, old);
    destroyIcon(&old);
    OrderedCltn labels, values;
    made->getParameters(labels, values);
    made->setParameters(labels, values);
    labels.deleteContents();
    values.deleteContents();
    made->update();
    insertIcon(*made);
    currentIcon_ = made;
    if (!isLink(made)) followMove(*made, position);
    history_->created(*made);
    history_->end();
    setChanged();
    gui_->redraw();
}

void GraphEditor::moveLinks(IconNode& old, IconNode& made) {
    if (isLink(&old)) {
        IconArc& from = *CAST(IconArc, &old);
        IconArc& to = *CAST(IconArc, &made);
        IconNode* start = from.from();
        IconNode* end = from.to();
        start->removeToLink(from);
        end->removeFromLink(from);
        start->addToLink(to);
        end->addFromLink(to);
        to.setFrom(start);
        to.setTo(end);
        OrderedCltn points;
        for (unsigned i = 0; i < from.points()->size(); ++i) points.add(*new FloatPoint(from.point(i)));
        to.setPoints(points);  // adopted by the new link, which has none yet
        return;
    }
    OrderedCltn outgoing, incoming;
    old.toLinks(outgoing);
    old.fromLinks(incoming);
    for (unsigned i = 0; i < outgoing.size(); ++i) {
        IconArc& link = *CAST(IconArc, outgoing.at(i));
        old.removeToLink(link);
        made.addToLink(link);
        link.setFrom(&made);
    }
    for (unsigned i = 0; i < incoming.size(); ++i) {
        IconArc& link = *CAST(IconArc, incoming.at(i));
        old.removeFromLink(link);
        made.addFromLink(link);
        link.setTo(&made);
    }
}

// ---------------------------------------------------------------- resize

void GraphEditor::resize() {
    OrderedCltn targets;
    if (currentIcon_ && !holdsSame(select_icons, *currentIcon_))
        targets.add(*currentIcon_);
    else
        for (unsigned i = 0; i < select_icons.size(); ++i) {
            IconNode& icon = *CAST(IconNode, select_icons.at(i));
            if (icon.canScale() || icon.canScaleFont()) targets.add(icon);
        }
    if (targets.isEmpty()) return;
    double width = 1000, height = 1000, font = 1000.0;
    bool scale = false, scaleFont = false;
    for (unsigned i = 0; i < targets.size(); ++i) {
        IconNode& icon = *CAST(IconNode, targets.at(i));
        width = std::min(width, double(icon.iconWidth()));
        height = std::min(height, double(icon.iconHeight()));
        font = std::min(font, double(icon.iconFontScale()));
        scale = scale || icon.canScale();
        scaleFont = scaleFont || icon.canScaleFont();
    }
    // The dialogue stays open while the drawing changes: it keeps names.
    resizeTargets.deleteContents();
    for (unsigned i = 0; i < targets.size(); ++i)
        resizeTargets.add(*new String(CAST(IconNode, targets.at(i))->name()));
    gui_->openResizeDialog(scale, scale, scaleFont, width, height, font);
}

void GraphEditor::guiResize(Cback&) {
    double dw = 0, dh = 0, dfont = 0;
    gui_->resizeValues(dw, dh, dfont);
    OrderedCltn targets;
    for (unsigned i = 0; i < resizeTargets.size(); ++i) {
        Object* icon = icon_cltn->assocAt(*resizeTargets.at(i));
        if (icon != nil) targets.add(*icon);
    }
    history_->begin("Resize", targets);
    for (unsigned i = 0; i < targets.size(); ++i) {
        IconNode& icon = *CAST(IconNode, targets.at(i));
        Point start = icon.position();
        dropSame(gui_->drawArea().list(), *icon.compositeIcon());
        board_->remove(icon);
        icon.release();
        if (icon.canScale())
            semantic_->resizeIcon(icon, std::max(1.0, icon.iconWidth() + dw),
                                  std::max(1.0, icon.iconHeight() + dh));
        if (icon.canScaleFont()) semantic_->resizeFont(icon, std::max(0.01, icon.iconFontScale() + dfont));
        icon.update();
        if (board_->add(icon)) changeBoardExtent();
        gui_->drawArea().list().add(*icon.compositeIcon());
        followMove(icon, start);
    }
    history_->end();
    setChanged();
    gui_->redraw();
}
