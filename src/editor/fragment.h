// Fragments of a drawing: a set of icons stored as text, links to icons outside the set held by name.
#ifndef EDITOR_FRAGMENT_H
#define EDITOR_FRAGMENT_H

#include "quill/orderedc.h"
#include "quill/quillstr.h"

class Dictionary;
class IconArc;
class IconNode;

// The icons, each node with its links: what a cut, a copy or an undo step takes with it.
OrderedCltn& withLinks(OrderedCltn& icons);

// The text of the icons' object stream. Every link slot of a member that
// points outside the set holds the name of the icon it points to while the
// set is stored, and the icon again after.
String fragmentText(const OrderedCltn& icons);

// Replaces, in a fragment read back, each end of a link that is a name by
// the icon of that name in icons; answers the message of an end that can't
// be found, or null. Found ends get the link in their lists.
const char* attachByName(IconArc& link, const Dictionary& icons);

// Clears the name slots that a node of a fragment holds for links outside it.
void dropNamedLinks(IconNode& node);

// A comment read back holds an empty text where the comment was placed: its
// picture is drawn again there. An icon whose comment was never placed keeps none.
void restoreComment(IconNode& icon);

#endif
