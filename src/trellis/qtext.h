// Texts between the toolkit's Strings (UTF-8) and Qt's; for the toolkit's own sources.
#ifndef TRELLIS_QTEXT_H
#define TRELLIS_QTEXT_H

#include <QString>

#include "quill/quillstr.h"

inline QString toQt(const char* text) { return QString::fromUtf8(text ? text : ""); }
inline QString toQt(const String& text) { return QString::fromUtf8(text.asCharPointer(), int(text.size())); }
inline String fromQt(const QString& text) { return String(text.toUtf8().constData()); }
// A button's label: "&" marks the mnemonic, but one followed by a blank
// ("Black & White") is the character itself.
inline QString toQtLabel(const char* text) { return toQt(text).replace("& ", "&& "); }

#endif
