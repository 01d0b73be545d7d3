// Class, the run-time descriptor of every class, and the class dictionary.
#ifndef QUILL_QCLASS_H
#define QUILL_QCLASS_H

#include <iosfwd>
#include <new>
#include <type_traits>

#include "quill/object.h"

class Dictionary;
class BinIstream;

extern Class class_Class;

class Class : public Object {
public:
    typedef void (*TextReader)(std::istream&, Object* where);
    typedef void (*BinaryReader)(BinIstream&, Object* where);
    typedef void (*ClassFunction)(Class*);
    typedef Object* (*Creator)();
    typedef void (*Destroyer)(Object*);
    typedef bool (*Upgrader)(unsigned oldSignature);

    Class(Class* base, const char* name, unsigned version, const char* ident, unsigned instanceSize,
          TextReader textReader, BinaryReader binaryReader, ClassFunction early, ClassFunction initor,
          Creator creator, Destroyer destroyer);
    Class();                                 // refused: "creator"
    Class(const Class&);                     // refused: "creator"
    Class(std::istream& is, Object* where);  // refused: "reader constructor"
    Class(BinIstream& is, Object* where);    // refused: "reader constructor"

    Class* isA() const override;
    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    unsigned size() const override;  // the instance size
    void printOn(std::ostream& os) const override;
    Object* deepCopy() const;                      // refused: "deepCopy"
    void storer(std::ostream& os) const override;  // refused: "storer"
    void storer(BinOstream& os) const override;    // refused: "storer"

    const char* name() const { return className_; }
    const char* ident() const { return ident_; }
    Class* base() const { return base_; }
    Class* next() const { return nextClass; }
    unsigned signature() const { return signature_; }
    unsigned version() const { return version_; }
    unsigned readVersion() const { return readVersion_; }
    unsigned instanceSize() const { return instanceSize_; }

    Object* create() const;
    void destroy(Object* ob) const;
    Upgrader setUpgrader(Upgrader u);
    ClassFunction setTerminator(ClassFunction t);
    // Records a signature found on a stream; answers whether it can be read.
    bool checkSignature(unsigned found);
    void setSignature(unsigned s) { signature_ = s; }
    void runInitor();
    void runTerminator();

    TextReader textReader;
    BinaryReader binaryReader;
    unsigned storeNumber;  // number of this class in the store in progress, 0 if none

    static Class* first();  // head of the list of all classes, last constructed first
    static void initialize();
    static void terminate();

private:
    Class* base_;
    Class* nextClass;
    const char* className_;
    const char* ident_;
    unsigned signature_;
    unsigned version_;
    unsigned instanceSize_;
    ClassFunction initor;
    Creator creator;
    Upgrader upgrader;
    unsigned readVersion_;
    Destroyer destroyer;
    ClassFunction terminator;
};

Dictionary& classDictionary();
Class* findClass(const char* name);  // null when the name is unknown
void addClassAlias(const char* aliasName, Class* target);
void addClassAlias(const char* aliasName, const char* existingName);
void deleteClassDictionary();

extern bool classesInitialized;
extern bool printClassesFlag;

// Declares the members every class defines: its descriptor's isA().
#define DECLARE_MEMBERS(ClassName) \
public:                            \
    Class* isA() const override;   \
                                   \
private:

#define QUILL_IDENT(ClassName, version) __FILE__ ": " #ClassName "  v. " #version

// The stream readers of a class: they construct an instance in place with its
// stream constructors. A class without them has none: reading it is refused,
// and so is storing it, since it could not be read back.
template <class T, class Stream, bool = std::is_constructible<T, Stream&, Object*>::value>
struct QuillReader {
    static void read(Stream& s, Object* where) { new (where) T(s, where); }
};
template <class T, class Stream>
struct QuillReader<T, Stream, false> {
    static constexpr void (*read)(Stream&, Object*) = nullptr;
};

#define QUILL_DESCRIPTOR(ClassName, BaseName, version, initor, creator)                              \
    static void destroy_##ClassName(Object* ob) { static_cast<ClassName*>(ob)->~ClassName(); }       \
    Class class_##ClassName(&class_##BaseName, #ClassName, version, QUILL_IDENT(ClassName, version), \
                            sizeof(ClassName), QuillReader<ClassName, std::istream>::read,           \
                            QuillReader<ClassName, BinIstream>::read, 0, initor, creator,            \
                            destroy_##ClassName);                                                    \
    Class* ClassName::isA() const { return &class_##ClassName; }

// Defines the descriptor class_<ClassName> of a class with a default
// constructor, with its creator, destroyer and readers. initor may be 0.
#define DEFINE_CLASS(ClassName, BaseName, version, initor)        \
    static Object* create_##ClassName() { return new ClassName; } \
    QUILL_DESCRIPTOR(ClassName, BaseName, version, initor, create_##ClassName)

// The same for a class without a default instance (abstract, or one whose
// default construction is refused): it has no creator.
#define DEFINE_ABSTRACT_CLASS(ClassName, BaseName, version, initor) \
    QUILL_DESCRIPTOR(ClassName, BaseName, version, initor, 0)

#endif
