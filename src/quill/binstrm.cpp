// BinOstream and BinIstream: fixed-width little-endian fields over byte streams.
#include "quill/binstrm.h"

#include <cerrno>
#include <cstring>
#include <istream>
#include <ostream>

#include "quill/objalloc.h"
#include "quill/quillerr.h"
#include "quill/readgrow.h"

namespace {

const char* systemMessage() { return errno ? strerror(errno) : "stream failure"; }

// Little-endian bytes of the low n bytes of v.
void encode(unsigned char* out, uint64_t v, unsigned n) {
    for (unsigned i = 0; i < n; ++i) out[i] = (unsigned char)(v >> (8 * i));
}

uint64_t decode(const unsigned char* in, unsigned n) {
    uint64_t v = 0;
    for (unsigned i = 0; i < n; ++i) v |= uint64_t(in[i]) << (8 * i);
    return v;
}

}  // namespace

// BinOstream

void BinOstream::putBytes(const void* bytes, unsigned n) {
    errno = 0;
    os.write(static_cast<const char*>(bytes), n);
    if (!os) setError(STOREBINERR, SEV_FATAL, systemMessage());
}

static void putWord(BinOstream& bs, uint64_t v, unsigned n) {
    unsigned char bytes[8];
    encode(bytes, v, n);
    bs.putBytes(bytes, n);
}

BinOstream& BinOstream::operator<<(char c) {
    putWord(*this, (unsigned char)c, 1);
    return *this;
}

BinOstream& BinOstream::operator<<(unsigned char c) {
    putWord(*this, c, 1);
    return *this;
}

BinOstream& BinOstream::operator<<(short n) {
    putWord(*this, uint16_t(n), 2);
    return *this;
}

BinOstream& BinOstream::operator<<(int n) {
    putWord(*this, uint32_t(n), 4);
    return *this;
}

BinOstream& BinOstream::operator<<(unsigned n) {
    putWord(*this, uint32_t(n), 4);
    return *this;
}

BinOstream& BinOstream::operator<<(long n) {
    putWord(*this, uint32_t(n), 4);
    return *this;
}

BinOstream& BinOstream::operator<<(unsigned long n) {
    putWord(*this, uint32_t(n), 4);
    return *this;
}

BinOstream& BinOstream::operator<<(float x) {
    uint32_t bits;
    memcpy(&bits, &x, 4);
    putWord(*this, bits, 4);
    return *this;
}

BinOstream& BinOstream::operator<<(double x) {
    uint64_t bits;
    memcpy(&bits, &x, 8);
    putWord(*this, bits, 8);
    return *this;
}

void BinOstream::putCString(const char* text) {
    unsigned n = text ? unsigned(strlen(text)) : 0;
    *this << n;
    if (n) putBytes(text, n);
}

void BinOstream::putArray(const double* values, unsigned n) {
    *this << n;
    for (unsigned i = 0; i < n; ++i) *this << values[i];
}

void BinOstream::putArray(const int* values, unsigned n) {
    *this << n;
    for (unsigned i = 0; i < n; ++i) *this << values[i];
}

bool BinOstream::good() const { return !os.fail(); }

void BinOstream::flush() { os.flush(); }

// BinIstream

// A short read is an underflow unless nothing at all came at end of file.
void BinIstream::getBytes(void* bytes, unsigned n) {
    if (n == 0) return;
    errno = 0;
    is.read(static_cast<char*>(bytes), n);
    unsigned got = unsigned(is.gcount());
    if (got == n) return;
    if (is.bad()) setError(READBINERR, SEV_ERROR, systemMessage());
    if (got == 0 && is.eof()) setError(RDEOF, SEV_ERROR);
    setError(READBINUNDFL, SEV_ERROR, int(n), int(got));
}

static uint64_t getWord(BinIstream& bs, unsigned n) {
    unsigned char bytes[8];
    bs.getBytes(bytes, n);
    return decode(bytes, n);
}

BinIstream& BinIstream::operator>>(char& c) {
    c = char(getWord(*this, 1));
    return *this;
}

BinIstream& BinIstream::operator>>(unsigned char& c) {
    c = (unsigned char)getWord(*this, 1);
    return *this;
}

BinIstream& BinIstream::operator>>(short& n) {
    n = short(uint16_t(getWord(*this, 2)));
    return *this;
}

BinIstream& BinIstream::operator>>(int& n) {
    n = int(uint32_t(getWord(*this, 4)));
    return *this;
}

BinIstream& BinIstream::operator>>(unsigned& n) {
    n = unsigned(getWord(*this, 4));
    return *this;
}

BinIstream& BinIstream::operator>>(long& n) {
    n = long(int32_t(uint32_t(getWord(*this, 4))));
    return *this;
}

BinIstream& BinIstream::operator>>(unsigned long& n) {
    n = (unsigned long)uint32_t(getWord(*this, 4));
    return *this;
}

BinIstream& BinIstream::operator>>(float& x) {
    uint32_t bits = uint32_t(getWord(*this, 4));
    memcpy(&x, &bits, 4);
    return *this;
}

BinIstream& BinIstream::operator>>(double& x) {
    uint64_t bits = getWord(*this, 8);
    memcpy(&x, &bits, 8);
    return *this;
}

char* BinIstream::getCString(unsigned* length) {
    unsigned n = readNumber<unsigned>(*this);
    char* text = readGrowing<char>(*this, n);
    text = static_cast<char*>(objectRealloc(text, size_t(n) + 1));
    text[n] = 0;
    if (length) *length = n;
    return text;
}

template <class T>
static T* getArray(BinIstream& bs, unsigned* count) {
    unsigned n = readNumber<unsigned>(bs);
    T* values = readGrowing<T>(bs, n);
    if (count) *count = n;
    return values;
}

double* BinIstream::getDoubleArray(unsigned* count) { return getArray<double>(*this, count); }

int* BinIstream::getIntArray(unsigned* count) { return getArray<int>(*this, count); }

bool BinIstream::atEnd() { return is.peek() == std::char_traits<char>::eof(); }
