// Workspace: the named store, model files by extension, and the Matlab script.
#include "control/workspc.h"

#include <sys/stat.h>

#include <cstring>
#include <fstream>
#include <iostream>

#include "algebra/matrix.h"
#include "control/discdyn.h"
#include "control/structck.h"
#include "quill/lookupky.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/safefile.h"

namespace {
void initWorkspace(Class* c);
}

DEFINE_CLASS(Workspace, Object, 1, initWorkspace)

Workspace::Workspace() : objects(16), extendedNames(16), otherNames(16) {}

Workspace::~Workspace() noexcept(false) { clear(); }

void Workspace::clear() {
    for (OrderedCltn* names : {&extendedNames, &otherNames}) {
        while (names->size() > 0) {
            Object* name = names->removeLast();
            Object* pair = objects.removeKey(*name);
            delete static_cast<LookupKey*>(pair)->value();
            delete pair;
            delete name;
        }
    }
}

void Workspace::store(const char* name, const Object& object) {
    String key(name);
    Object* copy = object.deepCopy();
    OrderedCltn& list = structuralCheck(object) ? extendedNames : otherNames;
    if (!objects.includesKey(key)) {
        String* owned = new String(name);
        objects.atPut(*owned, *copy);
        list.add(*owned);
        return;
    }
    Object* pair = objects.assocAt(key);
    Object* ownedKey = static_cast<LookupKey*>(pair)->key();
    delete objects.atKey(key, *copy);
    OrderedCltn& former = extendedNames.indexOfSame(*ownedKey) >= 0 ? extendedNames : otherNames;
    if (&former == &list) return;
    former.removeSame(*ownedKey);
    list.add(*ownedKey);
}

bool Workspace::holds(const char* name) const { return objects.includesKey(String(name)); }

Object* Workspace::get(const char* name) const {
    String key(name);
    if (objects.includesKey(key)) return objects.atKey(key);
    std::cout << "the name doesn't exists" << std::endl;
    return nil;
}

// The Matlab script

namespace {

String& directory() {
    static String text;
    return text;
}

// The script is written beside its old version and replaces it when closed.
SafeFile*& script() {
    static SafeFile* file = 0;
    return file;
}

bool isDirectory(const char* path) {
    struct stat info;
    return *path && stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

void writeSystem(std::ostream& os, const DynOp& s, const char* name, double samplingTime) {
    double own = s.samplingTimeOf();
    os << "A" << name << " = " << s.stateA().precision(16) << ";\n";
    os << "B" << name << " = " << s.stateB().precision(16) << ";\n";
    os << "C" << name << " = " << s.stateC().precision(16) << ";\n";
    os << "D" << name << " = " << s.getD().precision(16) << ";\n";
    os << name << " = ss(A" << name << ",B" << name << ",C" << name << ",D" << name;
    if (own != 0.0) os << ", " << own;
    os << ");\n";
    if (own != 0.0 || samplingTime == 0.0) return;
    os << name << "_D = c2d(" << name << ", " << samplingTime << ", 'zho');\n";
    os << "[a_" << name << ", b_" << name << ", c_" << name << ", d_" << name << "] = ssdata(" << name
       << "_D);\n";
}

}  // namespace

void Workspace::setMatlabDirectory(const char* text) { directory() = text; }

const char* Workspace::matlabDirectory() { return directory().asCharPointer(); }

void Workspace::writeMatlab(const Object& object, const char* name, double samplingTime) {
    if (!script()) {
        if (!isDirectory(matlabDirectory())) {
            std::cout << "Warning the working directory for Matlab doesn't exists" << std::endl;
            return;
        }
        std::string path = std::string(matlabDirectory()) + "/TarnOut.m";
        String failure = errorTextOf([&path] { script() = new SafeFile(path.c_str()); });
        if (failure.size() > 0) {
            std::cout << failure.asCharPointer() << std::endl;
            return;
        }
    }
    std::ostream& os = script()->stream();
    if (object.isKindOf(class_DynOp))
        writeSystem(os, static_cast<const DynOp&>(object), name, samplingTime);
    else if (object.isKindOf(class_Matrix))
        os << name << " " << static_cast<const Matrix&>(object).precision(16) << ";\n";
    else
        std::cout << "warning: component \"" << name << "\" has not been loaded" << std::endl;
    os.flush();
}

void Workspace::closeMatlab() {
    if (!script()) return;
    String failure = script()->commitOrMessage();
    if (failure.size() > 0) std::cout << failure.asCharPointer() << std::endl;
    delete script();
    script() = 0;
}

// Model files

Object* Workspace::readModelFile(const char* fileName) {
    const char* dot = std::strrchr(fileName, '.');
    const char* extension = dot ? dot + 1 : "";
    bool isSystem = std::strcmp(extension, "dyn") == 0;
    const char* className = isSystem                             ? ""
                            : std::strcmp(extension, "mat") == 0 ? "Matrix"
                            : std::strcmp(extension, "rat") == 0 ? "RationalFunction"
                                                                 : 0;
    Object* object = nil;
    Algebra reader;
    if (!className || !reader.readFromFile(object, className, fileName)) return nil;
    if (isSystem && !object->isKindOf(class_DynOp)) {
        std::cout << formatText(errorText(RDWRONGCLASS), "DynOp", object->className()) << std::endl;
        delete object;
        return nil;
    }
    return object;
}

namespace {

// The Matlab script is closed, and so complete on disk, when the library stops.
void terminateWorkspace(Class*) { Workspace::closeMatlab(); }
void initWorkspace(Class* c) { c->setTerminator(terminateWorkspace); }

}  // namespace

void keepResult(const char* name, const Object& object, const char* fileName) {
    globalWorkspace().store(name, object);
    Workspace::writeMatlab(object, name);
    if (fileName && !Algebra().storeToFile(object, fileName))
        std::cout << "cannot write the file " << fileName << std::endl;
}

Workspace& globalWorkspace() {
    static Workspace* workspace = new Workspace;
    return *workspace;
}
