// Object streams: numbering, class headers, references, the read tables and quoted strings.
#include "quill/objio.h"

#include <cctype>
#include <cstring>
#include <iostream>
#include <limits>
#include <streambuf>
#include <unordered_set>
#include <vector>

#include "quill/arrayob.h"
#include "quill/assocint.h"
#include "quill/identdct.h"
#include "quill/objalloc.h"
#include "quill/orderedc.h"
#include "quill/qclass.h"
#include "quill/quillerr.h"
#include "quill/stack.h"
#include "quill/stackgrd.h"

namespace {

const unsigned TABLE_CAPACITY = 16;
const unsigned READ_TABLE_STEP = 512;  // readObjTable grows by this many slots when full
const unsigned NAME_BUFFER = 256;      // a class name on a stream: 255 characters at most
const int REPORT_LENGTH = 32;          // 31 characters of context in read errors

// Binary object forms.
enum { TAG_KNOWN_CLASS = 0, TAG_NEW_CLASS = 1, TAG_REFERENCE = 2 };

// Store side: alive while a top-level store runs.
IdentDict* storeTable = 0;      // object -> number (AssocInt); nil is 0
OrderedCltn* storeClasses = 0;  // classes written, numbered from 1
StoreFilter storeFilter = 0;

// Read side: alive while a top-level read runs.
OrderedCltn* readObjTable = 0;    // objects by number; element 0 is nil
OrderedCltn* readClassTable = 0;  // classes by number; element 0 is nil
OrderedCltn* readObjTrash = 0;    // deleted when the top-level read ends
Stack* readFromEnv = 0;           // saved tables of the reads that nested ones interrupted
ReadFilter readFilter = 0;
bool checkSignatures = true;

// The objects that a read allocated and whose stream constructors finished,
// in that order: a failed read deletes them, newest first, so that an owner
// goes before what it owns. An object deleted meanwhile, by its owner or by a
// stream constructor, leaves the record, so none is deleted twice; one that
// something outside the read took over is released from it.
struct ReadRecord {
    std::vector<Object*> finished;
    std::unordered_set<const Object*> held;

    // Makes room for ob before its constructors run, so that recording it
    // afterwards allocates nothing and cannot fail. A constructor that fails
    // takes ob out of held again, through Object's destructor.
    void prepare(Object* ob) {
        finished.reserve(finished.size() + 1);
        held.insert(ob);
    }
    void add(Object* ob) { finished.push_back(ob); }
    void deleteHeld() {
        while (!finished.empty()) {
            Object* ob = finished.back();
            finished.pop_back();
            if (held.erase(ob)) delete ob;
        }
    }
};
ReadRecord* readRecord = 0;
std::vector<ReadRecord*> savedRecords;  // of the reads that nested ones interrupted

String& readErrorText() {
    static String text;
    return text;
}

// Store tables

bool beginStore() {
    if (storeTable) return false;
    storeTable = new IdentDict(TABLE_CAPACITY);
    storeTable->addAssoc(*new AssocInt(*nil, 0));
    storeClasses = new OrderedCltn(TABLE_CAPACITY);
    return true;
}

void endStore() {
    storeTable->deleteContents();
    delete storeTable;
    storeTable = 0;
    for (unsigned i = 0; i < storeClasses->size(); ++i)
        static_cast<Class*>(storeClasses->at(int(i)))->storeNumber = 0;
    delete storeClasses;
    storeClasses = 0;
}

// The number of an object already written, or -1.
int storedNumber(const Object* ob) {
    Object* pair = storeTable->assocAt(*ob);
    return pair == nil ? -1 : static_cast<AssocInt*>(pair)->intValue();
}

// Numbers ob ahead of its fields; answers its class, which gets a number on
// its first object (answered in isNew).
Class* numberObject(const Object* ob, bool* isNew) {
    QASSERT(storeTable != 0);
    storeTable->addAssoc(*new AssocInt(*const_cast<Object*>(ob), int(storeTable->size())));
    Class* c = ob->isA();
    *isNew = c->storeNumber == 0;
    if (*isNew) {
        storeClasses->add(*c);
        c->storeNumber = storeClasses->size();
    }
    return c;
}

// Runs body within the outermost store's tables, which end even when a storer raises.
template <class Body>
void withStoreTables(bool outermost, Body body) {
    try {
        body();
    } catch (...) {
        if (outermost) endStore();
        throw;
    }
    if (outermost) endStore();
}

// Read tables

bool beginRead() {
    if (readObjTable) return false;
    readObjTable = new OrderedCltn(TABLE_CAPACITY);
    readObjTable->add(*nil);
    readClassTable = new OrderedCltn(TABLE_CAPACITY);
    readClassTable->add(*nil);
    readObjTrash = new OrderedCltn(TABLE_CAPACITY);
    readRecord = new ReadRecord;
    return true;
}

void endRead() {
    delete readObjTable;
    readObjTable = 0;
    delete readClassTable;
    readClassTable = 0;
    delete readRecord;
    readRecord = 0;
    OrderedCltn* trash = readObjTrash;
    readObjTrash = 0;
    trash->deleteContents();
    delete trash;
}

// The entry's number counts from the end: the objects that stream
// constructors ask about are as a rule the ones read last.
int lastIndexOfSame(const OrderedCltn& table, const Object* ob) {
    for (int i = int(table.size()) - 1; i >= 0; --i)
        if (table.at(i) == ob) return i;
    return -1;
}

// Gives ob the next number, ahead of its members.
unsigned enterReadObject(Object* ob) {
    unsigned number = readObjTable->size();
    if (number == readObjTable->capacity()) readObjTable->reSize(number + READ_TABLE_STEP);
    readObjTable->add(*ob);
    return number;
}

Class* readClassAt(unsigned number) { return CAST(Class, readClassTable->at(int(number))); }

// Storage of the class's size in which the root's stream constructor has run,
// so that the address is a living object before its members are read. An
// object read into place is destroyed first: what it owned would be lost.
template <class Stream>
Object* prepareInstance(Stream& is, const Class& c, Object* where) {
    // Objects nest by recursion: a stream nested beyond the stack is refused.
    if (stackNearlyFull()) setError(RDFAIL, SEV_ERROR, "objects nested too deeply");
    if (where && validObject(where)) where->~Object();
    void* storage = where ? static_cast<void*>(where) : Object::operator new(c.size());
    return new (storage) Object(is, static_cast<Object*>(storage));
}

const char* nameOfWhere(const Object* where, const char* expected) {
    if (validObject(where)) return where->className();
    return expected;
}

// The class found must be the one expected, by name or by the object read into.
void checkClass(char branch, const char* expected, const Object* where, const char* found, bool diagnose) {
    const char* wanted = *expected ? expected : where ? nameOfWhere(where, "") : "";
    if (!*wanted || strcmp(wanted, found) == 0) return;
    if (diagnose)
        std::cerr << "case '" << branch << "': \"" << wanted << "\" \"" << found << "\"" << std::endl;
    setError(RDWRONGCLASS, SEV_ERROR, wanted, found);
}

// Text tokens

}  // namespace

void checkStream(std::istream& is) {
    if (!is.fail()) return;
    if (is.eof()) setError(RDEOF, SEV_ERROR);
    is.clear();
    char rest[REPORT_LENGTH] = "";
    is.get(rest, REPORT_LENGTH, char(255));
    setError(RDFAIL, SEV_ERROR, rest);
}

namespace {

// The offending character must have been put back: it leads the report.
[[noreturn]] void syntaxError(std::istream& is, const char* expected) {
    is.clear();
    char rest[REPORT_LENGTH] = "";
    is.get(rest, REPORT_LENGTH, '\n');
    setError(RDSYNERR, SEV_ERROR, expected, rest);
}

char readToken(std::istream& is) {
    char c = 0;
    is >> c;
    checkStream(is);
    return c;
}

// Text read of the three forms

Object* readReference(std::istream& is, const char* expected, Object* where, bool diagnose) {
    int number = readNumber<int>(is);
    Object* ob = readObjTable->at(number);
    if (where) setError(RDREFERR, SEV_ERROR, nameOfWhere(where, expected), number);
    checkClass('@', expected, 0, ob->className(), diagnose);
    return ob;
}

Class* readKnownClass(std::istream& is, const char* expected, Object* where) {
    unsigned number = readNumber<unsigned>(is);
    expectChar(is, '{');
    Class* c = readClassAt(number);
    checkClass('#', expected, where, c->name(), true);
    return c;
}

Class* findStreamClass(const char* name, unsigned signature, bool check) {
    Class* c = findClass(name);
    if (!c) setError(RDUNKCLASS, SEV_ERROR, name);
    if (check && !c->checkSignature(signature))
        setError(RDVERSERR, SEV_ERROR, name, (unsigned long)c->signature(), (unsigned long)signature);
    readClassTable->add(*c);
    return c;
}

Class* readNewClass(std::istream& is, const char* expected, Object* where) {
    char name[NAME_BUFFER];
    is.get(name, NAME_BUFFER, '.');
    checkStream(is);
    expectChar(is, '.');
    unsigned signature = readNumber<unsigned>(is);
    expectChar(is, '{');
    checkClass(':', expected, where, name, true);
    return findStreamClass(name, signature, checkSignatures);
}

// A read filter may put another object in the place of the one read.
Object* filterRead(Object* ob, unsigned number, bool allocated) {
    Object* other = readFilter(ob);
    if (!other || other == ob) return ob;
    (*readObjTable)[int(number)] = other;
    if (allocated) delete ob;
    return other;
}

// A member read into place whose reading failed is left without a living
// object: it is rebuilt in its default state, so that the destructor of the
// object around it still finds a member to destroy. A class without a
// default instance leaves it as it is.
void reviveMember(Object* where, const Class& c) {
    Object* fresh;
    try {
        fresh = c.create();
    } catch (TarnException* e) {
        delete e;
        return;
    }
    memcpy(static_cast<void*>(where), static_cast<const void*>(fresh), c.size());
    Object::operator delete(fresh);  // its parts now belong to where
}

template <class Stream, class Reader>
void runReader(Stream& is, const Class& c, Reader reader, Object* ob, unsigned number, Object* where) {
    try {
        // A class without a reader refuses here, so that its prepared storage
        // is given back as after a reader that raised.
        if (!reader) setError(ILLEGALMETHOD, SEV_ERROR, c.name(), "reader constructor");
        reader(is, ob);
    } catch (...) {
        // The constructors that ran have been undone: the storage is raw,
        // and no later reference may reach it.
        (*readObjTable)[int(number)] = nil;
        if (where)
            reviveMember(where, c);
        else
            Object::operator delete(ob);
        throw;
    }
}

// Runs the class's reader on a new table entry; what the read allocated is
// recorded once its constructors have finished.
template <class Stream, class Reader>
Object* readInstance(Stream& is, const Class& c, Reader reader, Object* where, unsigned* number) {
    Object* ob = prepareInstance(is, c, where);
    try {
        if (!where) readRecord->prepare(ob);
        *number = enterReadObject(ob);
    } catch (...) {  // no table holds ob yet: only its root constructor has run
        ob->~Object();
        if (where)
            reviveMember(where, c);
        else
            Object::operator delete(ob);
        throw;
    }
    runReader(is, c, reader, ob, *number, where);
    if (!where) readRecord->add(ob);
    return ob;
}

Object* readTextInstance(std::istream& is, Class& c, Object* where) {
    unsigned number;
    Object* ob = readInstance(is, c, c.textReader, where, &number);
    expectChar(is, '}');
    return readFilter ? filterRead(ob, number, where == 0) : ob;
}

Object* readTextObject(std::istream& is, char first, const char* expected, Object* where) {
    Class* c = 0;
    switch (first) {
        case '@':
            return readReference(is, expected, where, true);
        case '#':
            c = readKnownClass(is, expected, where);
            break;
        case ':':
            c = readNewClass(is, expected, where);
            break;
        default:
            is.putback(first);
            syntaxError(is, ":, # or @");
    }
    return readTextInstance(is, *c, where);
}

// Binary read of the three forms

Object* readBinaryReference(BinIstream& is, const char* expected, Object* where) {
    unsigned number;
    is >> number;
    Object* ob = readObjTable->at(int(number));
    if (where) setError(RDREFERR, SEV_ERROR, nameOfWhere(where, expected), int(number));
    checkClass('@', expected, 0, ob->className(), false);
    return ob;
}

Class* readBinaryKnownClass(BinIstream& is, const char* expected, Object* where) {
    short number;
    is >> number;
    Class* c = readClassAt((unsigned short)number);
    checkClass('#', expected, where, c->name(), false);
    return c;
}

Class* readBinaryNewClass(BinIstream& is, const char* expected, Object* where) {
    unsigned char length;
    is >> length;
    char name[NAME_BUFFER];
    is.getBytes(name, length);
    name[length] = 0;
    unsigned signature;
    is >> signature;
    checkClass(':', expected, where, name, false);
    return findStreamClass(name, signature, true);
}

Object* readBinaryObject(BinIstream& is, unsigned char tag, const char* expected, Object* where) {
    Class* c = 0;
    switch (tag) {
        case TAG_REFERENCE:
            return readBinaryReference(is, expected, where);
        case TAG_KNOWN_CLASS:
            c = readBinaryKnownClass(is, expected, where);
            break;
        case TAG_NEW_CLASS:
            c = readBinaryNewClass(is, expected, where);
            break;
        default:
            setError(RDBADTYP, SEV_ERROR, int(tag), -1);
    }
    unsigned number;
    return readInstance(is, *c, c->binaryReader, where, &number);
}

// Runs body within the outermost read's tables. A raised error leaves them in
// place: the guarded entry resets them.
template <class Body>
Object* withReadTables(Body body) {
    bool outermost = beginRead();
    Object* result = body();
    if (outermost) endRead();
    return result;
}

Object* noWhere(Object* where) { return where == nil ? 0 : where; }

// An input stream over a caller's memory, read in place.
class MemoryBuffer : public std::streambuf {
public:
    MemoryBuffer(const char* buffer, size_t length) {
        char* p = const_cast<char*>(buffer);
        setg(p, p, p + length);
    }
};

template <class Stream>
Object* guardedRead(String& errorText, Stream& is, const char* className, Object* where) {
    ObjectRegion region(storeReadLockLevel);
    readErrorText() = "";
    Object* result = 0;
    try {
        result = readFrom(is, className, where);
    } catch (TarnException* e) {
        errorInProgress = 0;
        readErrorText() = e->message();
        resetReadEnvironment();
        delete e;
        result = 0;
    }
    errorText = readErrorText();
    return result;
}

// Quoted strings

// The buffer of readQuoted: the caller's allocation, then steps of 16, 32, 64...
class QuotedBuffer {
public:
    explicit QuotedBuffer(unsigned alloc)
        : text(static_cast<char*>(objectAlloc(alloc))), length(0), alloc(alloc), step(16) {}
    ~QuotedBuffer() {
        if (text) objectFree(text);
    }
    void put(char c) {
        if (length + 1 >= alloc) grow();
        text[length++] = c;
    }
    char* release(unsigned* lengthOut, unsigned* allocOut) {
        text[length] = 0;
        *lengthOut = length;
        *allocOut = alloc;
        char* result = text;
        text = 0;
        return result;
    }

private:
    void grow() {
        alloc += step;
        step *= 2;
        text = static_cast<char*>(objectRealloc(text, alloc));
    }
    char* text;
    unsigned length;
    unsigned alloc;
    unsigned step;
};

// The character after a backslash: a letter of the table, or a decimal code
// closed by a backslash.
char readEscape(std::istream& is) {
    int e = is.get();
    checkStream(is);
    switch (e) {
        case '"':
            return '"';
        case '[':
            return '{';
        case '\\':
            return '\\';
        case ']':
            return '}';
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
    }
    is.putback(char(e));
    int code = readNumber<int>(is);
    int close = is.get();
    checkStream(is);
    if (close != '\\') {
        is.putback(char(close));
        syntaxError(is, "\\");
    }
    return char(code);
}

const char* escapeOf(unsigned char c) {
    switch (c) {
        case '\b':
            return "\\b";
        case '\t':
            return "\\t";
        case '\n':
            return "\\n\n";
        case '\f':
            return "\\f";
        case '\r':
            return "\\r";
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '{':
            return "\\[";
        case '}':
            return "\\]";
    }
    return 0;
}

}  // namespace

// Object's part of the streams

Object::Object(std::istream&, Object* where) : Object() { QASSERT_TEXT(where != 0, "&where!=0"); }

Object::Object(BinIstream&, Object* where) : Object() { QASSERT_TEXT(where != 0, "&where!=0"); }

void Object::storeOn(std::ostream& os) const {
    bool outermost = beginStore();
    if (!outermost && storeFilter && storeFilter(this, os)) return;
    // A model file keeps every digit: numbers read back equal to those written.
    std::streamsize precision =
        outermost ? os.precision(std::numeric_limits<double>::max_digits10) : os.precision();
    struct RestorePrecision {
        std::ostream& os;
        std::streamsize precision;
        ~RestorePrecision() { os.precision(precision); }
    } restore{os, precision};
    withStoreTables(outermost, [&] {
        int number = storedNumber(this);
        if (number >= 0) {
            os << '@' << number << ' ';
            return;
        }
        storer(os);
        os << "}\n";
    });
}

void Object::storeOn(BinOstream& os) const {
    bool outermost = beginStore();
    withStoreTables(outermost, [&] {
        int number = storedNumber(this);
        if (number >= 0) {
            os << (unsigned char)TAG_REFERENCE << unsigned(number);
            return;
        }
        storer(os);
    });
}

void Object::storer(std::ostream& os) const {
    if (!isA()->textReader) shouldNotImplement("storer");
    bool isNew;
    Class* c = numberObject(this, &isNew);
    if (isNew)
        os << ':' << c->name() << '.' << c->signature();
    else
        os << '#' << c->storeNumber;
    os << '{';
}

void Object::storer(BinOstream& os) const {
    if (!isA()->binaryReader) shouldNotImplement("storer");
    bool isNew;
    Class* c = numberObject(this, &isNew);
    if (!isNew) {
        os << (unsigned char)TAG_KNOWN_CLASS << short(c->storeNumber);
        return;
    }
    size_t length = strlen(c->name());
    if (length > NAME_BUFFER - 1) length = NAME_BUFFER - 1;
    os << (unsigned char)TAG_NEW_CLASS << (unsigned char)length;
    os.putBytes(c->name(), unsigned(length));
    os << c->signature();
}

// Top level

bool storeObject(std::ostream& os, const Object& ob) {
    ObjectRegion region(storeReadLockLevel);
    ob.storeOn(os);
    os.flush();
    return !os.fail();
}

bool storeObject(BinOstream& os, const Object& ob) {
    ObjectRegion region(storeReadLockLevel);
    ob.storeOn(os);
    os.flush();
    return os.good();
}

// At end of file the answer is nil, so that a loop reads successive objects.
Object* readFrom(std::istream& is, const char* expectedClassName, Object* where) {
    const char* expected = expectedClassName ? expectedClassName : "";
    where = noWhere(where);
    char first = 0;
    is >> first;
    if (is.fail() && is.eof()) return nil;
    checkStream(is);
    return withReadTables([&] { return readTextObject(is, first, expected, where); });
}

Object* readFrom(std::istream& is, const Class& expected, Object* where) {
    return readFrom(is, expected.name(), where);
}

Object* readFrom(BinIstream& is, const char* expectedClassName, Object* where) {
    const char* expected = expectedClassName ? expectedClassName : "";
    where = noWhere(where);
    if (is.atEnd()) return nil;
    unsigned char tag;
    is >> tag;
    return withReadTables([&] { return readBinaryObject(is, tag, expected, where); });
}

Object* readFrom(BinIstream& is, const Class& expected, Object* where) {
    return readFrom(is, expected.name(), where);
}

Object* readFromChecked(String& errorText, std::istream& is, const char* className, Object* where) {
    return guardedRead(errorText, is, className, where);
}

Object* readFromChecked(String& errorText, BinIstream& is, const char* className, Object* where) {
    return guardedRead(errorText, is, className, where);
}

Object* readFromString(String& errorText, const char* buffer, size_t length, const char* className,
                       Object* where) {
    MemoryBuffer memory(buffer, length);
    std::istream is(&memory);
    return readFromChecked(errorText, is, className, where);
}

Object* readFromString(String& errorText, const char* buffer, const char* className, Object* where) {
    return readFromString(errorText, buffer, strlen(buffer), className, where);
}

Object* readFromString(String& errorText, const char* buffer, const Class& expected, Object* where) {
    return readFromString(errorText, buffer, strlen(buffer), expected.name(), where);
}

String lastReadError() { return readErrorText(); }

// Read environments

void pushReadEnvironment() {
    if (!readFromEnv) readFromEnv = new Stack(TABLE_CAPACITY);
    ArrayOb* saved = new ArrayOb(3);
    OrderedCltn* tables[3] = {readObjTable, readClassTable, readObjTrash};
    for (int i = 0; i < 3; ++i) saved->atIndexPut(i, tables[i] ? *tables[i] : *nil);
    readFromEnv->push(*saved);
    savedRecords.push_back(readRecord);
    readObjTable = readClassTable = readObjTrash = 0;
    readRecord = 0;
}

void popReadEnvironment() {
    QASSERT(readObjTable == 0);
    QASSERT(readFromEnv != 0);
    ArrayOb* saved = CAST(ArrayOb, readFromEnv->pop());
    OrderedCltn** tables[3] = {&readObjTable, &readClassTable, &readObjTrash};
    for (int i = 0; i < 3; ++i) {
        Object* table = saved->atIndex(i);
        *tables[i] = table == nil ? 0 : CAST(OrderedCltn, table);
    }
    delete saved;
    readRecord = savedRecords.back();
    savedRecords.pop_back();
    if (readFromEnv->size() == 0) {
        delete readFromEnv;
        readFromEnv = 0;
    }
}

// The abandoned read's trash goes first, then the objects it had finished:
// the caller never got them.
void resetReadEnvironment() {
    delete readObjTable;
    readObjTable = 0;
    delete readClassTable;
    readClassTable = 0;
    if (readObjTrash) readObjTrash->deleteContents();
    delete readObjTrash;
    readObjTrash = 0;
    if (readRecord) readRecord->deleteHeld();
    delete readRecord;
    readRecord = 0;
}

void releaseReadObject(const Object* ob) {
    if (readRecord) readRecord->held.erase(ob);
}

void replaceReadObject(Object* oldOb, Object* newOb) {
    QASSERT(oldOb->isA() == newOb->isA());
    QASSERT(validObject(readObjTable));
    int i = lastIndexOfSame(*readObjTable, oldOb);
    if (i < 0) {
        readObjTable->replaceSame(*oldOb, *newOb);  // raises its own error
        return;
    }
    (*readObjTable)[i] = newOb;
}

void addToReadTrash(Object* ob) {
    QASSERT(validObject(readObjTrash));
    if (lastIndexOfSame(*readObjTrash, ob) < 0) readObjTrash->add(*ob);
}

bool isBeingRead(const Object* ob) {
    if (!ob || ob == nil || !readObjTable) return false;
    return lastIndexOfSame(*readObjTable, ob) >= 0;
}

StoreFilter setStoreFilter(StoreFilter f) {
    StoreFilter old = storeFilter;
    storeFilter = f;
    return old;
}

ReadFilter setReadFilter(ReadFilter f) {
    ReadFilter old = readFilter;
    readFilter = f;
    return old;
}

// Quoted strings and single tokens

void writeQuoted(std::ostream& os, const char* text, unsigned length) {
    os.put('"');
    for (unsigned i = 0; i < length; ++i) {
        unsigned char c = (unsigned char)text[i];
        if (const char* escape = escapeOf(c))
            os << escape;
        else if (isprint(c) || c == ' ')
            os.put(char(c));
        else
            os << '\\' << unsigned(c) << '\\';
    }
    os.put('"');
}

// Raw line ends inside the quotes are dropped, so a long text may be wrapped.
char* readQuoted(std::istream& is, unsigned* length, unsigned* alloc) {
    QASSERT_TEXT(int(*alloc) > 0, "alloc > 0");
    char first = readToken(is);
    if (first != '"') {
        is.putback(first);
        syntaxError(is, "\"");
    }
    QuotedBuffer buffer(*alloc);
    for (;;) {
        int c = is.get();
        checkStream(is);
        if (c == '"') break;
        if (c == '\n' || c == '\r') continue;
        buffer.put(c == '\\' ? readEscape(is) : char(c));
    }
    return buffer.release(length, alloc);
}

void expectChar(std::istream& is, char c) {
    char got = readToken(is);
    if (got == c) return;
    is.putback(got);
    char expected[2] = {c, 0};
    syntaxError(is, expected);
}
