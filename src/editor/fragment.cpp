// Fragments of a drawing: storing a set of icons with its outside links as names, and attaching them again.
#include "editor/fragment.h"

#include <sstream>
#include <vector>

#include "editor/iconarc.h"
#include "editor/iconlist.h"
#include "editor/iconnode.h"
#include "quill/arrayob.h"
#include "quill/dictnary.h"
#include "quill/objio.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

namespace {

// A slot of a link array that holds a name for the time of a store.
struct NamedSlot {
    ArrayOb* array;
    int index;
    Object* icon;
};

void nameOutsideSlots(ArrayOb* array, const OrderedCltn& icons, std::vector<NamedSlot>& named) {
    if (!array) return;
    for (int i = 0; i < int(array->size()); ++i) {
        Object* slot = (*array)[i];
        if (slot == nil || !slot->isKindOf(class_IconNode) || holdsSame(icons, *slot)) continue;
        named.push_back({array, i, slot});
        (*array)[i] = new String(static_cast<IconNode*>(slot)->name());
    }
}

}  // namespace

OrderedCltn& withLinks(OrderedCltn& icons) {
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        if (icon.isKindOf(class_IconArc)) continue;
        OrderedCltn links;
        icon.fromLinks(links);
        OrderedCltn outgoing;
        icon.toLinks(outgoing);
        links.addContentsOf(outgoing);
        for (unsigned j = 0; j < links.size(); ++j)
            if (!holdsSame(icons, *links.at(j))) icons.add(*links.at(j));
    }
    return icons;
}

String fragmentText(const OrderedCltn& icons) {
    std::vector<NamedSlot> named;
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        nameOutsideSlots(icon.fromIcons(), icons, named);
        nameOutsideSlots(icon.toIcons(), icons, named);
    }
    std::ostringstream text;
    storeObject(text, icons);
    for (const NamedSlot& slot : named) {
        delete (*slot.array)[slot.index];
        (*slot.array)[slot.index] = slot.icon;
    }
    return String(text.str().c_str());
}

const char* attachByName(IconArc& link, const Dictionary& icons) {
    ArrayOb* ends[2] = {link.fromIcons(), link.toIcons()};
    for (int end = 0; end < 2; ++end) {
        Object* slot = (*ends[end])[0];
        if (slot == nil || !slot->isKindOf(class_String)) continue;
        Object* found = icons.assocAt(*slot);
        if (found == nil || found->isKindOf(class_IconArc))
            return formatText("Link %s: the icon %s is not in the drawing", link.name().asCharPointer(),
                              slot->asCharPointer());
        IconNode& icon = *static_cast<IconNode*>(found);
        delete slot;
        (*ends[end])[0] = &icon;
        if (end == 0)
            icon.addToLink(link);
        else
            icon.addFromLink(link);
    }
    return 0;
}

void restoreComment(IconNode& icon) {
    CompositeIcon& comment = *icon.commentIcon();
    const OrderedCltn& shapes = comment.icons();
    if (shapes.isEmpty()) return;
    for (unsigned i = 0; i < shapes.size(); ++i) {
        Object* shape = shapes.at(i);
        if (!shape->isKindOf(class_DrawString) || static_cast<DrawString*>(shape)->text.size()) return;
    }
    comment.deleteIcons();
    icon.defaultComment();
}

void dropNamedLinks(IconNode& node) {
    for (ArrayOb* array : {node.fromIcons(), node.toIcons()}) {
        if (!array) continue;
        for (int i = 0; i < int(array->size()); ++i) {
            Object*& slot = (*array)[i];
            if (slot != nil && slot->isKindOf(class_String)) {
                delete slot;
                slot = nil;
            }
        }
    }
}
