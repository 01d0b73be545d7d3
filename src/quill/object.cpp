// Object and Nil: identity, type tests, copying, deletion and printing.
#include "quill/object.h"

#include <cstdint>
#include <cstring>
#include <exception>
#include <new>
#include <ostream>
#include <streambuf>

#include "quill/cback.h"
#include "quill/identset.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/qclass.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/validobj.h"

namespace {

// Nil lives in storage that is never destroyed, and is built by the first
// Object constructor that runs, so that nil exists before any other object
// whatever the order of static construction.
union NilHolder {
    char unused;
    Nil object;
    constexpr NilHolder() : unused(0) {}
    ~NilHolder() {}
};
NilHolder nilHolder;
bool nilBuilt = false;

void buildNil() {
    nilBuilt = true;
    new (&nilHolder.object) Nil;
}

// A stream buffer over a fixed array that fails instead of growing.
class FixedBuffer : public std::streambuf {
public:
    FixedBuffer(char* buffer, size_t length) { setp(buffer, buffer + length - 1); }
    size_t written() const { return size_t(pptr() - pbase()); }

protected:
    int_type overflow(int_type) override { return traits_type::eof(); }
};

// Prints ob into buffer, or stores it; false when it does not fit.
bool printInto(const Object& ob, char* buffer, size_t length, bool useStoreOn = false) {
    FixedBuffer fixed(buffer, length);
    std::ostream os(&fixed);
    if (useStoreOn)
        ob.storeOn(os);
    else
        ob.printOn(os);
    if (!os) return false;
    buffer[fixed.written()] = 0;
    return true;
}

const int RING = 5;
const size_t RING_START = 10000;
const size_t RING_LIMIT = 50000000;
char* ringBuffers[RING];
size_t ringSizes[RING];
int ringIndex = -1;

IdentSet* deletionSet = 0;

// Identity test hidden from the optimiser: member functions below are asked
// on null and destroyed objects on purpose, and must not have the test folded.
const Object* opaque(const Object* p) {
    asm("" : "+r"(p));
    return p;
}

}  // namespace

Object* const nil = &nilHolder.object;

LockFunction lockObjects = 0, unlockObjects = 0;
int storeReadLockLevel = 1;
int dependentsLockLevel = 2;

void enterObjectRegion(int level) {
    if (lockObjects) lockObjects(level);
}

void leaveObjectRegion(int level) {
    if (unlockObjects) unlockObjects(level);
}

// Object

// The root is abstract on streams: a stream that names it is refused.
static void readAbstractObject(std::istream&, Object*) { setError(RDABSTCLASS, SEV_ERROR, "Object"); }
static void readAbstractObject(BinIstream&, Object*) { setError(RDABSTCLASS, SEV_ERROR, "Object"); }

Class class_Object(0, "Object", 1, QUILL_IDENT(Object, 1), sizeof(Object), readAbstractObject,
                   readAbstractObject, 0, 0, 0, 0);

Object::Object() : magic(OBJECT_MAGIC), cbackData(0) {
    if (!nilBuilt) buildNil();
}

Object::Object(const Object&) : Object() {}

Object::~Object() noexcept(false) {
    // While an error unwinds, a second one would end the process: a dead
    // member met on the way is passed over.
    if (magic != OBJECT_MAGIC) {
        if (std::uncaught_exceptions() > 0) return;
        setError(BADOBJECT, SEV_ERROR, (unsigned long)(uintptr_t)this, "~Object");
    }
    if (this == nil) return;
    releaseReadObject(this);
    if (cbackData) destroyCbacks(*this);
    // A plain store would be dropped by the optimiser, as the object's
    // lifetime ends here; the cleared word is what makes a stale pointer fail.
    *const_cast<volatile unsigned*>(&magic) = 0;
}

void Object::checkContents(const char*) const {}
Object* Object::lookupHook(void*) const { return nil; }
Class* Object::isA() const { return &class_Object; }
bool Object::isEqual(const Object& ob) const { return this == &ob; }

int Object::compare(const Object&) const {
    derivedClassResponsibility("compare");
    return 0;
}

unsigned Object::hash() const { return unsigned(uintptr_t(this)); }
Class* Object::species() const { return isA(); }
unsigned Object::capacity() const { return 0; }
unsigned Object::size() const { return 0; }
void Object::scanFrom(std::istream&) { derivedClassResponsibility("scanFrom"); }
void Object::printOn(std::ostream& os) const { os << className(); }
void Object::clearCopiedState() { cbackData = 0; }
void Object::deepenShallowCopy() {}
void Object::deepDeleteContents() {}

const char* Object::className() const { return isA()->name(); }
Class* Object::baseClass() const { return isA()->base(); }
const char* Object::classIdent() const { return isA()->ident(); }
unsigned Object::classSignature() const { return isA()->signature(); }
unsigned Object::classReadVersion() const { return isA()->readVersion(); }

bool Object::isKindOf(const Class& c) const {
    const Object* self = opaque(this);
    if (!self || self->magic != OBJECT_MAGIC) return false;
    for (const Class* k = isA(); k; k = k->base())
        if (k == &c) return true;
    return false;
}

bool Object::isMemberOf(const Class& c) const {
    const Object* self = opaque(this);
    return self && self->magic == OBJECT_MAGIC && isA() == &c;
}

bool Object::isSpecies(const Class& c) const {
    const Object* self = opaque(this);
    return self && self->magic == OBJECT_MAGIC && species() == &c;
}

bool Object::operator==(const Object& ob) const { return this == &ob || isEqual(ob); }
bool Object::operator==(const char* text) const { return *this == String(text); }
bool Object::operator!=(const char* text) const { return *this != String(text); }
bool Object::operator<(const char* text) const { return *this < String(text); }
bool Object::operator<=(const char* text) const { return *this <= String(text); }
bool Object::operator>(const char* text) const { return *this > String(text); }
bool Object::operator>=(const char* text) const { return *this >= String(text); }

Object* Object::shallowCopy() const {
    if (this == nil) return nil;
    unsigned n = isA()->size();
    Object* copy = static_cast<Object*>(operator new(n));
    memcpy(static_cast<void*>(copy), static_cast<const void*>(this), n);
    copy->clearCopiedState();
    return copy;
}

Object* Object::deepCopy() const {
    Object* copy = shallowCopy();
    if (copy != nil) copy->deepenShallowCopy();
    return copy;
}

Object& Object::operator=(const Object& rhs) {
    if (&rhs == this) return *this;
    QASSERT(isA() == rhs.isA());
    CbackData* ownCallbacks = cbackData;  // the listeners stay with this object
    memcpy(static_cast<void*>(this), static_cast<const void*>(&rhs), isA()->size());
    clearCopiedState();
    cbackData = ownCallbacks;
    return *this;
}

Object& Object::deepAssign(const Object& rhs) {
    if (&rhs == this) return *this;
    QASSERT(isA() == rhs.isA());
    deepDeleteContents();
    Object::operator=(rhs);
    deepenShallowCopy();
    return *this;
}

const char* Object::asCharPointer() const {
    if (ringIndex < 0) {
        for (int i = 0; i < RING; ++i) {
            ringSizes[i] = RING_START;
            ringBuffers[i] = static_cast<char*>(objectAlloc(RING_START));
            ringBuffers[i][0] = ringBuffers[i][RING_START - 1] = 0;
        }
        ringIndex = 0;
    }
    char*& buffer = ringBuffers[ringIndex];
    size_t& length = ringSizes[ringIndex];
    while (!printInto(*this, buffer, length)) {
        if (length > RING_LIMIT)
            setError(GENERICERR, SEV_ERROR, "FileCltn::writeOnBuffer()", "",
                     "Write error or object bigger of ", formatText("%lu bytes", length));
        objectFree(buffer);
        length *= 2;
        buffer = static_cast<char*>(objectAlloc(length));
        buffer[0] = buffer[length - 1] = 0;
    }
    const char* result = buffer;
    ringIndex = (ringIndex + 1) % RING;
    return result;
}

const char* Object::asCharPointer(char* buffer, size_t length, bool useStoreOn) const {
    if (length == 0 || !printInto(*this, buffer, length, useStoreOn)) return 0;
    return buffer;
}

void Object::derivedClassResponsibility(const char* method) const {
    setError(DRVDCLASSRSP, SEV_ERROR, className(), method);
}

void Object::shouldNotImplement(const char* method) const {
    setError(ILLEGALMETHOD, SEV_ERROR, className(), method);
}

void Object::notYetImplemented(const char* method) const { setError(NOTYET, SEV_ERROR, className(), method); }

void Object::assertArgClass(const Object& ob, const Class& expected, const char* method) const {
    if (!ob.isMemberOf(expected))
        setError(BADARGCLM, SEV_ERROR, className(), method, expected.name(), className(), method,
                 ob.className());
}

void Object::assertArgSpecies(const Object& ob, const Class& expected, const char* method) const {
    if (!ob.isSpecies(expected))
        setError(BADARGSPM, SEV_ERROR, className(), method, expected.name(), className(), method,
                 ob.species()->name());
}

void Object::assertArgKindOf(const Object& ob, const Class& expected, const char* method) const {
    if (!ob.isKindOf(expected))
        setError(BADARGCLM, SEV_ERROR, className(), method, expected.name(), className(), method,
                 ob.className());
}

void* Object::operator new(size_t n) { return objectAlloc(n); }

void Object::operator delete(void* p) {
    // A delete of nil is refused by ~Nil; its storage is not ours to free, and
    // the destructors have reset its table, which is built again here.
    if (p == nil) {
        new (p) Nil;
        return;
    }
    objectFree(p);
}

// Nil

// nil is never read: a stream refers to it as "@0 ".
static void readNil(std::istream&, Object*) {
    setError(ILLEGALMETHOD, SEV_ERROR, "Nil", "reader constructor");
}
static void readNil(BinIstream&, Object*) { setError(ILLEGALMETHOD, SEV_ERROR, "Nil", "reader constructor"); }

Class class_Nil(&class_Object, "Nil", 1, QUILL_IDENT(Nil, 1), sizeof(Nil), readNil, readNil, 0, 0, 0, 0);

Nil::Nil() {}

Nil::~Nil() noexcept(false) {
    if (this == nil) setError(DELETENIL, SEV_WARNING);
}

Class* Nil::isA() const { return &class_Nil; }
bool Nil::isEqual(const Object& ob) const { return this == &ob; }

int Nil::compare(const Object&) const {
    shouldNotImplement("compare");
    return 0;
}

void Nil::printOn(std::ostream& os) const { os << "NIL"; }
void Nil::storer(std::ostream&) const { shouldNotImplement("storer"); }
void Nil::storer(BinOstream&) const { shouldNotImplement("storer"); }

// Free functions

std::ostream& operator<<(std::ostream& os, const Object& ob) {
    ob.printOn(os);
    return os;
}

bool validObject(const void* p) {
    if (!p) return false;
    if (p == nil && !classesInitialized) return true;
    if (uintptr_t(p) % alignof(void*) != 0) return false;
    uint32_t word;
    if (!readWordSafely(static_cast<const char*>(p) + sizeof(void*), &word)) return false;
    return word == OBJECT_MAGIC;
}

void validate(const Object* p, const char* functionName, int deep) {
    if (p == nil && !classesInitialized) return;
    if (!validObject(p)) setError(BADOBJECT, SEV_ERROR, (unsigned long)(uintptr_t)p, functionName);
    if (deep) p->checkContents(functionName);
}

Object* castCheck(const Class& c, const Object* p, const char* file, int line) {
    if (!validObject(p)) setError(CASTBADOB, SEV_ERROR, file, line, c.name());
    if (!p->isKindOf(c)) setError(CASTBADCL, SEV_ERROR, file, line, c.name(), p->className());
    return const_cast<Object*>(p);
}

void deepDelete(Object* ob) {
    if (ob == nil) return;
    IdentSet* set;
    {
        ObjectRegion region(storeReadLockLevel);
        bool outermost = deletionSet == 0;
        if (outermost) deletionSet = new IdentSet(16);  // grows with what it meets
        // An object already met is not entered again, so that cycles end.
        if (deletionSet->findSame(*ob) == nil) {
            deletionSet->add(*ob);
            try {
                ob->deepDeleteContents();
            } catch (...) {
                if (outermost) {
                    delete deletionSet;  // what was collected stays: it may be damaged
                    deletionSet = 0;
                }
                throw;
            }
        }
        if (!outermost) return;
        set = deletionSet;
        deletionSet = 0;
    }
    if (set->size() <= 1)
        delete ob;
    else
        set->deleteContents();
    delete set;
}
