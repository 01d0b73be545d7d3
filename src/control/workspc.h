// Workspace, the named store that the design and the interpreter share, the model files, and the
// Matlab script "TarnOut.m".
#ifndef CONTROL_WORKSPC_H
#define CONTROL_WORKSPC_H

#include "quill/dictnary.h"
#include "quill/object.h"
#include "quill/orderedc.h"
#include "quill/qclass.h"

extern Class class_Workspace;

// Holds deep copies, owned; the names of the objects that pass structuralCheck are listed apart
// from the others.
class Workspace : public Object {
    DECLARE_MEMBERS(Workspace)
public:
    Workspace();
    ~Workspace() noexcept(false) override;

    // A name already present has its value replaced, in the store and in its list.
    void store(const char* name, const Object& object);
    // The object, or nil after the console line "the name doesn't exists".
    Object* get(const char* name) const;
    bool holds(const char* name) const;
    // Deletes every object and name.
    void clear();
    const OrderedCltn& extendedSystems() const { return extendedNames; }
    const OrderedCltn& others() const { return otherNames; }

    // The Matlab script: opened in the working directory at the first write and kept open until
    // closeMatlab. A system writes its four matrices and its ss line, with a c2d conversion when it
    // is continuous and samplingTime is not 0; a matrix writes one line.
    static void writeMatlab(const Object& object, const char* name, double samplingTime = 0.0);
    static void closeMatlab();
    static void setMatlabDirectory(const char* directory);
    static const char* matlabDirectory();

    // A model file by its extension: ".dyn" a system of any kind, ".mat" a Matrix, ".rat" a
    // RationalFunction. nil when the file cannot be read or holds something else, which the
    // console tells.
    static Object* readModelFile(const char* fileName);

private:
    Dictionary objects;
    OrderedCltn extendedNames;
    OrderedCltn otherNames;
};

// The workspace of the design code.
Workspace& globalWorkspace();

// A result of the design: stored under name in the global workspace, written to the Matlab
// script, and to fileName as a model file when one is given.
void keepResult(const char* name, const Object& object, const char* fileName = 0);

#endif
