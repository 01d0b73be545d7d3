// The toolkit's cursor names.
#ifndef TRELLIS_CURSOR_H
#define TRELLIS_CURSOR_H

// The Qt::CursorShape of a cursor name: "watch", "hand2", "fleur", the
// corners and sides, "pirate"; any other name is the cross.
int cursorShape(const char* name);

#endif
