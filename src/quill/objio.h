// Object streams: storing an object graph and reading it back, text and binary.
#ifndef QUILL_OBJIO_H
#define QUILL_OBJIO_H

#include <cstddef>
#include <iosfwd>
#include <istream>

#include "quill/binstrm.h"
#include "quill/object.h"
#include "quill/quillstr.h"

// Top-level store: answers whether the stream has neither fail nor bad bit.
bool storeObject(std::ostream& os, const Object& ob);
bool storeObject(BinOstream& os, const Object& ob);

// Reads one object. expectedClassName empty accepts any class; where is nil
// to allocate, or an existing object to read into (an embedded member, which
// is destroyed and built again from the stream). Errors leave by exception
// and leave the read tables in place (resetReadEnvironment clears them); at
// end of file the answer is nil.
Object* readFrom(std::istream& is, const char* expectedClassName = "", Object* where = nil);
Object* readFrom(std::istream& is, const Class& expected, Object* where = nil);
Object* readFrom(BinIstream& is, const char* expectedClassName = "", Object* where = nil);
Object* readFrom(BinIstream& is, const Class& expected, Object* where = nil);

// Guarded reads: a read error becomes the text in errorText and a null answer.
Object* readFromChecked(String& errorText, std::istream& is, const char* className = "", Object* where = nil);
Object* readFromChecked(String& errorText, BinIstream& is, const char* className = "", Object* where = nil);
Object* readFromString(String& errorText, const char* buffer, size_t length, const char* className = "",
                       Object* where = nil);
Object* readFromString(String& errorText, const char* buffer, const char* className = "",
                       Object* where = nil);
Object* readFromString(String& errorText, const char* buffer, const Class& expected, Object* where = nil);
String lastReadError();

// Nested reads from a stream constructor, and abandoned reads: reset deletes
// what the abandoned read had made.
void pushReadEnvironment();
void popReadEnvironment();
void resetReadEnvironment();
// A stream constructor that becomes another object replaces its table entry.
void replaceReadObject(Object* oldOb, Object* newOb);
// Deletes ob when the top-level read ends.
void addToReadTrash(Object* ob);
// ob, read by the read in progress, now belongs to something outside it:
// should the read fail, ob is not deleted with the rest. Object's destructor
// releases every object, so that a failed read never deletes one twice.
void releaseReadObject(const Object* ob);
bool isBeingRead(const Object* ob);

// A store filter that answers non-zero skips the object; a read filter may
// answer another object to take the place of the one read.
typedef int (*StoreFilter)(const Object* ob, std::ostream& os);
typedef Object* (*ReadFilter)(Object* ob);
StoreFilter setStoreFilter(StoreFilter f);
ReadFilter setReadFilter(ReadFilter f);

// Runs the reading of a stream constructor; when it raises, undo frees what
// the constructor had allocated, as a constructor that fails runs no destructor.
template <class Read, class Undo>
void readOrUndo(Read read, Undo undo) {
    try {
        read();
    } catch (...) {
        undo();
        throw;
    }
}

// A member that may be absent is stored as nil and read back as null.
template <class Stream>
void storeOptional(Stream& os, const Object* ob) {
    (ob ? ob : nil)->storeOn(os);
}
template <class Stream>
Object* readOptional(Stream& is) {
    Object* read = readFrom(is);
    return read == nil ? 0 : read;
}

// Quoted strings of the text form: braces and control characters escaped.
void writeQuoted(std::ostream& os, const char* text, unsigned length);
// Reads a quoted string into a buffer of the object allocator that starts at
// *alloc bytes and grows by 16, 32, 64... as needed; answers it, NUL-terminated,
// with *length and *alloc set.
char* readQuoted(std::istream& is, unsigned* length, unsigned* alloc);

// Raises RDSYNERR when the next non-blank character of is is not c.
void expectChar(std::istream& is, char c);

// Raises RDEOF or RDFAIL, with what follows, when the last read left is failed.
void checkStream(std::istream& is);

// A number of the text form; a failed read raises as checkStream does.
template <class Number>
Number readNumber(std::istream& is) {
    Number n = 0;
    is >> n;
    checkStream(is);
    return n;
}

// A number of the binary form, in the width of its type, so that readers
// written over either stream read their fields alike.
template <class Number>
Number readNumber(BinIstream& is) {
    Number n = 0;
    is >> n;
    return n;
}

#endif
