// SubString, a window on a String that can be read and assigned through.
#ifndef QUILL_SUBSTRNG_H
#define QUILL_SUBSTRNG_H

#include <iosfwd>

#include "quill/qclass.h"
#include "quill/quillstr.h"

extern Class class_SubString;

// Error codes added to the table by the class initor of SubString.
extern int SUBSTRERR, SCANERR;

class SubString : public Object {
    DECLARE_MEMBERS(SubString)
public:
    SubString();  // refused: "creator"
    // The window must lie inside the owner, else SUBSTRERR.
    SubString(const String& owner, unsigned position, unsigned length);
    SubString(const SubString& s);

    // Each assignment replaces the window in the owner by moving its tail.
    SubString& operator=(const String& s);
    SubString& operator=(const SubString& s);
    SubString& operator=(const char* text);

    unsigned position() const { return pos; }
    unsigned length() const { return lgt; }
    String* owner() const { return str; }
    // The first character of the window; the text is not NUL-terminated.
    const char* text() const;

    String toString() const;
    unsigned size() const override { return lgt; }
    unsigned hash() const override;
    int compare(const Object& ob) const override;
    int compare(const char* text) const;
    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    // Reads a line into the window; SCANERR when it does not fit.
    void scanFrom(std::istream& is) override;
    // A window is not stored: it would hold its owner only half. Both refuse.
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    void replace(const char* t, unsigned n);

    unsigned pos;  // first character of the window
    unsigned lgt;  // characters in the window
    String* str;   // the string looked at, not owned
};

// Byte comparison of two texts of given lengths: the shorter prefix is less.
int compareText(const char* a, unsigned la, const char* b, unsigned lb);
// The hash of String: xor of the little-endian words of the text, modulo 51751.
unsigned hashText(const char* t, unsigned n);

#endif
