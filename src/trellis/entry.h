// The grammar of a menu entry: "label | accelerator", with its translation and its Qt key sequence.
#ifndef TRELLIS_ENTRY_H
#define TRELLIS_ENTRY_H

#include "quill/quillstr.h"

// The label, up to the bar, "&" kept, blanks around it taken away.
String entryLabel(const char* entry);
// What callers name an entry by: the label without "&".
String entryIdentity(const char* entry);
// The text behind the bar, the key alone in the column form "13%F9".
String entryAccelerator(const char* entry);
// The accelerator as a translation: "Alt+S" is "Meta<Key>S", "Shift+Ctrl+F9"
// is "Shift Ctrl<Key>F9": ALT and META become "Meta", CTRL "Ctrl", SHIFT
// "Shift", in any case and order. Empty without an accelerator.
String acceleratorTranslation(const char* accelerator);
// The portable text of the Qt key sequence of a translation ("Meta" is the
// Alt key): "Ctrl<Key>T" gives "Ctrl+T".
String translationKeys(const char* translation);

#endif
