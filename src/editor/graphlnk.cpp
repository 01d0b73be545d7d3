// GraphEditor: drawing a link with the rubber line, routing links, and following the icons they join.
#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/arrayob.h"
#include "quill/dictnary.h"
#include "trellis/drawarea.h"
#include "trellis/drawprim.h"

void GraphEditor::createLink(IconArc& link, IconNode& from, IconNode& to, const FloatPoint& p1,
                             const FloatPoint& p2) {
    OrderedCltn* others = semantic_->placeLink(link, from, to, p1, p2);
    from.addToLink(link);
    to.addFromLink(link);
    link.setFrom(&from);
    link.setTo(&to);
    link.update();
    semantic_->uniqueName(link, *icon_cltn);
    if (!others) return;
    gui_->drawArea().list().add(*link.compositeIcon());
    board_->add(link);
    rerouteLinks(others);
    board_->remove(link);
    dropSame(gui_->drawArea().list(), *link.compositeIcon());
}

void GraphEditor::rerouteLinks(OrderedCltn* others) {
    for (unsigned i = 0; i < others->size(); ++i) {
        IconArc* other = CAST(IconArc, others->at(i));
        if (icon_cltn->assocAt(other->name()) != other) continue;
        updateLink(*other, other->firstPoint(), other->lastPoint(), false);
    }
    delete others;
}

void GraphEditor::updateLink(IconArc& link, const FloatPoint& p1, const FloatPoint& p2, bool redraw,
                             bool highlight, int) {
    DrawArea& area = gui_->drawArea();
    bool lit = highlight || holdsSameLink(link);
    dropSame(area.list(), *link.compositeIcon());
    board_->remove(link);
    recomputeLink(link, p1, p2, redraw);
    board_->add(link);
    area.list().add(*link.compositeIcon());
    highlightIcon(link, lit);
}

bool GraphEditor::holdsSameLink(IconArc& link) const { return select_icons.indexOfSame(link) >= 0; }

void GraphEditor::recomputeLink(IconArc& link, const FloatPoint& p1, const FloatPoint& p2, bool redraw) {
    IconNode* from = link.from();
    IconNode* to = link.to();
    from->removeToLink(link);
    to->removeFromLink(link);
    bool atStart = p1.x() == link.firstPoint().x() && p1.y() == link.firstPoint().y();
    IconNode* replacement = semantic_->relinkTarget(link, atStart ? 0 : 1, *from, *to, p1, p2, 0);
    if (replacement) {
        if (atStart)
            to = replacement;
        else
            from = replacement;
    }
    OrderedCltn* others = semantic_->placeLink(link, *from, *to, p1, p2);
    from->addToLink(link);
    to->addFromLink(link);
    link.setFrom(from);
    link.setTo(to);
    link.release();
    link.update();
    if (others && redraw)
        rerouteLinks(others);
    else
        delete others;
}

// The ends may still be names (a pasted link): only icons are told.
void GraphEditor::detachLink(IconArc& link) {
    Object* from = (*link.fromIcons())[0];
    Object* to = (*link.toIcons())[0];
    if (from != nil && from->isKindOf(class_IconNode)) static_cast<IconNode*>(from)->removeToLink(link);
    if (to != nil && to->isKindOf(class_IconNode)) static_cast<IconNode*>(to)->removeFromLink(link);
}

// ---------------------------------------------------------------- drawing a link

void GraphEditor::startLink() {
    IconArc* link = semantic_->newLink(gui_->currentLink().asCharPointer());
    if (const char* refusal = semantic_->canLinkFrom(*currentIcon_, *link, downPoint)) {
        gui_->showError(refusal);
        semantic_->deleteLink(link);
        return;
    }
    currentLink = link;
    rubberLine = new DrawLine(float(downPoint.x()), float(downPoint.y()), 0, 0, "cyan");
    gui_->drawArea().list().add(*rubberLine);
    pushStatus(DrawingLink);
    gui_->setStatus("Select the icon to connect with the link");
    gui_->redraw();
}

void GraphEditor::finishLink(const FloatPoint& point) {
    dropSame(gui_->drawArea().list(), *rubberLine);
    FloatPoint start(rubberLine->x, rubberLine->y);
    delete rubberLine;
    rubberLine = 0;
    IconNode* from = currentIcon_;
    IconArc* link = currentLink;
    if (!pick(point)) {
        if (gui_->askQuestion("no icon presents at that point\n\n  Continue ?")) {
            rubberLine = new DrawLine(float(start.x()), float(start.y()), 0, 0, "cyan");
            gui_->drawArea().list().add(*rubberLine);
            currentIcon_ = from;
            return;
        }
        abandonLink();
        return;
    }
    IconNode* to = currentIcon_;
    const char* refusal = semantic_->canLinkTo(*to, *link, point);
    if (!refusal) refusal = semantic_->checkNewLink(*from, *to, *link, start, point);
    if (refusal) {
        gui_->showError(refusal);
        abandonLink();
        return;
    }
    history_->begin("Link");
    createLink(*link, *from, *to, start, point);
    insertIcon(*link);
    history_->created(*link);
    currentIcon_ = link;
    currentLink = 0;
    gui_->setStatus("");
    status_ = LinkParameters;
    String title("Insert Parameters of ");
    String description;
    title += link->iconDescription(description);
    if (!semantic_->modifyIcon(*link, title.asCharPointer())) linkConfirmed(0);
    gui_->redraw();
}

void GraphEditor::abandonLink() {
    semantic_->deleteLink(currentLink);
    currentLink = 0;
    gui_->setStatus("");
    popStatus();
    gui_->redraw();
}

void GraphEditor::linkConfirmed(int action) {
    IconArc& link = *CAST(IconArc, currentIcon_);
    popStatus();
    if (action == 2) {
        history_->cancel();
        removeIcon(link);
        detachLink(link);
        destroyIcon(&link);
        gui_->redraw();
        return;
    }
    setChanged();
    if (action != 1) {
        history_->end();
        return;
    }
    currentComment = link.commentIcon();
    startComment();
}
