// Small helpers of the graph editor over lists of icons, which it compares by identity.
#ifndef EDITOR_ICONLIST_H
#define EDITOR_ICONLIST_H

#include "quill/orderedc.h"

inline bool holdsSame(const OrderedCltn& icons, const Object& icon) { return icons.indexOfSame(icon) >= 0; }

// Takes the icon out of the list when it is there.
inline void dropSame(OrderedCltn& icons, const Object& icon) {
    int i = icons.indexOfSame(icon);
    if (i >= 0) icons.removeAtIndex(i);
}

#endif
