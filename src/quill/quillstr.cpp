// String: construction, growth, comparison, windows, scanning, and the formatting helpers.
#include "quill/quillstr.h"

#include <cctype>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <ostream>

#include "quill/integer.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/qclass.h"
#include "quill/quillerr.h"
#include "quill/substrng.h"
#include "quill/symbol.h"

DEFINE_CLASS(String, Object, 1, 0)

namespace {

const char* const DEFAULT_STRIP_SET = " \t\n";
const unsigned FORMAT_BUFFER = 10000;
const unsigned SCAN_CHUNK = 1000;
const unsigned HASH_MODULUS = 51751;
// The most a String on a stream may announce: a damaged count must not
// become a buffer of gigabytes.
const unsigned STREAM_STRING_LIMIT = 1u << 26;

char* newBuffer(unsigned n) { return static_cast<char*>(objectAlloc(n)); }

// len + 1 + extra, refused when it does not fit the 32-bit sizes of a String.
unsigned bufferSize(size_t len, size_t extra) {
    size_t n = len + 1 + extra;
    checkAllocation(n, 1);
    return unsigned(n);
}

unsigned textLength(const char* t) { return t ? static_cast<unsigned>(std::strlen(t)) : 0; }

unsigned littleEndianWord(const char* t) {
    const unsigned char* u = reinterpret_cast<const unsigned char*>(t);
    return u[0] | (u[1] << 8) | (u[2] << 16) | (static_cast<unsigned>(u[3]) << 24);
}

}  // namespace

unsigned hashText(const char* t, unsigned n) {
    if (n == 4) return littleEndianWord(t) % HASH_MODULUS;
    unsigned h = 0;
    unsigned i = 0;
    for (; i + 4 <= n; i += 4) h ^= littleEndianWord(t + i);
    unsigned last = 0;
    for (unsigned shift = 0; i < n; ++i, shift += 8)
        last |= static_cast<unsigned>(static_cast<unsigned char>(t[i])) << shift;
    return (h ^ last) % HASH_MODULUS;
}

int compareText(const char* a, unsigned la, const char* b, unsigned lb) {
    int r = std::memcmp(a, b, la < lb ? la : lb);
    if (r != 0) return r;
    return la < lb ? -1 : (la > lb ? 1 : 0);
}

// Construction. Every constructor leaves alloc > len and p[len] == 0.

String::String() : p(newBuffer(1)), len(0), alloc(1) { p[0] = 0; }

String::String(const char* text) : String(text, 0u) {}

String::String(const char* text, unsigned extra) : len(textLength(text)) {
    alloc = bufferSize(len, extra);
    p = newBuffer(alloc);
    if (len) std::memcpy(p, text, len);
    p[len] = 0;
}

String::String(const String& s) : String(s, 0u) {}

String::String(const String& s, unsigned extra) : Object(s), len(s.len) {
    alloc = bufferSize(len, extra);
    p = newBuffer(alloc);
    std::memcpy(p, s.p, len + 1);
}

String::String(const SubString& s) : String(s, 0u) {}

String::String(const SubString& s, unsigned extra) : len(s.length()) {
    alloc = bufferSize(len, extra);
    p = newBuffer(alloc);
    if (len) std::memcpy(p, s.text(), len);
    p[len] = 0;
}

String::String(const Symbol& s) : String(s.name()) {}

String::String(const Integer& i) : String(formatText("%ld", static_cast<long>(i.value()))) {}

String::String(const Float& f) : String(formatText("%1.16g", f.value())) {}

String::String(int count, char fill, size_t extra) : p(0), len(0), alloc(0) {
    QASSERT_TEXT(count >= 0, "String::String(int,char,size_t) must be called with 'int' >= 0");
    len = static_cast<unsigned>(count);
    alloc = bufferSize(len, extra);
    p = newBuffer(alloc);
    std::memset(p, fill, len);
    p[len] = 0;
}

String::~String() noexcept(false) {
    if (p) objectFree(p);
}

// Stream form. The counts on the stream are a hint: the text read sets len,
// and alloc grows when escapes made the text longer than announced.

namespace {

// Makes the counts read a valid start: alloc above len, within the limit.
void checkAnnounced(unsigned len, unsigned* alloc) {
    if (len >= STREAM_STRING_LIMIT || *alloc > STREAM_STRING_LIMIT)
        setError(STRINGOV, SEV_ERROR, len > *alloc ? len : *alloc);
    if (*alloc <= len) *alloc = len + 1;
}

}  // namespace

String::String(std::istream& is, Object* where) : Object(is, where), p(0), len(0), alloc(1) {
    is >> len >> alloc;
    if (is.fail()) len = 0, alloc = 1;  // readQuoted reports the failed stream
    checkAnnounced(len, &alloc);
    p = readQuoted(is, &len, &alloc);
}

String::String(BinIstream& is, Object* where) : Object(is, where), p(0), len(0), alloc(1) {
    is >> len >> alloc;
    checkAnnounced(len, &alloc);
    char* text = newBuffer(alloc);
    try {
        is.getBytes(text, len + 1);
    } catch (...) {
        objectFree(text);
        throw;
    }
    p = text;
    p[len] = 0;
}

void String::storer(std::ostream& os) const {
    Object::storer(os);
    os << len << ' ' << alloc << ' ';
    writeQuoted(os, p, len);
}

void String::storer(BinOstream& os) const {
    Object::storer(os);
    os << len << alloc;
    os.putBytes(p, len + 1);
}

// Assignment. The buffer is replaced only when it is too small, and then by
// one of exactly the new size. The source may lie inside this buffer.

void String::assign(const char* t, unsigned n) {
    if (alloc <= n) {
        char* q = newBuffer(n + 1);
        std::memcpy(q, t, n);
        objectFree(p);
        p = q;
        alloc = n + 1;
    } else {
        std::memmove(p, t, n);
    }
    len = n;
    p[len] = 0;
}

String& String::operator=(const String& s) {
    if (s.p != p) assign(s.p, s.len);
    return *this;
}

String& String::operator=(const SubString& s) {
    assign(s.text(), s.length());
    return *this;
}

String& String::operator=(const char* text) {
    if (text != p) assign(text ? text : "", textLength(text));
    return *this;
}

String& String::operator=(const Integer& i) {
    return *this = formatText("%ld", static_cast<long>(i.value()));
}

String& String::operator=(const Float& f) { return *this = formatText("%1.16g", f.value()); }

// Concatenation: one buffer of the exact sum.

String String::operator+(const String& s) const {
    String r(*this, s.len);
    r.append(s.p, s.len);
    return r;
}

String String::operator+(const SubString& s) const {
    String r(*this, s.length());
    r.append(s.text(), s.length());
    return r;
}

String String::operator+(const char* text) const {
    unsigned n = textLength(text);
    String r(*this, n);
    r.append(text, n);
    return r;
}

String operator+(const char* text, const String& s) {
    String r(text, s.len);
    r.append(s.p, s.len);
    return r;
}

// Appending. A full buffer grows by exactly n, so appending one character at a
// time reallocates each time. A text taken from this buffer is copied out of
// the old buffer before that one is released.

void String::append(const char* t, unsigned n) {
    if (n == 0) return;
    if (size_t(alloc) <= size_t(len) + n) {
        size_t grown = size_t(alloc) + n;
        checkAllocation(grown, 1);  // sizes are 32-bit: a sum that would wrap is refused
        unsigned newAlloc = unsigned(grown);
        if (t >= p && t < p + alloc) {
            char* q = newBuffer(newAlloc);
            std::memcpy(q, p, len);
            std::memcpy(q + len, t, n);
            objectFree(p);
            p = q;
            alloc = newAlloc;
            len += n;
            p[len] = 0;
            return;
        }
        p = static_cast<char*>(objectRealloc(p, newAlloc));
        alloc = newAlloc;
    }
    std::memmove(p + len, t, n);
    len += n;
    p[len] = 0;
}

String& String::operator+=(const String& s) {
    append(s.p, s.len);
    return *this;
}

String& String::operator+=(const SubString& s) {
    append(s.text(), s.length());
    return *this;
}

String& String::operator+=(const char* text) {
    append(text, textLength(text));
    return *this;
}

String& String::operator+=(char c) {
    append(&c, 1);
    return *this;
}

namespace {
// Numbers are printed into a local buffer: the ring of formatText stays untouched.
template <typename T>
void appendNumber(String& s, const char* format, T value) {
    char buffer[64];
    int n = std::snprintf(buffer, sizeof buffer, format, value);
    if (n > 0) s += buffer;
}
}  // namespace

String& String::operator+=(int n) {
    appendNumber(*this, "%d", n);
    return *this;
}

String& String::operator+=(unsigned n) {
    appendNumber(*this, "%u", n);
    return *this;
}

String& String::operator+=(long n) {
    appendNumber(*this, "%ld", n);
    return *this;
}

String& String::operator+=(unsigned long n) {
    appendNumber(*this, "%lu", n);
    return *this;
}

String& String::operator+=(double x) {
    appendNumber(*this, "%1.16g", x);
    return *this;
}

// Element access.

char& String::operator[](unsigned i) {
    if (i >= len) setError(INDEXRANGE, SEV_ERROR, "String", "operator[]", static_cast<int>(i));
    return p[i];
}

char String::operator[](unsigned i) const {
    if (i >= len) setError(INDEXRANGE, SEV_ERROR, "String", "operator[]", static_cast<int>(i));
    return p[i];
}

char& String::at(unsigned i) { return (*this)[i]; }

char String::at(unsigned i) const { return (*this)[i]; }

// Windows. A position at or past the end gives the empty window at the end. A
// negative length takes the characters before position, clipped at 0.

namespace {
void clipWindow(unsigned len, int position, int length, unsigned& start, unsigned& count) {
    if (position < 0 || static_cast<unsigned>(position) >= len) {
        start = len;
        count = 0;
    } else if (length < 0) {
        long first = static_cast<long>(position) + length;
        if (first < 0) first = 0;
        start = static_cast<unsigned>(first);
        count = static_cast<unsigned>(position - first);
    } else {
        start = static_cast<unsigned>(position);
        count = static_cast<unsigned>(length);
    }
}
}  // namespace

SubString String::operator()(int position, int length) {
    unsigned start, count;
    clipWindow(len, position, length, start, count);
    return SubString(*this, start, count);
}

SubString String::operator()(int position) {
    unsigned start, count;
    clipWindow(len, position, 0, start, count);
    return SubString(*this, start, len - start);
}

const SubString String::operator()(int position, int length) const {
    return const_cast<String&>(*this)(position, length);
}

const SubString String::operator()(int position) const { return const_cast<String&>(*this)(position); }

int String::index(const char* other) const {
    const char* found = std::strstr(p, other ? other : "");
    return found ? static_cast<int>(found - p) : -1;
}

int String::index(const String& other) const { return index(other.p); }

void String::replaceRange(unsigned position, unsigned n, const char* t, unsigned tl) {
    QASSERT(position <= len && n <= len - position);
    if (t >= p && t < p + alloc) {
        String copy;
        copy.assign(t, tl);
        replaceRange(position, n, copy.p, tl);
        return;
    }
    unsigned newLen = len - n + tl;
    if (alloc <= newLen) {
        p = static_cast<char*>(objectRealloc(p, newLen + 1));
        alloc = newLen + 1;
    }
    std::memmove(p + position + tl, p + position + n, len - position - n + 1);
    if (tl) std::memcpy(p + position, t, tl);
    len = newLen;
}

unsigned String::reSize(unsigned n) {
    if (n < len) n = len;
    if (alloc != n + 1) {
        p = static_cast<char*>(objectRealloc(p, n + 1));
        alloc = n + 1;
    }
    return capacity();
}

// Case, yes/no, stripping.

String String::toUpper() const {
    String r(*this);
    for (unsigned i = 0; i < len; ++i)
        r.p[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(p[i])));
    return r;
}

String String::toLower() const {
    String r(*this);
    for (unsigned i = 0; i < len; ++i)
        r.p[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(p[i])));
    return r;
}

String String::toAscii() const {
    String r(*this);
    for (unsigned i = 0; i < len; ++i) r.p[i] = static_cast<char>(p[i] & 0x7F);
    return r;
}

void String::setYesNo(bool flag) { *this = flag ? "YES" : "NO "; }

bool String::isTrue() const {
    String lower = toLower();
    return std::strcmp(lower.p, "no") != 0 && std::strcmp(lower.p, "n") != 0 &&
           std::strcmp(lower.p, "0") != 0;
}

namespace {
bool inSet(char c, const char* set) { return c != 0 && std::strchr(set, c) != 0; }
}  // namespace

String String::stripLeft(const char* set) const {
    if (!set) set = DEFAULT_STRIP_SET;
    unsigned first = 0;
    while (first < len && inSet(p[first], set)) ++first;
    String r;
    r.assign(p + first, len - first);
    return r;
}

String String::stripRight(const char* set) const {
    if (!set) set = DEFAULT_STRIP_SET;
    unsigned end = len;
    while (end > 0 && inSet(p[end - 1], set)) --end;
    String r;
    r.assign(p, end);
    return r;
}

String String::stripBoth(const char* set) const { return stripLeft(set).stripRight(set); }

String String::left(unsigned n) const {
    String r;
    r.assign(p, n < len ? n : len);
    return r;
}

String String::right(unsigned n) const {
    if (n > len) n = len;
    String r;
    r.assign(p + len - n, n);
    return r;
}

double String::asDouble() const {
    double d = 0;
    return std::sscanf(p, "%lf", &d) == 1 ? d : 0;
}

// Object protocol.

unsigned String::hash() const { return hashText(p, len); }

int String::compare(const Object& ob) const {
    if (ob.isKindOf(class_String)) {
        const String& s = static_cast<const String&>(ob);
        return compareText(p, len, s.p, s.len);
    }
    if (ob.isKindOf(class_SubString)) {
        const SubString& s = static_cast<const SubString&>(ob);
        return compareText(p, len, s.text(), s.length());
    }
    setError(BADARGS, SEV_ERROR, "SubString", "String", ob.className());
    return 0;
}

bool String::isEqual(const Object& ob) const {
    if (ob.isSpecies(class_String)) {
        const String& s = static_cast<const String&>(ob);
        return s.len == len && std::memcmp(p, s.p, len) == 0;
    }
    if (ob.isSpecies(class_SubString)) {
        const SubString& s = static_cast<const SubString&>(ob);
        return s.length() == len && std::memcmp(p, s.text(), len) == 0;
    }
    return false;
}

void String::printOn(std::ostream& os) const { os.write(p, len); }

// Reads one line of any length, in chunks, without its end: a CR, an LF or a
// CR LF pair is consumed, and any other character stays on the stream. At the
// end of the input with nothing read the stream fails and this is emptied.
void String::scanFrom(std::istream& is) {
    std::istream::sentry ok(is, true);
    if (!ok) {
        *this = "";
        return;
    }
    std::streambuf* sb = is.rdbuf();
    const int eof = std::char_traits<char>::eof();
    String line;
    char chunk[SCAN_CHUNK];
    unsigned n = 0;
    int c = sb->sgetc();
    while (c != eof && c != '\r' && c != '\n') {
        chunk[n++] = static_cast<char>(c);
        if (n == SCAN_CHUNK) {
            unsigned oldSz = line.len;
            line.append(chunk, n);
            QASSERT(line.len >= oldSz);
            n = 0;
        }
        c = sb->snextc();
    }
    line.append(chunk, n);
    if (c == eof)
        is.setstate(line.len ? std::ios::eofbit : std::ios::eofbit | std::ios::failbit);
    else if (sb->sbumpc() == '\r' && sb->sgetc() == '\n')
        sb->sbumpc();
    *this = line;
}

// A copy that cannot have a buffer of its own is left without one, fit only
// to be destroyed, which then leaves the original's buffer alone.
void String::clearCopiedState() {
    Object::clearCopiedState();
    const char* shared = p;
    p = 0;
    char* q = newBuffer(alloc);
    std::memcpy(q, shared, len + 1);
    p = q;
}

// Formatting helpers.

void formatString(String& result, const char* format, ...) {
    String tmp(static_cast<int>(FORMAT_BUFFER), '\0');
    QASSERT(tmp.capacity() >= 10000);
    va_list args;
    va_start(args, format);
    std::vsnprintf(&tmp[0], FORMAT_BUFFER, format, args);
    va_end(args);
    result = tmp.asCharPointer();
}

const char* formatText(const char* format, ...) {
    static char* ring[10];
    static int next = -1;
    if (next < 0) {
        for (char*& b : ring) b = static_cast<char*>(std::malloc(FORMAT_BUFFER));
        next = 0;
    }
    char* buffer = ring[next];
    next = (next + 1) % 10;
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, FORMAT_BUFFER, format, args);
    va_end(args);
    return buffer;
}
