// Harness of the matrix and model-file readers: the first byte chooses the
// reader (a matrix literal, or a model file ending in .dyn, .mat or .rat),
// the rest is the text.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "algebra/all.h"
#include "control/workspc.h"
#include "fuzzsupport.h"
#include "quill/all.h"

namespace {

// A file of this process, removed at exit, that takes each case's text.
std::string caseFile(const char* extension) {
    static std::string base;
    if (base.empty()) {
        const char* dir = getenv("TMPDIR");
        base = std::string(dir && *dir ? dir : "/tmp") + "/tarn-fuzz-" + std::to_string(getpid());
        atexit([] {
            for (const char* e : {".dyn", ".mat", ".rat"}) std::remove((base + e).c_str());
        });
    }
    return base + extension;
}

}  // namespace

DEFINE_FUZZ_ENTRY {
    startFuzzedLibrary();
    if (size == 0) return 0;
    std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    static const char* const extensions[] = {".dyn", ".mat", ".rat"};
    int reader = data[0] % 4;
    if (reader == 3) {
        Matrix m(text.c_str());
        if (!validObject(&m)) abort();
        return 0;
    }
    std::string fileName = caseFile(extensions[reader]);
    std::ofstream(fileName, std::ios::binary | std::ios::trunc) << text;
    Object* ob = Workspace::readModelFile(fileName.c_str());
    if (!validObject(ob)) abort();
    if (ob != nil) deepDelete(ob);
    return 0;
}
