// ModuleVar, a whole interpreted program as a type: Module<"file">, its values and the debugger hook.
#ifndef INTERPRETER_MODVAR_H
#define INTERPRETER_MODVAR_H

#include <cstdint>

#include "interpreter/variable.h"

class CodeParser;
class Executer;

extern Class class_ModuleVar;

// Makes the debugger panel of a module's run: parser, executer, file name, go at once. Installed by the
// window library.
typedef Object* (*ModuleDebugger)(CodeParser& parser, Executer& executer, const char* fileName, bool go);
ModuleDebugger setModuleDebugger(ModuleDebugger maker);  // answers the former one

// Read once at start-up: -debugModule or -debugModuleGo opens a debugger on
// the run of every module value; -debugModuleGo lets it run at once.
extern bool debugModule;
extern bool debugModuleGo;
// Consumes the two flags from the argument store.
void readModuleOptions();

// The registered prototype "Module" is a bare template. Module<"file"> compiles
// the file once into an instance prototype, which owns the parser; each value
// is a clone that shares the compiled tree and runs its own Executer, so the
// module's globals are the value's state and its functions are its methods.
class ModuleVar : public Variable {
    DECLARE_MEMBERS(ModuleVar)
public:
    ModuleVar();  // the bare template
    ~ModuleVar() noexcept(false) override;

    const String& getType() const override { return typeName; }
    int getLevel() const override { return 200; }

    // Only the default constructor, and none on the bare template.
    int constructorIndex(const OrderedCltn& types) const override;
    // Runs the module's globals and main in a new Executer, under the
    // debugger when debugModule is set. The error flag is not touched.
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    // Every function of the module whose parameters accept the types.
    FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const override;
    Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) override;
    // "Module<" + file + ">" for one constant non-empty string.
    String getTemplateName(const OrderedCltn& values) const override;
    // Compiles the file (".cxx" added to a name without extension).
    Variable* makeTemplate(const OrderedCltn& values) const override;
    // A copy shares the parser, owns none, and has no Executer or panel until constructed.
    void deepenShallowCopy() override;

private:
    ModuleVar(const String& typeName, CodeParser* parser, const String& fileName);
    // The bare template has no values: "The type Module is a template".
    void checkInstance() const;
    // The error of the module's run or call, named after the type and this value.
    [[noreturn]] void moduleError(const String& message) const;
    void openDebugger();

    String typeName;
    Object* debugPanel;  // owned; null unless debugging
    CodeParser* parser;  // null in the bare template
    Executer* executer;  // owned; null until constructed
    std::int32_t ownsParser;
    String fileName;
};

#endif
