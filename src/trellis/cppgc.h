// CppGC, the graphic context that colours, line styles and fonts come from, and the colour names.
#ifndef TRELLIS_CPPGC_H
#define TRELLIS_CPPGC_H

#include <vector>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

extern Class class_CppGC;

// Contexts are shared: each has a number in the table of contexts (0 is
// the default), by which drawings store it, and a count of its users.
class CppGC : public Object {
    DECLARE_MEMBERS(CppGC)
public:
    enum Function { COPY = 0, XOR = 1 };

    // A new context in the table, with one reference.
    CppGC();
    ~CppGC() noexcept(false) override;

    // The default context, number 0, never released.
    static CppGC& defaultGC();
    // The context of a number, or the default for a number not in the table.
    static CppGC& byNumber(int number);
    int number() const { return number_; }
    void addReference() { ++references; }
    // The last release deletes the context; the default stays.
    void release();

    String foreground;  // a colour name
    String background;
    double lineWidth;
    bool dashed;
    String fontFamily;
    double fontSize;  // in world units
    int function;

private:
    explicit CppGC(int number);
    static std::vector<CppGC*>& table();

    int number_;
    int references;
};

// Red, green and blue of a colour name, each in 0 to 1: a name set by
// setColorResource, then "greyN" or "grayN" (N percent of white), then the
// SVG colour names that Qt knows. False for an unknown name.
bool colorOf(const char* name, double& red, double& green, double& blue);
// Gives a name (such as "printBackground") a colour of its own.
void setColorResource(const char* name, const char* color);
void removeColorResource(const char* name);

#endif
