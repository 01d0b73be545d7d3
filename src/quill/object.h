// Object, the root of every class, and Nil, the "no object" of the library.
#ifndef QUILL_OBJECT_H
#define QUILL_OBJECT_H

#include <cstddef>
#include <iosfwd>

class Class;
class Object;
class String;
class OrderedCltn;
class BinOstream;
class BinIstream;
struct CbackData;
class Cback;
class CallData;
class Symbol;

// A listener: a plain function, or (with a consumer) a function that calls a
// member function on the consumer, made by cbackMethod<&Class::member>.
typedef void (*CbackFunction)(Cback& cb);
typedef void (*CbackMethod)(Object& consumer, Cback& cb);

extern Class class_Object;
extern Class class_Nil;

// The unique Nil instance: "no object" in collections, look-ups and iterators.
extern Object* const nil;

const unsigned OBJECT_MAGIC = 0xA5A5A5A5u;

class Object {
public:
    Object();
    Object(const Object&);  // copies nothing: the copy is alive and has no callbacks
    // Stream constructors: every class has a pair that chains to its base's
    // and reads its own fields in the order its storer wrote them.
    Object(std::istream& is, Object* where);
    Object(BinIstream& is, Object* where);
    virtual ~Object() noexcept(false);

    // Stores the object, or a reference to it when this store already wrote it.
    virtual void storeOn(std::ostream& os) const;
    virtual void storeOn(BinOstream& os) const;
    // Writes the fields: each class calls its base's storer first; Object's
    // writes the header (class name or number, and the opening brace).
    virtual void storer(std::ostream& os) const;
    virtual void storer(BinOstream& os) const;

    virtual void checkContents(const char* functionName) const;
    // A look-up entry kept for hosts that extend objects; answers nil.
    virtual Object* lookupHook(void* key) const;
    virtual Class* isA() const;
    virtual bool isEqual(const Object& ob) const;
    virtual int compare(const Object& ob) const;
    virtual unsigned hash() const;
    virtual Class* species() const;
    virtual unsigned capacity() const;
    virtual unsigned size() const;
    virtual void scanFrom(std::istream& is);
    virtual void printOn(std::ostream& os) const;
    virtual const char* asCharPointer() const;
    virtual void clearCopiedState();
    virtual void deepenShallowCopy();
    virtual void deepDeleteContents();

    // Callbacks and dependents (quill/cback.cpp). A class that overrides one
    // of the virtual forms brings the others back with a using-declaration.
    virtual Cback& addCback(Cback& cb);
    // By identity with removeSame, else the first match of the pattern;
    // answers the Cback taken off the list (not deleted) or nil.
    virtual Object* removeCback(Cback& pattern, bool removeSame = false);
    virtual Cback& addConsumerCback(Cback& cb);
    virtual Object* removeConsumerCback(Cback& cb);
    // Calls the listeners of event, and those of AnyCback, in order of addition.
    virtual void cbackOn(const Symbol& event, CallData* callData = 0);
    // The receiving end of dependents.
    virtual bool update(Object& sender, CallData* callData, Object& userData);

    Cback& addCback(const Symbol& event, CbackFunction function, Object* userData = 0,
                    CallData* callData = 0);
    Cback& addCback(const Symbol& event, CbackMethod method, Object& consumer, Object* userData = 0);
    // Delete the first match; answer its userData, or nil when none matched.
    Object* removeCback(const Symbol& event, CbackFunction function, Object* userData = 0);
    Object* removeCback(const Symbol& event, CbackMethod method, Object& consumer, Object* userData = 0);
    void removeCbacks(const Symbol& event, Object* consumer = 0);  // every match
    void removeAllCbacks();
    // Drops the dependents' Cbacks that this object consumes, from both lists.
    void removeConsumerCbacks();
    bool hasCback(const Symbol& event) const;

    void changed(CallData* callData = 0);
    void addDependent(Object& ob, Object& userData = *nil);
    void removeDependent(Object& ob, Object& userData = *nil);
    void removeDependents(Object& ob);
    void removeAllDependents();
    // Adds the Cbacks of the dependents to result.
    OrderedCltn& getDependents(OrderedCltn& result) const;
    // The listener of addDependent: update on the consumer.
    void dependentUpdate(Cback& cb);

    // Queues a Cback that raises event on this object at a time of currentTime().
    Cback& wakeAt(double time, const Symbol& event, CallData* callData = 0);
    Cback& wakeIn(double delay, const Symbol& event, CallData* callData = 0);
    // Removes and deletes the entry; false when the queue doesn't hold it.
    bool cancelWakeup(Cback& cb);

    const char* className() const;
    Class* baseClass() const;
    const char* classIdent() const;
    unsigned classSignature() const;
    unsigned classReadVersion() const;

    bool isKindOf(const Class& c) const;
    bool isMemberOf(const Class& c) const;
    bool isSpecies(const Class& c) const;

    bool operator==(const Object& ob) const;
    bool operator!=(const Object& ob) const { return !(*this == ob); }
    bool operator<(const Object& ob) const { return compare(ob) < 0; }
    bool operator<=(const Object& ob) const { return compare(ob) <= 0; }
    bool operator>(const Object& ob) const { return compare(ob) > 0; }
    bool operator>=(const Object& ob) const { return compare(ob) >= 0; }
    bool operator==(const char* text) const;
    bool operator!=(const char* text) const;
    bool operator<(const char* text) const;
    bool operator<=(const char* text) const;
    bool operator>(const char* text) const;
    bool operator>=(const char* text) const;

    Object* shallowCopy() const;
    Object* deepCopy() const;
    Object& operator=(const Object& rhs);  // shallow: bytewise over this
    Object& deepAssign(const Object& rhs);

    // Prints into a caller's buffer instead of the ring, by storeOn when
    // useStoreOn is set; answers null when it does not fit.
    const char* asCharPointer(char* buffer, size_t length, bool useStoreOn = false) const;

    void derivedClassResponsibility(const char* method) const;
    void shouldNotImplement(const char* method) const;
    void notYetImplemented(const char* method) const;

    void assertArgClass(const Object& ob, const Class& expected, const char* method) const;
    void assertArgSpecies(const Object& ob, const Class& expected, const char* method) const;
    void assertArgKindOf(const Object& ob, const Class& expected, const char* method) const;

    static void* operator new(size_t n);
    static void* operator new(size_t, void* where) { return where; }
    static void operator delete(void* p);
    static void operator delete(void*, void*) {}

    unsigned magic;        // OBJECT_MAGIC while alive, 0 after destruction
    CbackData* cbackData;  // callbacks of this object, created on demand
};

class Nil : public Object {
public:
    Nil();
    ~Nil() noexcept(false) override;
    Class* isA() const override;
    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;  // refused: nil is stored as "@0 "
    void storer(BinOstream& os) const override;
};

// Prints any object by its printOn.
std::ostream& operator<<(std::ostream& os, const Object& ob);

// Liveness test that never faults, whatever the pointer value.
bool validObject(const void* p);
// Raises BADOBJECT unless p is alive; with deep, checks its members too.
void validate(const Object* p, const char* functionName, int deep = 0);
// Checked down-cast: raises CASTBADOB or CASTBADCL.
Object* castCheck(const Class& c, const Object* p, const char* file, int line);
// Deletes an object graph in which members may be shared: each once.
void deepDelete(Object* ob);

// Critical regions of the object core. This program runs on one thread and
// installs no lock functions; the regions stay marked for a host that does.
typedef void (*LockFunction)(int level);
extern LockFunction lockObjects, unlockObjects;
extern int storeReadLockLevel;   // stores, reads and the copying machinery
extern int dependentsLockLevel;  // dependents and callbacks
void enterObjectRegion(int level);
void leaveObjectRegion(int level);

// Holds a region for the lifetime of a scope, exceptions included.
class ObjectRegion {
public:
    explicit ObjectRegion(int level) : level(level) { enterObjectRegion(level); }
    ~ObjectRegion() { leaveObjectRegion(level); }
    ObjectRegion(const ObjectRegion&) = delete;
    ObjectRegion& operator=(const ObjectRegion&) = delete;

private:
    int level;
};

#define CAST(ClassName, p) (static_cast<ClassName*>(castCheck(class_##ClassName, (p), __FILE__, __LINE__)))

#endif
