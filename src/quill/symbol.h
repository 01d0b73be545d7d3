// Symbol, an interned name, and the symbol table that holds the names.
#ifndef QUILL_SYMBOL_H
#define QUILL_SYMBOL_H

#include <iosfwd>

#include "quill/qclass.h"
#include "quill/quillstr.h"

class Set;
class Float;

extern Class class_Symbol;

// Two Symbols of the same text share one name String, owned by the table.
class Symbol : public Object {
    DECLARE_MEMBERS(Symbol)
public:
    Symbol();  // the empty name
    Symbol(const char* text);
    Symbol(const String& text);
    Symbol(const Float& f);
    Symbol(const Symbol& s);
    // Stream form: the name as a String object, interned when read.
    Symbol(std::istream& is, Object* where);
    Symbol(BinIstream& is, Object* where);

    Symbol& operator=(const Symbol& s);
    // Accepts Symbol, String, Integer and Float kinds.
    Symbol& operator=(const Object& ob);

    const String& name() const { return *name_; }

    bool isEqual(const Object& ob) const override;  // a Symbol by name pointer, else by text
    bool isEqual(const char* text) const;           // null is false
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // #text#
    const char* asCharPointer() const override;
    void scanFrom(std::istream& is) override;  // a line, interned
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    String* name_;  // shared, owned by the symbol table
};

// Answers the name in the current table equal to text, adding a copy of it
// when there is none.
String* internName(const String& text);
// Adds the heap String s to the current table, or answers the equal one already
// there (the caller then still owns s).
String* addToSymbolTable(String* s);
// The current table, created with capacity 200 on first use.
Set& symbolTable();
// Makes table the current one and answers the former.
Set* setSymbolTable(Set* table);
// Returns to the table created on first use.
void resetSymbolTable();
// Deletes the names, then the table created on first use.
void deleteSymbolTable();

#endif
