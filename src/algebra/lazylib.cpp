// The libraries opened on demand, each once, kept open for the life of the process.
#include "algebra/lazylib.h"

#include <dlfcn.h>

#include <map>
#include <string>

#include "algebra/blasthreads.h"
#include "quill/quillerr.h"
#include "quill/startup.h"

namespace {

std::map<std::string, void*>& handles() {
    static std::map<std::string, void*> opened;
    return opened;
}

[[noreturn]] void missing(const std::string& what) {
    reportError(SEV_FATAL, what.c_str());
    quillAbort(1);
}

void* open(const char* library) {
    void*& handle = handles()[library];
    if (handle) return handle;
    handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (!handle) missing(std::string("cannot open ") + library + ": " + dlerror());
    blasOpened(handle);
    return handle;
}

}  // namespace

namespace lazylib {

void* entry(const char* library, const char* name) {
    void* address = dlsym(open(library), name);
    if (!address) missing(std::string(library) + " has no entry " + name);
    return address;
}

void* openedHandle(const char* library) {
    auto found = handles().find(library);
    return found == handles().end() ? nullptr : found->second;
}

}  // namespace lazylib
