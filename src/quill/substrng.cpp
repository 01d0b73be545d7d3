// SubString: window checks, assignment through the window, comparison and scanning.
#include "quill/substrng.h"

#include <cstring>
#include <istream>
#include <ostream>

#include "quill/quillerr.h"

int SUBSTRERR = -1;
int SCANERR = -1;

namespace {
void initSubString(Class*) {
    SUBSTRERR = newQUILLerror(
        "[SUBSTRERR] SubString position/length out of range: %s::operator()(%d,%d)for string %s");
    SCANERR = newQUILLerror("[SCANERR] SubString scan error: fail on read %s");
}
}  // namespace

DEFINE_CLASS(SubString, Object, 1, initSubString)

SubString::SubString() : pos(0), lgt(0), str(0) { shouldNotImplement("creator"); }

void SubString::storer(std::ostream&) const { shouldNotImplement("storer"); }
void SubString::storer(BinOstream&) const { shouldNotImplement("storer"); }

// An empty window at or past the end stands for the end of the owner.
SubString::SubString(const String& owner, unsigned position, unsigned length)
    : pos(position), lgt(length), str(const_cast<String*>(&owner)) {
    if (lgt == 0 && pos > owner.size()) pos = owner.size();
    if (pos > owner.size() || lgt > owner.size() - pos)
        setError(SUBSTRERR, SEV_ERROR, owner.className(), static_cast<int>(position),
                 static_cast<int>(length), owner.asCharPointer());
}

SubString::SubString(const SubString& s) : Object(s), pos(s.pos), lgt(s.lgt), str(s.str) {}

const char* SubString::text() const { return str->asCharPointer() + pos; }

String SubString::toString() const { return String(*this); }

void SubString::replace(const char* t, unsigned n) {
    str->replaceRange(pos, lgt, t, n);
    lgt = n;
}

SubString& SubString::operator=(const String& s) {
    replace(s.asCharPointer(), s.size());
    return *this;
}

SubString& SubString::operator=(const SubString& s) {
    if (&s != this) replace(s.text(), s.lgt);
    return *this;
}

SubString& SubString::operator=(const char* text) {
    replace(text ? text : "", text ? static_cast<unsigned>(std::strlen(text)) : 0);
    return *this;
}

unsigned SubString::hash() const { return hashText(text(), lgt); }

int SubString::compare(const Object& ob) const {
    if (ob.isKindOf(class_String)) {
        const String& s = static_cast<const String&>(ob);
        return compareText(text(), lgt, s.asCharPointer(), s.size());
    }
    if (ob.isKindOf(class_SubString)) {
        const SubString& s = static_cast<const SubString&>(ob);
        return compareText(text(), lgt, s.text(), s.lgt);
    }
    setError(BADARGS, SEV_ERROR, "SubString", "String", ob.className());
    return 0;
}

int SubString::compare(const char* t) const {
    if (!t) t = "";
    return compareText(text(), lgt, t, static_cast<unsigned>(std::strlen(t)));
}

bool SubString::isEqual(const Object& ob) const {
    if (ob.isSpecies(class_String)) {
        const String& s = static_cast<const String&>(ob);
        return s.size() == lgt && std::memcmp(text(), s.asCharPointer(), lgt) == 0;
    }
    if (ob.isSpecies(class_SubString)) {
        const SubString& s = static_cast<const SubString&>(ob);
        return s.lgt == lgt && std::memcmp(text(), s.text(), lgt) == 0;
    }
    return false;
}

void SubString::printOn(std::ostream& os) const { os.write(text(), lgt); }

// The line read replaces the window; a failed read, or a line longer than the
// window, leaves the owner as it was.
void SubString::scanFrom(std::istream& is) {
    String line;
    line.scanFrom(is);
    if (is.fail() || line.size() > lgt) setError(SCANERR, SEV_ERROR, line.asCharPointer());
    replace(line.asCharPointer(), line.size());
}
