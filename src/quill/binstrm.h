// BinOstream and BinIstream: the binary form of object streams, little-endian.
#ifndef QUILL_BINSTRM_H
#define QUILL_BINSTRM_H

#include <cstdint>
#include <iosfwd>

// Writes fixed-width little-endian fields on a byte stream: char 1 byte,
// short 2, int, long and unsigned 4, float 4, double 8. A short write raises
// STOREBINERR at FATAL.
class BinOstream {
public:
    explicit BinOstream(std::ostream& os) : os(os) {}
    BinOstream& operator<<(char c);
    BinOstream& operator<<(unsigned char c);
    BinOstream& operator<<(short n);
    BinOstream& operator<<(int n);
    BinOstream& operator<<(unsigned n);
    BinOstream& operator<<(long n);
    BinOstream& operator<<(unsigned long n);
    BinOstream& operator<<(float x);
    BinOstream& operator<<(double x);
    void putBytes(const void* bytes, unsigned n);
    void putCString(const char* text);                // 4-byte length, then the bytes
    void putArray(const double* values, unsigned n);  // 4-byte count, then the values
    void putArray(const int* values, unsigned n);
    std::ostream& stream() { return os; }
    bool good() const;
    void flush();

private:
    std::ostream& os;
};

// Reads what BinOstream wrote. End of file raises RDEOF, a failed read
// READBINERR, a short read READBINUNDFL with the counts.
class BinIstream {
public:
    explicit BinIstream(std::istream& is) : is(is) {}
    BinIstream& operator>>(char& c);
    BinIstream& operator>>(unsigned char& c);
    BinIstream& operator>>(short& n);
    BinIstream& operator>>(int& n);
    BinIstream& operator>>(unsigned& n);
    BinIstream& operator>>(long& n);
    BinIstream& operator>>(unsigned long& n);
    BinIstream& operator>>(float& x);
    BinIstream& operator>>(double& x);
    void getBytes(void* bytes, unsigned n);
    // A C string of the stream in a new buffer of the object allocator.
    char* getCString(unsigned* length = 0);
    // An array of the stream in a new buffer of the object allocator.
    double* getDoubleArray(unsigned* count);
    int* getIntArray(unsigned* count);
    std::istream& stream() { return is; }
    bool atEnd();  // true at end of file, without consuming anything

private:
    std::istream& is;
};

#endif
