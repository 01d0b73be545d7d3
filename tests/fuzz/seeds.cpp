// Writes the first inputs of a reader harness into a directory:
//   fuzz_seeds objstream DIR           both stored forms of every class
//   fuzz_seeds model DIR FILE.dyn...   the model files given, stored matrices,
//                                      rational functions and matrix literals
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "fuzzsupport.h"
#include "quill/all.h"

namespace {

void write(const std::string& dir, int& n, char reader, const std::string& text) {
    if (text.empty()) return;
    std::ofstream(dir + "/seed-" + std::to_string(n++), std::ios::binary) << reader << text;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || (strcmp(argv[1], "objstream") != 0 && strcmp(argv[1], "model") != 0)) {
        std::cerr << "usage: fuzz_seeds objstream|model DIR [FILE...]" << std::endl;
        return 2;
    }
    startFuzzedLibrary();
    std::string dir = argv[2];
    int n = 0;
    bool objstream = strcmp(argv[1], "objstream") == 0;
    for (Object* ob : seedObjects()) {
        if (objstream) {
            write(dir, n, 0, textOf(*ob));
            write(dir, n, 1, binaryOf(*ob));
        } else if (ob->isA()->name() == std::string("Matrix") || ob->isA()->name() == std::string("RationalFunction")) {
            write(dir, n, ob->isA()->name()[0] == 'M' ? 1 : 2, textOf(*ob));
        }
        deepDelete(ob);
    }
    if (objstream) return 0;
    for (int i = 3; i < argc; ++i) write(dir, n, 0, readFile(argv[i]));
    for (const char* literal : {"[1 2 3;4 5 6]", "[0.5, -1e3; 2 3]", "[1;2;3]", "[]"}) write(dir, n, 3, literal);
    return 0;
}
