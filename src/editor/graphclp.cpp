// GraphEditor: cut, copy and paste through the system clipboard, and the fragments that undo puts back.
#include <cstring>
#include <iostream>

#include "editor/chessbrd.h"
#include "editor/edthist.h"
#include "editor/fragment.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "editor/semantic.h"
#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "trellis/clipbrd.h"
#include "trellis/drawarea.h"
#include "trellis/drawicon.h"

namespace {

const size_t CLIPBOARD_LIMIT = 64000;  // bytes of the text form on the clipboard

bool isLink(const Object* icon) { return icon->isKindOf(class_IconArc); }

// The link's slot for that end: the end icon's name from now on.
void nameEnd(ArrayOb& ends, IconNode& icon) { ends[0] = new String(icon.name()); }

}  // namespace

// The icons of a cut that did not reach the clipboard: the names they hold
// for outside ends go first, while every member is still there.
void GraphEditor::discardCut() {
    for (unsigned i = 0; i < cut_icons.size(); ++i) dropNamedLinks(*CAST(IconNode, cut_icons.at(i)));
    while (!cut_icons.isEmpty()) destroyIcon(CAST(IconNode, cut_icons.removeLast()));
}

// The icon with its companions, or the selection.
OrderedCltn& GraphEditor::closure(OrderedCltn& icons) {
    if (icons.isEmpty()) icons.addContentsOf(select_icons);
    OrderedCltn group;
    for (unsigned i = 0; i < icons.size(); ++i) {
        group.removeAll();
        CAST(IconNode, icons.at(i))->companions(group);
        for (unsigned j = 0; j < group.size(); ++j)
            if (!holdsSame(icons, *group.at(j))) icons.add(*group.at(j));
    }
    // Only what may be deleted goes, companions of a member always.
    OrderedCltn companions;
    for (unsigned i = 0; i < icons.size(); ++i) CAST(IconNode, icons.at(i))->companions(companions);
    for (int i = icons.size() - 1; i >= 0; --i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        if (icon.isDeletable() || holdsSame(companions, icon)) continue;
        icons.removeAtIndex(i);
    }
    return icons;
}

void GraphEditor::cut(IconNode* icon) {
    QASSERT_TEXT(icon != nil || !select_icons.isEmpty(), "iconToCut != nil || !select_icons.isEmpty()");
    discardCut();
    OrderedCltn members;
    if (icon) members.add(*icon);
    closure(members);
    if (members.isEmpty()) return;
    history_->begin("Cut", members);
    detachOutsideLinks(members);
    // What goes leaves the selection; what may not be deleted stays selected.
    for (unsigned i = 0; i < members.size(); ++i) dropSame(select_icons, *members.at(i));
    for (unsigned i = 0; i < members.size(); ++i) removeIcon(*CAST(IconNode, members.at(i)));
    cut_icons.addContentsOf(members);
    setChanged();
    if (writeToClipboard(cut_icons))
        discardCut();
    history_->end();
    updateEditMenu(1);
    gui_->redraw();
}

// The links of the members to icons outside go with them; their outside
// ends become names.
void GraphEditor::detachOutsideLinks(OrderedCltn& members) {
    withLinks(members);
    for (unsigned i = 0; i < members.size(); ++i) {
        if (!isLink(members.at(i))) continue;
        IconArc& link = *CAST(IconArc, members.at(i));
        IconNode* ends[2] = {link.from(), link.to()};
        for (int end = 0; end < 2; ++end) {
            IconNode* far = ends[end];
            if (!far || far == nil || holdsSame(members, *far)) continue;
            if (end == 0)
                far->removeToLink(link);
            else
                far->removeFromLink(link);
            nameEnd(end == 0 ? *link.fromIcons() : *link.toIcons(), *far);
        }
    }
}

void GraphEditor::copy(IconNode* icon) {
    QASSERT_TEXT(icon != nil || !select_icons.isEmpty(), "iconToCopy != nil || !select_icons.isEmpty()");
    OrderedCltn members;
    if (icon) members.add(*icon);
    closure(members);
    if (!members.isEmpty()) writeToClipboard(members);
}

bool GraphEditor::writeToClipboard(const OrderedCltn& icons) {
    String text = fragmentText(icons);
    if (text.size() > CLIPBOARD_LIMIT) {
        std::cerr << "Object too big" << std::endl;
        return false;
    }
    return setClipboardText(text.asCharPointer());
}

OrderedCltn* GraphEditor::readFromClipboard() {
    String text = clipboardText();
    if (text.size() == 0) return 0;
    String error;
    Object* read = readFromString(error, text.asCharPointer());
    if (!read) {
        std::cerr << "readFromClipboard: " << error << std::endl;
        return 0;
    }
    if (!read->isKindOf(class_OrderedCltn)) {
        std::cerr << "Bad object pasted " << *read << std::endl;
        read->deepDeleteContents();
        delete read;
        return 0;
    }
    return CAST(OrderedCltn, read);
}

void GraphEditor::paste() {
    clearSelection();
    bool fromClipboard = cut_icons.isEmpty();
    OrderedCltn* members = fromClipboard ? readFromClipboard() : new OrderedCltn;
    if (!fromClipboard) {
        members->addContentsOf(cut_icons);
        cut_icons.removeAll();
    }
    if (!members || members->isEmpty() || !semantic_->canPaste(*members)) {
        gui_->showError("No icons to paste");
        if (members) {
            members->deepDeleteContents();
            delete members;
        }
        return;
    }
    history_->begin("Paste");
    insertPasted(*members, fromClipboard);
    history_->end();
    delete members;
    updateEditMenu(2);
    gui_->redraw();
}

void GraphEditor::insertPasted(OrderedCltn& members, bool fromClipboard) {
    OrderedCltn rejects;
    for (unsigned i = 0; i < members.size(); ++i) {
        IconNode& node = *CAST(IconNode, members.at(i));
        if (isLink(&node)) continue;
        semantic_->needsPlacing(node);
        const char* refusal = checkPlace(node);
        if (!refusal || node.isMovable()) {
            dropNamedLinks(node);
            continue;
        }
        gui_->showError((String("Cannot paste, ") + refusal).asCharPointer());
        rejects.add(node);
    }
    for (unsigned i = 0; i < members.size(); ++i)
        if (isLink(members.at(i)) && !holdsSame(rejects, *members.at(i)))
            attachPastedLink(*CAST(IconArc, members.at(i)), rejects);
    for (unsigned i = 0; i < rejects.size(); ++i) dropSame(members, *rejects.at(i));
    for (unsigned i = 0; i < members.size(); ++i) {
        IconNode& icon = *CAST(IconNode, members.at(i));
        if (fromClipboard) {
            QASSERT_TEXT(icon.geoIcon()->isEmpty(), "icon->geoIcon()->isEmpty()");
            QASSERT_TEXT(icon.compositeIcon()->icons().isEmpty(),
                         "icon->compositeIcon()->icons()->isEmpty()");
            icon.update();
            restoreComment(icon);
        }
        FloatPoint place(icon.posX(), icon.posY());
        if (!isLink(&icon) && semantic_->snapPosition(icon, place))
            icon.setPosition(Point(int(place.x()), int(place.y())));
        semantic_->uniqueName(icon, *icon_cltn);
        insertIcon(icon);
        select_icons.add(icon);
        highlightIcon(icon, true);
        history_->created(icon);
    }
    for (unsigned i = 0; i < members.size(); ++i)
        if (isLink(members.at(i))) {
            IconArc& link = *CAST(IconArc, members.at(i));
            updateLink(link, link.firstPoint(), link.lastPoint(), true, true);
        }
    // Names go while every reject is there; then links, since detaching one
    // touches the nodes it joins.
    for (unsigned i = 0; i < rejects.size(); ++i) dropNamedLinks(*CAST(IconNode, rejects.at(i)));
    OrderedCltn nodes;
    while (!rejects.isEmpty()) {
        IconNode* icon = CAST(IconNode, rejects.removeFirst());
        if (!isLink(icon)) {
            nodes.add(*icon);
            continue;
        }
        detachLink(*CAST(IconArc, icon));
        destroyIcon(icon);
    }
    while (!nodes.isEmpty()) {
        IconNode* node = CAST(IconNode, nodes.removeFirst());
        if (fromClipboard)
            semantic_->deleteIcon(node);
        else
            destroyIcon(node);
    }
}

// Ends that are names find their icons; a link with an end it can't reach is rejected.
bool GraphEditor::attachPastedLink(IconArc& link, OrderedCltn& rejects) {
    ArrayOb* ends[2] = {link.fromIcons(), link.toIcons()};
    bool named = false;
    for (ArrayOb* end : ends) {
        Object* slot = (*end)[0];
        if (slot != nil && slot->isKindOf(class_String)) named = true;
        if (slot != nil && slot->isKindOf(class_IconNode) && holdsSame(rejects, *slot)) {
            rejects.add(link);
            return false;
        }
    }
    const char* refusal = attachByName(link, *icon_cltn);
    if (!refusal && named) {
        IconNode& from = *link.from();
        IconNode& to = *link.to();
        refusal = semantic_->canLinkFrom(from, link, link.firstPoint());
        if (!refusal) refusal = semantic_->canLinkTo(to, link, link.lastPoint());
        if (!refusal) refusal = semantic_->checkNewLink(from, to, link, link.firstPoint(), link.lastPoint());
    }
    if (!refusal) return true;
    std::cerr << refusal << std::endl;
    detachLink(link);
    rejects.add(link);
    return false;
}

// A fragment that undo or redo puts back: same names, same places.
void GraphEditor::restoreFragment(const char* text) {
    String error;
    Object* read = readFromString(error, text);
    if (!read || !read->isKindOf(class_OrderedCltn)) {
        std::cerr << "restoreFragment: " << error << std::endl;
        delete read;
        return;
    }
    OrderedCltn& members = *CAST(OrderedCltn, read);
    for (int pass = 0; pass < 2; ++pass)
        for (unsigned i = 0; i < members.size(); ++i) {
            IconNode& icon = *CAST(IconNode, members.at(i));
            if (isLink(&icon) != (pass == 1)) continue;
            if (pass == 1) attachByName(*CAST(IconArc, &icon), *icon_cltn);
            icon.update();
            restoreComment(icon);
            insertIcon(icon);
        }
    delete read;
    gui_->redraw();
}
