// Small helpers of the graph editor over lists of icons, which it compares by identity.
#ifndef EDITOR_ICONLIST_H
#define EDITOR_ICONLIST_H

#include "quill/orderedc.h"

inline bool holdsSame(const OrderedCltn& icons, const Object& icon) { return icons.indexOfSame(icon) >= 0; }

#endif
