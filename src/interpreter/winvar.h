// WindowVar, the base of the left-value windows on a matrix or a vector of the language.
#ifndef INTERPRETER_WINVAR_H
#define INTERPRETER_WINVAR_H

#include <cstdint>

#include "interpreter/variable.h"

class AlgebraVar;

extern Class class_WindowVar;

// An assignment writes through the window; any other operation is that of a copy of what the
// window shows. A window on a temporary holds a copy of it; one that outlives its variable fails
// when it is used.
class WindowVar : public Variable {
    DECLARE_MEMBERS(WindowVar)
public:
    ~WindowVar() noexcept(false) override;

    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    Variable* getUnaryOperationType(int op) override;
    Variable* doUnaryOperation(int op) override;
    // 0 the empty window, 1 the same window as another.
    int constructorIndex(const OrderedCltn& types) const override;
    void deepenShallowCopy() override;

protected:
    // source is the variable shown; a temporary one is copied and owned.
    WindowVar(AlgebraVar* source, bool owned);
    // The type of the values the window gives ("Matrix", "Vector").
    virtual const char* valueType() const = 0;
    // A new value holding a copy of what the window shows.
    virtual Variable* valueCopy() const = 0;
    virtual bool writes(const Variable* other, int op) const = 0;
    virtual void write(const Variable* other, int op) = 0;
    // The source, when it is still alive as a variable of the class given.
    AlgebraVar& liveSource(const Class& expected, const char* lostMessage) const;
    // The source of another window of the same class: shared, or copied when that one owns it.
    void takeSource(const WindowVar& other);
    void ownSource(AlgebraVar* fresh);

private:
    void release();

    AlgebraVar* source;
    std::int32_t ownsSource;
};

#endif
