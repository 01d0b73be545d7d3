// Class descriptors: the list of all classes, signatures, the class dictionary.
#include "quill/qclass.h"

#include <cstring>
#include <iostream>

#include "quill/assoc.h"
#include "quill/dictnary.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

// Constant-initialised, so that descriptors may link themselves in any order
// of static construction.
Class* allClasses = 0;
Dictionary* classesDictionary = 0;

unsigned rotateLeft32(unsigned x, int n) { return (x << n) | (x >> (32 - n)); }

void computeSignatures() {
    for (Class* c = allClasses; c; c = c->next()) {
        unsigned s = 0;
        for (Class* p = c; p; p = p->base()) s = rotateLeft32(s, 4) ^ p->version();
        c->setSignature(s);
    }
}

void fillDictionary() {
    classesDictionary = new Dictionary(512);
    for (Class* c = allClasses; c; c = c->next()) classesDictionary->atPut(new String(c->name()), c);
}

void printClasses() {
    OrderedCltn names;
    classesDictionary->addKeysTo(names);
    names.sort();
    std::cout << "Classes linked: ";
    names.printOn(std::cout);
    std::cout << std::endl;
}

void runInitors() {
    for (Class* c = allClasses; c; c = c->next()) c->runInitor();
}

}  // namespace

bool classesInitialized = false;
bool printClassesFlag = false;

Class class_Class(&class_Object, "Class", 1, QUILL_IDENT(Class, 1), sizeof(Class),
                  QuillReader<Class, std::istream>::read, QuillReader<Class, BinIstream>::read, 0, 0, 0, 0);

Class::Class(Class* base, const char* name, unsigned version, const char* ident, unsigned instanceSize,
             TextReader textReader, BinaryReader binaryReader, ClassFunction early, ClassFunction initor,
             Creator creator, Destroyer destroyer)
    : textReader(textReader),
      binaryReader(binaryReader),
      storeNumber(0),
      base_(base),
      nextClass(allClasses),
      className_(name),
      ident_(ident),
      signature_(0),
      version_(version),
      instanceSize_(instanceSize),
      initor(initor),
      creator(creator),
      upgrader(0),
      readVersion_(0),
      destroyer(destroyer),
      terminator(0) {
    allClasses = this;
    if (early) early(this);
}

Class::Class() : Object() { shouldNotImplement("creator"); }

Class::Class(const Class&) : Object() { shouldNotImplement("creator"); }

Class::Class(std::istream& is, Object* where) : Object(is, where) {
    shouldNotImplement("reader constructor");
}

Class::Class(BinIstream& is, Object* where) : Object(is, where) { shouldNotImplement("reader constructor"); }

void Class::storer(std::ostream&) const { shouldNotImplement("storer"); }
void Class::storer(BinOstream&) const { shouldNotImplement("storer"); }

Class* Class::isA() const { return &class_Class; }
bool Class::isEqual(const Object& ob) const { return this == &ob; }
unsigned Class::hash() const { return Object::hash(); }
unsigned Class::size() const { return instanceSize_; }
void Class::printOn(std::ostream& os) const { os << className_; }

int Class::compare(const Object& ob) const {
    QASSERT(ob.isSpecies(class_Class));
    return strcmp(className_, static_cast<const Class&>(ob).className_);
}

Object* Class::deepCopy() const {
    shouldNotImplement("deepCopy");
    return nil;
}

Object* Class::create() const {
    if (!creator) setError(ILLEGALMETHOD, SEV_ERROR, className_, "creator");
    return creator();
}

void Class::destroy(Object* ob) const { destroyer(ob); }

Class::Upgrader Class::setUpgrader(Upgrader u) {
    Upgrader old = upgrader;
    upgrader = u;
    return old;
}

Class::ClassFunction Class::setTerminator(ClassFunction t) {
    ClassFunction old = terminator;
    terminator = t;
    return old;
}

bool Class::checkSignature(unsigned found) {
    readVersion_ = found;
    return found == signature_ || (upgrader && upgrader(found));
}

void Class::runInitor() {
    if (!initor) return;
    if (printClassesFlag) std::cout << "Starting class initor of " << className_ << std::endl;
    initor(this);
}

void Class::runTerminator() {
    if (!terminator) return;
    if (printClassesFlag) std::cout << "Terminating class " << className_ << std::endl;
    terminator(this);
}

Class* Class::first() { return allClasses; }

void Class::initialize() {
    if (classesInitialized) return;
    printClassesFlag = findFlag("-printClasses");
    computeSignatures();
    fillDictionary();
    if (printClassesFlag) printClasses();
    runInitors();
    classesInitialized = true;
}

void Class::terminate() {
    if (!classesInitialized) return;
    classesInitialized = false;
    for (Class* c = allClasses; c; c = c->next()) c->runTerminator();
}

Dictionary& classDictionary() {
    QASSERT_TEXT(classesDictionary != 0, "classes_dictionary != 0");
    return *classesDictionary;
}

Class* findClass(const char* name) {
    if (!classesDictionary) return 0;
    String key(name);
    Object* found = classesDictionary->assocAt(key);
    if (found == nil) return 0;
    return CAST(Class, CAST(Assoc, found)->value());
}

void addClassAlias(const char* aliasName, Class* target) {
    String key(aliasName);
    if (classDictionary().includesKey(key))
        setError(GENERICERR, SEV_ERROR, "DUP_ALIAS", "class name alias ", aliasName,
                 " already present in the class dictionary");
    classesDictionary->atPut(new String(aliasName), target);
}

void addClassAlias(const char* aliasName, const char* existingName) {
    addClassAlias(aliasName, findClass(existingName));
}

void deleteClassDictionary() {
    if (!classesDictionary) return;
    OrderedCltn keys;
    classesDictionary->addKeysTo(keys);
    classesDictionary->deleteContents();  // the pairs; the keys go below
    keys.deleteContents();
    delete classesDictionary;
    classesDictionary = 0;
}
