// String, the system's text value, and the formatting helpers.
#ifndef QUILL_QUILLSTR_H
#define QUILL_QUILLSTR_H

#include <cstddef>
#include <iosfwd>

#include "quill/object.h"
#include "quill/qclass.h"

class SubString;
class Symbol;
class Integer;
class Float;

extern Class class_String;

class String : public Object {
    DECLARE_MEMBERS(String)
public:
    String();
    String(const char* text);
    String(const char* text, unsigned extra);
    String(const String& s);
    String(const String& s, unsigned extra);
    String(const SubString& s);
    String(const SubString& s, unsigned extra);
    String(const Symbol& s);
    String(const Integer& i);
    String(const Float& f);
    String(int count, char fill, size_t extra = 0);
    // Stream form: len, alloc, then the text; the text read decides both.
    String(std::istream& is, Object* where);
    String(BinIstream& is, Object* where);
    ~String() noexcept(false) override;

    String& operator=(const String& s);
    String& operator=(const SubString& s);
    String& operator=(const char* text);
    String& operator=(const Integer& i);  // "%ld"
    String& operator=(const Float& f);    // "%1.16g"

    String operator+(const String& s) const;
    String operator+(const SubString& s) const;
    String operator+(const char* text) const;
    friend String operator+(const char* text, const String& s);

    // Appending grows the buffer by exactly what is appended when it is full.
    String& operator+=(const String& s);
    String& operator+=(const SubString& s);
    String& operator+=(const char* text);
    String& operator+=(char c);
    String& operator+=(int n);            // "%d"
    String& operator+=(unsigned n);       // "%u"
    String& operator+=(long n);           // "%ld"
    String& operator+=(unsigned long n);  // "%lu"
    String& operator+=(double x);         // "%1.16g"

    char& operator[](unsigned i);  // INDEXRANGE when i >= size()
    char operator[](unsigned i) const;
    char& at(unsigned i);
    char at(unsigned i) const;

    SubString operator()(int position, int length);
    SubString operator()(int position);
    const SubString operator()(int position, int length) const;
    const SubString operator()(int position) const;

    int index(const String& other) const;  // first position, or -1
    int index(const char* other) const;

    unsigned size() const override { return len; }
    unsigned capacity() const override { return alloc - 1; }
    unsigned reSize(unsigned n);  // never below size(); answers the capacity
    unsigned allocated() const { return alloc; }

    String toUpper() const;
    String toLower() const;
    String toAscii() const;
    void setYesNo(bool flag);                     // "YES" or "NO "
    bool isTrue() const;                          // false for "no", "n", "0" in any case
    String stripLeft(const char* set = 0) const;  // default set " \t\n"
    String stripRight(const char* set = 0) const;
    String stripBoth(const char* set = 0) const;
    String left(unsigned n) const;
    String right(unsigned n) const;
    double asDouble() const;  // 0 when nothing converts

    unsigned hash() const override;
    int compare(const Object& ob) const override;
    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void scanFrom(std::istream& is) override;
    const char* asCharPointer() const override { return p; }
    void clearCopiedState() override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // Replaces n characters at position with the text t of length tl.
    void replaceRange(unsigned position, unsigned n, const char* t, unsigned tl);

private:
    void append(const char* t, unsigned n);
    void assign(const char* t, unsigned n);

    char* p;         // the text, NUL-terminated, from the object allocator
    unsigned len;    // characters, without the NUL
    unsigned alloc;  // bytes of the buffer

    friend class SubString;
};

// printf into result, through a buffer of 10000 bytes.
void formatString(String& result, const char* format, ...);
// printf into one of a ring of ten buffers: the text stays valid for nine more calls.
const char* formatText(const char* format, ...);

#endif
