// The document elements of icon fields: their values under their labels, and comment texts.
#ifndef EDITOR_DOCFIELD_H
#define EDITOR_DOCFIELD_H

#include "docgen/section.h"
#include "editor/iconfld.h"
#include "quill/orderedc.h"

// The field's value under its document label; null without a label.
DocElement* docElement(const IconField& field);
// The text of a "_COMMENT" companion under label; null when it has none.
DocElement* commentElement(const IconField& field, const char* label);
// The field's text read in format, "ASCII" or "Latex", as a section titled
// title; null for no text, or for a LaTeX text that cannot be read.
Section* textElement(const IconField& field, const char* format, const char* title);
// The text of a String or Symbol value; empty for any other.
std::string textOf(const Object* value);
// The field of category in a list of fields, or null.
const IconField* fieldIn(const OrderedCltn& fields, const std::string& category);
// The text of the field of category in fields; empty when there is none.
std::string fieldText(const OrderedCltn& fields, const std::string& category);

#endif
