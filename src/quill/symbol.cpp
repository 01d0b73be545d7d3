// Symbol and the symbol table: interning, comparison and printing.
#include "quill/symbol.h"

#include <cstring>
#include <istream>
#include <ostream>

#include "quill/integer.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/set.h"

DEFINE_CLASS(Symbol, Object, 1, 0)

namespace {

const unsigned SYMBOL_TABLE_CAPACITY = 200;

Set* currentSymbolTable = 0;
Set* defaultSymbolTable = 0;

}  // namespace

Set& symbolTable() {
    if (!defaultSymbolTable) {
        defaultSymbolTable = new Set(SYMBOL_TABLE_CAPACITY);
        currentSymbolTable = defaultSymbolTable;
    }
    return *currentSymbolTable;
}

Set* setSymbolTable(Set* table) {
    Set* former = &symbolTable();
    currentSymbolTable = table;
    return former;
}

void resetSymbolTable() {
    symbolTable();
    currentSymbolTable = defaultSymbolTable;
}

void deleteSymbolTable() {
    if (!defaultSymbolTable) return;
    defaultSymbolTable->deleteContents();
    delete defaultSymbolTable;
    defaultSymbolTable = currentSymbolTable = 0;
}

String* addToSymbolTable(String* s) { return CAST(String, symbolTable().add(*s)); }

String* internName(const String& text) {
    Object* found = symbolTable().find(text);
    if (found != nil) return CAST(String, found);
    String* name = new String(text);
    symbolTable().add(*name);
    return name;
}

Symbol::Symbol() : name_(internName(String())) {}

Symbol::Symbol(const char* text) : name_(internName(String(text))) {}

Symbol::Symbol(const String& text) : name_(internName(text)) {}

Symbol::Symbol(const Float& f) : name_(internName(String(f))) {}

Symbol::Symbol(const Symbol& s) : Object(s), name_(s.name_) {}

namespace {

const int BINARY_REFERENCE_TAG = 2;

// The name that a Symbol read from a stream takes: the String read, unless
// the table already holds an equal one. Then the table's name replaces a
// String read just now, also for later references to it in the stream; a
// String read before, by reference, may have other holders and is kept.
String* internReadName(Object* read, bool fresh) {
    if (read == nil) setError(RDEOF, SEV_ERROR);
    String* s = CAST(String, read);
    String* interned = addToSymbolTable(s);
    if (interned == s) {
        releaseReadObject(s);  // the table's now
    } else if (fresh) {
        replaceReadObject(s, interned);
        delete s;
    }
    return interned;
}

bool nextIsFresh(std::istream& is) { return (is >> std::ws).peek() != '@'; }

bool nextIsFresh(BinIstream& is) { return is.stream().peek() != BINARY_REFERENCE_TAG; }

template <class Stream>
String* readName(Stream& is) {
    bool fresh = nextIsFresh(is);
    return internReadName(readFrom(is, "String"), fresh);
}

}  // namespace

Symbol::Symbol(std::istream& is, Object* where) : Object(is, where), name_(readName(is)) {}

Symbol::Symbol(BinIstream& is, Object* where) : Object(is, where), name_(readName(is)) {}

void Symbol::storer(std::ostream& os) const {
    Object::storer(os);
    name_->storeOn(os);
}

void Symbol::storer(BinOstream& os) const {
    Object::storer(os);
    name_->storeOn(os);
}

Symbol& Symbol::operator=(const Symbol& s) {
    name_ = s.name_;
    return *this;
}

Symbol& Symbol::operator=(const Object& ob) {
    QASSERT(ob.isKindOf(class_Symbol) || ob.isKindOf(class_String) || ob.isKindOf(class_Integer) ||
            ob.isKindOf(class_Float));
    if (ob.isKindOf(class_Symbol))
        name_ = static_cast<const Symbol&>(ob).name_;
    else if (ob.isKindOf(class_String))
        name_ = internName(static_cast<const String&>(ob));
    else if (ob.isKindOf(class_Integer))
        name_ = internName(String(static_cast<const Integer&>(ob)));
    else
        name_ = internName(String(static_cast<const Float&>(ob)));
    return *this;
}

bool Symbol::isEqual(const Object& ob) const {
    if (ob.isKindOf(class_Symbol)) return name_ == static_cast<const Symbol&>(ob).name_;
    return *name_ == ob;
}

bool Symbol::isEqual(const char* text) const {
    return text != 0 && std::strcmp(name_->asCharPointer(), text) == 0;
}

int Symbol::compare(const Object& ob) const {
    if (ob.isKindOf(class_Symbol)) return name_->compare(*static_cast<const Symbol&>(ob).name_);
    return name_->compare(ob);
}

unsigned Symbol::hash() const { return name_->hash(); }

void Symbol::printOn(std::ostream& os) const { os << "#" << name_->asCharPointer() << "#"; }

const char* Symbol::asCharPointer() const { return formatText("#%s#", name_->asCharPointer()); }

void Symbol::scanFrom(std::istream& is) {
    String line;
    line.scanFrom(is);
    name_ = internName(line);
}
