// GraphEditor: the pointer's events, picking, dragging, area selection and the selection's closure.
#include <cmath>

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
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/drawprim.h"

namespace {

const int DRAG_DELAY = 300;  // milliseconds from a press to a drag

FloatPoint pointOf(Cback& cb) { return *CAST(FloatPoint, cb.callData->asObject()); }

bool isLink(const Object* icon) { return icon && icon->isKindOf(class_IconArc); }

double distance(const FloatPoint& a, const FloatPoint& b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

}  // namespace

// ---------------------------------------------------------------- picking

bool GraphEditor::pickLink(int x, int y) {
    if (x < 0 || y < 0) return false;
    IconNode* hit = board_->iconAt(x, y);
    if (!hit || hit == nil || !isLink(hit)) return false;
    currentIcon_ = hit;
    return true;
}

bool GraphEditor::pick(const FloatPoint& point) {
    static const int around[8][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}};
    int x = int(point.x()), y = int(point.y());
    IconNode* hit = x >= 0 && y >= 0 ? board_->iconAt(x, y) : 0;
    if (hit && hit != nil) {
        currentIcon_ = hit;
    } else {
        bool found = false;
        for (const auto& step : around)
            if ((found = pickLink(x + step[0], y + step[1]))) break;
        if (!found) return false;
    }
    lastPoint = point;
    gui_->redraw();
    return true;
}

// ---------------------------------------------------------------- press

void GraphEditor::downGraphic(Cback& cb) {
    FloatPoint point = pointOf(cb);
    const PointerState& pointer = gui_->drawArea().pointer();
    if (readOnly) {
        readOnlyDown(point, pointer.button);
        return;
    }
    if (pointer.button != 1) {
        otherButtonDown(point);
        return;
    }
    switch (status_) {
        case PlacingIcon:
        case PlacingFirst:
            moveGhost(*currentIcon_, point);
            finishPlacing(point);
            return;
        case DrawingLink:
            finishLink(point);
            return;
        case PlacingComment:
            finishComment(point);
            return;
        default:
            if (status_ < CriticalStatus) buttonOneDown(point, pointer.modifiers);
    }
}

void GraphEditor::readOnlyDown(const FloatPoint& point, int button) {
    if (status_ >= CriticalStatus || !pick(point)) return;
    downPoint = point;
    if (button == 1)
        semanticCall(&Semantic::openIcon, *currentIcon_);
    else if (button == 2)
        semanticCall(&Semantic::commentIcon, *currentIcon_);
    else
        modifyCurrent();
}

void GraphEditor::buttonOneDown(const FloatPoint& point, unsigned modifiers) {
    bool control = modifiers & PointerState::CONTROL_MASK;
    if (!pick(point)) {
        currentIcon_ = 0;
        if (!control) clearSelection();
        downPoint = point;
        pushStatus(SelectingArea);
        drawSelectionArea(point);
        return;
    }
    if (control)
        toggleSelect(*currentIcon_);
    else if (!holdsSame(select_icons, *currentIcon_)) {
        clearSelection();
        selectIcon(*currentIcon_, true);
    }
    downPoint = point;
    dragEnabled = false;
    addXTimeOut(DRAG_DELAY, *this);
}

void GraphEditor::timeOut(Cback&) {
    if (status_ < CriticalStatus && currentIcon_ && !dragEnabled) dragEnabled = true;
}

void GraphEditor::otherButtonDown(const FloatPoint& point) {
    if (status_ == DrawingLink) {
        finishLink(point);
        return;
    }
    if (status_ >= CriticalStatus) return;
    if (!pick(point)) {
        currentIcon_ = 0;
        pushStatus(CriticalStatus);
        gui_->popupCanvas();
        return;
    }
    downPoint = point;
    IconNode& icon = *currentIcon_;
    OrderedCltn links, transforms;
    if (!isLink(&icon)) semantic_->linksFromIcon(icon, links);
    semantic_->transformNames(icon, transforms);
    pushStatus(CriticalStatus);
    String description;
    icon.iconDescription(description);
    bool deletable = icon.isDeletable();
    gui_->popupIcon(description.asCharPointer(), links, transforms,
                    !holdsSame(modify_icons, icon) && deletable, deletable,
                    icon.canScale() || icon.canScaleFont());
    links.deleteContents();
    transforms.deleteContents();
}

// ---------------------------------------------------------------- drag

void GraphEditor::moveGraphic(Cback& cb) {
    FloatPoint point = pointOf(cb);
    if (status_ == PlacingFirst) status_ = PlacingIcon;
    if (status_ == PlacingIcon)
        moveGhost(*currentIcon_, point);
    else if (status_ == DrawingLink && rubberLine) {
        rubberLine->width = float(point.x() - rubberLine->x);
        rubberLine->height = float(point.y() - rubberLine->y);
        gui_->redraw();
    } else if (status_ == PlacingComment && currentComment) {
        currentComment->x = float(point.x() - currentIcon_->posX());
        currentComment->y = float(point.y() - currentIcon_->posY());
        gui_->redraw();
    }
}

void GraphEditor::moveDownGraphic(Cback& cb) {
    if (gui_->drawArea().pointer().button != 1) return;
    FloatPoint point = pointOf(cb);
    if (status_ < CriticalStatus && dragEnabled && currentIcon_ && distance(point, downPoint) >= 0.5)
        startDrag(point, gui_->drawArea().pointer().modifiers);
    dragTo(point);
}

void GraphEditor::startDrag(const FloatPoint&, unsigned modifiers) {
    if (modifiers & PointerState::CONTROL_MASK) {
        currentIcon_ = 0;
        pushStatus(SelectingArea);
        return;
    }
    IconNode& icon = *currentIcon_;
    OrderedCltn touched;
    if (isLink(&icon)) {
        touched.add(icon);
        history_->begin("Move", touched);
        pushStatus(MovingOneIcon);
        return;
    }
    bool alone = !holdsSame(select_icons, icon) || select_icons.size() == 1;
    if (alone) {
        if (!icon.isMovable()) return;
        touched.add(icon);
        history_->begin("Move", touched);
        Point position = icon.position();
        dragStart = position;
        lastPoint = FloatPoint(downPoint.x() - position.x(), downPoint.y() - position.y());
        board_->remove(icon);
        semantic_->moveStarted(icon);
        pushStatus(MovingOneIcon);
        return;
    }
    // Pinned nodes leave the selection; the others move, each with its
    // offset from the grab point and its start.
    OrderedCltn nodes, pinned;
    for (unsigned i = 0; i < select_icons.size(); ++i) {
        IconNode* member = CAST(IconNode, select_icons.at(i));
        if (!isLink(member)) (member->isMovable() ? nodes : pinned).add(*member);
    }
    for (unsigned i = 0; i < pinned.size(); ++i) selectIcon(*CAST(IconNode, pinned.at(i)), false);
    history_->begin("Move", nodes);
    for (unsigned i = 0; i < nodes.size(); ++i) {
        IconNode* member = CAST(IconNode, nodes.at(i));
        Point position = member->position();
        moving_icons.add(
            *new Assoc(*member, *new FloatPoint(downPoint.x() - position.x(), downPoint.y() - position.y())));
        board_->remove(*member);
        semantic_->moveStarted(*member);
    }
    pushStatus(MovingManyIcons);
}

void GraphEditor::dragTo(const FloatPoint& point) {
    switch (status_) {
        case MovingOneIcon:
            if (isLink(currentIcon_))
                dragLinkEnd(point);
            else
                moveGhost(*currentIcon_, point - lastPoint);
            break;
        case MovingManyIcons:
            for (unsigned i = 0; i < moving_icons.size(); ++i) {
                Assoc* moving = CAST(Assoc, moving_icons.at(i));
                moveGhost(*CAST(IconNode, moving->key()), point - *CAST(FloatPoint, moving->value()));
            }
            break;
        case SelectingArea:
            drawSelectionArea(point);
            break;
        default:
            return;
    }
    gui_->ensureVisible(point);
}

void GraphEditor::moveGhost(IconNode& icon, const FloatPoint& point) {
    FloatPoint place = point;
    if (!semantic_->snapPosition(icon, place)) return;
    Point target(int(place.x()), int(place.y()));
    Point old = icon.position();
    if (target.x() == old.x() && target.y() == old.y()) return;
    icon.setPosition(target);
    highlightIcon(icon, true);
    semantic_->iconDragged(icon, place);
    gui_->redraw();
}

void GraphEditor::dragLinkEnd(const FloatPoint& point) {
    IconArc& link = *CAST(IconArc, currentIcon_);
    OrderedCltn points;
    for (unsigned i = 0; i < link.points()->size(); ++i) points.add(*new FloatPoint(link.point(i)));
    bool first = distance(link.firstPoint(), downPoint) < distance(link.lastPoint(), downPoint);
    *CAST(FloatPoint, first ? points.first() : points.last()) = point;
    board_->remove(link);
    link.setPoints(points);
    points.deleteContents();
    link.release();
    link.update();
    board_->add(link);
    gui_->redraw();
}

// ---------------------------------------------------------------- release

void GraphEditor::upGraphic(Cback& cb) {
    if (gui_->drawArea().pointer().button != 1) return;
    FloatPoint point = pointOf(cb);
    switch (status_) {
        case MovingOneIcon:
            finishOneMove(point);
            break;
        case MovingManyIcons:
            finishManyMove(point);
            break;
        case SelectingArea:
            finishAreaSelection();
            break;
        default:
            return;
    }
    gui_->redraw();
}

void GraphEditor::finishOneMove(const FloatPoint& point) {
    IconNode& icon = *currentIcon_;
    if (isLink(&icon)) {
        dragLinkEnd(point);
        IconArc& link = *CAST(IconArc, &icon);
        updateLink(link, link.firstPoint(), link.lastPoint(), true, true);
    } else {
        Point start = dragStart;
        moveGhost(icon, point - lastPoint);
        board_->add(icon);
        semantic_->moveEnded(icon);
        highlightIcon(icon, holdsSame(select_icons, icon));
        followMove(icon, start);
    }
    setChanged();
    popStatus();
    history_->end();
}

void GraphEditor::finishManyMove(const FloatPoint& point) {
    Deltas deltas;
    OrderedCltn moved;
    while (!moving_icons.isEmpty()) {
        Assoc* moving = CAST(Assoc, moving_icons.removeFirst());
        IconNode& icon = *CAST(IconNode, moving->key());
        FloatPoint* offset = CAST(FloatPoint, moving->value());
        Point start = icon.position();
        moveGhost(icon, point - *offset);
        Point now = icon.position();
        deltas[&icon] = FloatPoint(now.x() - start.x(), now.y() - start.y());
        moved.add(icon);
        delete offset;
        delete moving;
    }
    for (unsigned i = 0; i < moved.size(); ++i) {
        IconNode& icon = *CAST(IconNode, moved.at(i));
        board_->add(icon);
        semantic_->moveEnded(icon);
    }
    for (unsigned i = 0; i < moved.size(); ++i) followLinks(*CAST(IconNode, moved.at(i)), deltas);
    setChanged();
    popStatus();
    history_->end();
}

void GraphEditor::followMove(IconNode& icon, const Point& start) {
    Point now = icon.position();
    followLinks(icon, {{&icon, FloatPoint(now.x() - start.x(), now.y() - start.y())}});
}

// The ends of the icon's links move with the icons they join: the start by
// this icon's delta, the far end by its own icon's delta when that moved too.
// An incoming link from a moved icon is that icon's to follow.
void GraphEditor::followLinks(IconNode& icon, const Deltas& deltas) {
    auto deltaOf = [&](const IconNode* node) {
        auto found = deltas.find(node);
        return found == deltas.end() ? FloatPoint(0, 0) : found->second;
    };
    FloatPoint delta = deltaOf(&icon);
    OrderedCltn outgoing, incoming;
    icon.toLinks(outgoing);
    icon.fromLinks(incoming);
    for (unsigned i = 0; i < outgoing.size(); ++i) {
        IconArc& link = *CAST(IconArc, outgoing.at(i));
        updateLink(link, link.firstPoint() + delta, link.lastPoint() + deltaOf(link.to()), true);
    }
    for (unsigned i = 0; i < incoming.size(); ++i) {
        IconArc& link = *CAST(IconArc, incoming.at(i));
        if (deltas.count(link.from())) continue;
        updateLink(link, link.firstPoint(), link.lastPoint() + delta, true);
    }
}

// ---------------------------------------------------------------- selection

void GraphEditor::drawSelectionArea(const FloatPoint& point) {
    if (!selectionArea) {
        selectionArea = new DrawRect(float(downPoint.x()), float(downPoint.y()), 0, 0, "cyan");
        gui_->drawArea().list().add(*selectionArea);
    }
    selectionArea->width = float(point.x() - downPoint.x());
    selectionArea->height = float(point.y() - downPoint.y());
    gui_->redraw();
}

void GraphEditor::finishAreaSelection() {
    popStatus();
    if (!selectionArea) return;
    FloatRect area = selectionArea->getBoundingBox();
    dropSame(gui_->drawArea().list(), *selectionArea);
    delete selectionArea;
    selectionArea = 0;
    double left = area.x(), top = area.y(), right = left + area.width(), bottom = top + area.height();
    OrderedCltn icons;
    icons.addContentsOf(*icon_cltn);
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        if (holdsSame(select_icons, icon) || holdsSame(modify_icons, icon)) continue;
        OrderedCltn& cells = *icon.geoIcon();
        Point origin = isLink(&icon) ? Point(0, 0) : icon.position();
        for (unsigned c = 0; c < cells.size(); ++c) {
            Point cell = *CAST(Point, cells.at(c));
            double x = cell.x() + origin.x(), y = cell.y() + origin.y();
            if (x + 1 >= left && x <= right && y + 1 >= top && y <= bottom) {
                selectIcon(icon, true);
                break;
            }
        }
    }
}

void GraphEditor::toggleSelect(IconNode& icon) { selectIcon(icon, !holdsSame(select_icons, icon)); }

void GraphEditor::selectIcon(IconNode& icon, bool add) {
    if (!add && !isLink(&icon)) {
        for (unsigned i = 0; i < select_icons.size(); ++i) {
            IconNode& other = *CAST(IconNode, select_icons.at(i));
            if (&other == &icon) continue;
            OrderedCltn group;
            other.companions(group);
            if (holdsSame(group, icon)) {
                selectIcon(other, false);
                return;
            }
        }
    }
    OrderedCltn work;
    work.add(icon);
    while (!work.isEmpty()) {
        IconNode& next = *CAST(IconNode, work.removeLast());
        if (add == holdsSame(select_icons, next)) continue;
        if (add)
            select_icons.add(next);
        else
            dropSame(select_icons, next);
        highlightIcon(next, add);
        if (isLink(&next)) continue;
        if (add ? select_icons.size() > 1 : !select_icons.isEmpty()) {
            OrderedCltn links;
            next.fromLinks(links);
            OrderedCltn outgoing;
            next.toLinks(outgoing);
            links.addContentsOf(outgoing);
            for (unsigned i = 0; i < links.size(); ++i) {
                IconArc& link = *CAST(IconArc, links.at(i));
                IconNode* far = link.from() == &next ? link.to() : link.from();
                bool linkSelected = holdsSame(select_icons, link);
                if (add && !linkSelected && far && holdsSame(select_icons, *far)) {
                    select_icons.add(link);
                    highlightIcon(link, true);
                } else if (!add && linkSelected) {
                    dropSame(select_icons, link);
                    highlightIcon(link, false);
                }
            }
        }
        OrderedCltn group;
        next.companions(group);
        work.addContentsOf(group);
    }
    updateEditMenu(add ? 2 : 1);
    gui_->redraw();
}

void GraphEditor::clearSelection() {
    while (!select_icons.isEmpty()) {
        IconNode& icon = *CAST(IconNode, select_icons.removeLast());
        highlightIcon(icon, false);
    }
    updateEditMenu(1);
}

void GraphEditor::selectAll() {
    OrderedCltn icons;
    icons.addContentsOf(*icon_cltn);
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        if (holdsSame(modify_icons, icon) || holdsSame(select_icons, icon)) continue;
        select_icons.add(icon);
        highlightIcon(icon, true);
    }
    updateEditMenu(2);
}

void GraphEditor::updateEditMenu(int mode) {
    if (readOnly) return;
    bool resizable = false;
    for (unsigned i = 0; i < select_icons.size() && !resizable; ++i) {
        IconNode& icon = *CAST(IconNode, select_icons.at(i));
        resizable = icon.canScale() || icon.canScaleFont();
    }
    bool any = !select_icons.isEmpty();
    if (mode != 2 || any) {
        gui_->setMenuEntry("Resize Icon...", resizable);
        gui_->setMenuEntry("Cut", any);
        gui_->setMenuEntry("Copy", any);
    }
}
