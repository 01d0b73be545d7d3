// The system clipboard's text.
#ifndef TRELLIS_CLIPBRD_H
#define TRELLIS_CLIPBRD_H

#include "quill/quillstr.h"

// Puts the text on the clipboard; false when there is no clipboard.
bool setClipboardText(const char* text);
// The clipboard's text, empty when it holds none.
String clipboardText();

#endif
