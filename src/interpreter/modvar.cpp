// ModuleVar: compiling a module file, running a value's own copy of the program, methods, the debugger hook.
#include "interpreter/modvar.h"

#include <sys/stat.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "interpreter/stringvr.h"
#include "quill/startup.h"

bool debugModule = false;
bool debugModuleGo = false;

namespace {

ModuleDebugger debuggerMaker = 0;

void registerModule(Class*) {
    Variable::registerType(new ModuleVar);
    readModuleOptions();
}

// The text of the one constant string of a template, empty when the values are not that.
String templateText(const OrderedCltn& values) {
    if (values.size() != 1) return String();
    Variable* value = Variable::dereference(Variable::argumentAt(values, 0));
    return value->isKindOf(class_StringVar) ? static_cast<StringVar*>(value)->getValue() : String();
}

// The name with ".cxx" when its last component has no extension.
String sourcePath(const String& name) {
    std::string path = name.asCharPointer();
    std::string::size_type slash = path.rfind('/');
    std::string::size_type dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) path += ".cxx";
    return String(path.c_str());
}

// The files being compiled, outermost first: a module that names itself,
// directly or through others, would compile without end.
std::vector<std::string>& openModules() {
    static std::vector<std::string> files;
    return files;
}

class OpenModule {
public:
    explicit OpenModule(const String& path) { openModules().push_back(path.asCharPointer()); }
    ~OpenModule() { openModules().pop_back(); }
    static bool isOpen(const String& path) {
        for (const std::string& file : openModules())
            if (file == path.asCharPointer()) return true;
        return false;
    }
};

// A folder is not readable as a source, whatever its permissions say.
bool isReadableFile(const char* path) {
    struct stat status;
    return access(path, R_OK) == 0 && stat(path, &status) == 0 && !S_ISDIR(status.st_mode);
}

// A new parser holding the compiled file; the built-ins are registered
// before the parse, as the file's calls to them are checked while parsing.
CodeParser* compileModule(const String& path) {
    if (access(path.asCharPointer(), F_OK) != 0)
        Variable::typeError(String("filename ") + path + " does not exist");
    if (!isReadableFile(path.asCharPointer()))
        Variable::typeError(String("filename ") + path + " cannot be read");
    if (OpenModule::isOpen(path)) Variable::typeError(String("filename ") + path + " is a module of itself");
    OpenModule open(path);
    std::unique_ptr<CodeParser> parser(new CodeParser);
    Executer builtins(parser.get());
    String message = parser->parseFile(path);
    if (message.size() > 0) Variable::typeError(message);
    return parser.release();
}

}  // namespace

DEFINE_CLASS(ModuleVar, Variable, 1, registerModule)

ModuleDebugger setModuleDebugger(ModuleDebugger maker) {
    ModuleDebugger former = debuggerMaker;
    debuggerMaker = maker;
    return former;
}

void readModuleOptions() {
    debugModuleGo = findFlag("-debugModuleGo");
    debugModule = findFlag("-debugModule") || debugModuleGo;
}

ModuleVar::ModuleVar() : typeName("Module"), debugPanel(0), parser(0), executer(0), ownsParser(0) {}

ModuleVar::ModuleVar(const String& typeName, CodeParser* parser, const String& fileName)
    : typeName(typeName), debugPanel(0), parser(parser), executer(0), ownsParser(1), fileName(fileName) {}

// The panel watches the Executer, so it goes first; its destructor takes down its window.
ModuleVar::~ModuleVar() noexcept(false) {
    delete debugPanel;
    delete executer;
    if (ownsParser) delete parser;
}

void ModuleVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    typeName.clearCopiedState();
    fileName.clearCopiedState();
    debugPanel = 0;
    executer = 0;
    ownsParser = 0;
}

String ModuleVar::getTemplateName(const OrderedCltn& values) const {
    String text = templateText(values);
    if (text.size() == 0) typeError("a Module template must be initialized with a const string filename");
    return String("Module<") + text + ">";
}

Variable* ModuleVar::makeTemplate(const OrderedCltn& values) const {
    String name = getTemplateName(values);
    String path = sourcePath(templateText(values));
    std::unique_ptr<CodeParser> compiled(compileModule(path));
    ModuleVar* instance = new ModuleVar(name, compiled.get(), path);
    compiled.release();
    return instance;
}

void ModuleVar::checkInstance() const {
    if (!parser) typeError("The type Module is a template");
}

int ModuleVar::constructorIndex(const OrderedCltn& types) const {
    checkInstance();
    return Variable::constructorIndex(types);
}

void ModuleVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index != 0) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    checkInstance();
    executer = new Executer(parser);
    if (debugModule) openDebugger();
    String message;
    int stopped = 0;
    executer->run(message, stopped);
    if (message.size() > 0) moduleError(message);
}

// Without a debugger in the program (a run without windows) the flag is ignored, and said so.
void ModuleVar::openDebugger() {
    if (debuggerMaker)
        debugPanel = debuggerMaker(*parser, *executer, fileName.asCharPointer(), debugModuleGo);
    else
        std::cerr << "tarn: -debugModule is ignored for " << typeName.asCharPointer()
                  << ", this program has no debugger" << std::endl;
}

FuncDeclare* ModuleVar::getMethod(const String& methodName, const OrderedCltn& types) const {
    FuncDeclare* function = parser ? parser->findFunction(methodName, types, 1) : 0;
    if (!function) unknownMethod(methodName, types);
    return function;
}

Variable* ModuleVar::execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t&) {
    if (!executer) moduleError("is not constructed");
    String message;
    int stopped = 0;
    Variable* result = executer->callFunction(method, arguments, message, stopped);
    if (message.size() > 0) {
        delete result;
        moduleError(message);
    }
    return result;
}

void ModuleVar::moduleError(const String& message) const {
    typeError(String("In ") + typeName + " " + getName() + " " + message);
}
