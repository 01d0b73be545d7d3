// Language, a table of translated texts read from ".lng" files, and the current language.
#ifndef QUILL_LANGUAGE_H
#define QUILL_LANGUAGE_H

#include <iosfwd>

#include "quill/dictnary.h"
#include "quill/quillstr.h"
#include "quill/symbol.h"

extern Class class_Language;

// The states of a table, by name: "notInit" until it has been filled once,
// then the language its texts are in.
extern Symbol languageNotInit;
extern Symbol languageItalian;
extern Symbol languageEnglish;
// Raised on a Language when flush has emptied it.
extern Symbol Flushed;

// Keys are the program's own English texts, so a key without an entry reads
// as itself. A file "<base><language>.lng" holds one entry a line:
//
//   # a comment; empty lines are skipped too
//   key = text
//   "  a key with blanks" = "a text with blanks  "
//
// The key ends at the first "=", the text at the line's end; blanks around
// both are dropped unless the side is quoted. Inside either side \n, \t, \"
// and \\ stand for a newline, a tab, a quote and a backslash.
class Language : public Object {
    DECLARE_MEMBERS(Language)
public:
    enum State { NOT_INIT, ITALIAN, ENGLISH };

    // A table for the language in force (currentLanguageName(1)).
    Language();
    // A table for the language named; the name is kept in lower case.
    explicit Language(const char* name);
    ~Language() noexcept(false) override;

    // Reads the file of baseName for this language, found by findFile.
    // Answers the number of entries added: 0 when no file is found. Bad
    // lines are reported and skipped.
    int load(const char* baseName);
    // Adds each text as its own entry; texts already present are left as
    // they are. Answers the number added.
    int loadDefaults(const char* const* texts);
    // Adds a pair; an empty key, an empty value or a key present is reported
    // and nothing is added. Answers whether the pair was added.
    bool addKey(const char* key, const char* value);
    // The text of key, or key itself when the table has no entry for it.
    const char* text(const char* key) const;
    bool hasKey(const char* key) const;
    // Empties the table, its state back to notInit, and raises Flushed on it.
    void flush();

    const Symbol& name() const { return name_; }
    State state() const { return state_; }
    const Symbol& stateName() const;
    // The file name for baseName: the base, then the language, ".lng".
    String fileName(const char* baseName) const;

    unsigned size() const override { return table.size(); }
    void printOn(std::ostream& os) const override;  // Language(english: 12 texts)

    // The first readable of: fileName as it stands, in $TARN_LANG_PATH, in
    // $TARN_PATH/bin, beside the program. Empty when none is.
    static String findFile(const char* fileName);
    // The directory of the executable, tried last by findFile.
    static void setProgramDirectory(const char* directory);

    // The table the program's texts come from, or null before one is set.
    static Language* current();
    // Makes language the current one, once: a second setting is an
    // assertion failure until clearCurrent.
    static void setCurrent(Language* language);
    // Deletes the current table, if any.
    static void clearCurrent();

private:
    Language(const Language&);  // a table is never copied
    Language& operator=(const Language&);

    // Adds the pair, or answers why not: the fault's text for a file
    // (fileName set) or for addKey.
    bool addPair(const String& key, const String& value, const char* fileName, int line);
    void updateState();

    Dictionary table;  // key String -> text String, both owned
    Symbol name_;      // the language, lower case
    State state_;
};

// The name of the language in force: that of the current table, else the
// environment variable TARN_LANG, else "english". Index 0 answers it as
// written, index 1 in lower case, as file names use it.
String currentLanguageName(int index);

// The text of key in the current table, or key itself without one.
const char* languageText(const char* key);

#endif
