// ScalarPool: char, int and float values of finished scopes kept for the next call's arguments.
#ifndef INTERPRETER_SCALARPOOL_H
#define INTERPRETER_SCALARPOOL_H

#include <vector>

#include "interpreter/scalar.h"

// A call that binds a scalar argument takes a kept value of its class, whose name's buffer
// already holds a name: neither the value nor its name is allocated again.
class ScalarPool {
public:
    ScalarPool() = default;
    ScalarPool(const ScalarPool&) = delete;
    ScalarPool& operator=(const ScalarPool&) = delete;
    ~ScalarPool();

    // A value of the class of rank level holding x in that class's form, named name.
    ScalarVar* take(int level, double x, const String& name);
    // Keeps v when it is plain and there is room; false leaves v to its owner.
    bool keep(Variable* v);
    // The rank of v's class when v is a char, int or owning float that nothing refers to, 0 otherwise.
    static int plainLevel(Variable* v);

private:
    enum { SPARE_VALUES = 64 };
    static int slot(Class* kind);
    std::vector<ScalarVar*> spare[3];  // char, int, float
};

#endif
