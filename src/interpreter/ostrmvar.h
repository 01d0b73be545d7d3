// OstreamVar, the output stream of the language: cout, endl and files.
#ifndef INTERPRETER_OSTRMVAR_H
#define INTERPRETER_OSTRMVAR_H

#include <iosfwd>

#include "interpreter/variable.h"

class SafeFile;

extern Class class_OstreamVar;

// << is its one operator: endl writes a new-line and flushes, anything else
// is written by its getValueString, and the result is the stream itself.
class OstreamVar : public Variable {
    DECLARE_MEMBERS(OstreamVar)
public:
    OstreamVar();  // writes nowhere until constructed from a file name
    // Writes on stream, which it does not own.
    OstreamVar(const String& name, std::ostream* stream);
    ~OstreamVar() noexcept(false) override;

    const String& getType() const override;
    int getLevel() const override { return 200; }
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    // 1: a new file of that name, mode 644, owned; it replaces the old file
    // whole when closed, by close() or at the end of the variable.
    int constructorIndex(const OrderedCltn& types) const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    // close(): an owned stream is closed, 1; 0 otherwise.
    FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const override;
    Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) override;
    // A copy writes on the same stream and owns none.
    void deepenShallowCopy() override;

private:
    // Puts an owned file in place; the message of a failure, empty otherwise.
    String closeStream();

    std::ostream* stream;
    std::int32_t ownsStream;
    SafeFile* file;  // the owned file, written beside its old version until closed
};

#endif
