// The categories of icon fields: one function each, answering its own static text.
#ifndef EDITOR_ICONCAT_H
#define EDITOR_ICONCAT_H

// A category is named by its function; fields keep the text it answers, and
// two categories are the same when their texts compare equal by strcmp.
typedef const char* (*IconCategory)();

namespace iconcat {
const char* COMMENT();            // dynamic: the icon's comment
const char* FROMLINKS();          // dynamic: the links that start at the icon
const char* TOLINKS();            // dynamic: the links that end at the icon
const char* CLASSNAME();          // the item class's name, for links
const char* CLASS();              // a Symbol: the item's kind, the key of its section
const char* TITLE();              // the section's title, the item's key when present
const char* ID();                 // the key when there is no TITLE
const char* SECTION();            // the outer section's name
const char* SUBSECTION();         // the inner section's name
const char* SECTIONS();           // a ready section for the item
const char* FORMAT();             // "ASCII" or "Latex": how texts are parsed
const char* IS_TITLE();           // the item is the document's title
const char* ALLOW_EMPTY();        // an empty section is kept
const char* FILE();               // the file to link to
const char* HAS_LABELS();         // the link shows labels
const char* MULTIPLICITY();       // a link's multiplicity text
const char* FROMCOMMENT();        // dynamic: a link seen from its source
const char* TOCOMMENT();          // dynamic: a link seen from its target
const char* SECONDARY_ID();       // merged items stay separate entries
const char* NO_COMMENT_PROLOG();  // no heading before the comment
}  // namespace iconcat

#endif
