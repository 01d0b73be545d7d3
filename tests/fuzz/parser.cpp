// Harness of the scanner and the parser of the interpreted language: the text
// is cut into tokens to its end, then parsed. A parse ends with its program or
// its message and leaves nothing allocated.
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "fuzzsupport.h"
#include "interpreter/codepars.h"
#include "quill/all.h"
#include "reverse/scanner.h"

DEFINE_FUZZ_ENTRY {
    startFuzzedLibrary();
    // The text as parseText takes it, up to a null: the scanner asserts that it reads none.
    std::string text(reinterpret_cast<const char*>(data), strnlen(reinterpret_cast<const char*>(data), size));
    expectNothingLeft([&] {
        {
            Scanner scanner(new std::istringstream(text));
            scanner.setRecogniseStrings(text.size() % 2);
            String token;
            int kind = ScanSpace;
            for (size_t n = 0; kind != ScanEOF; ++n) {
                scanner.get(token, kind);
                if (n > text.size() + 1) abort();  // every token but the last consumes a character
            }
        }
        CodeParser parser;
        std::string message = parser.parseText(text.c_str(), 1).asCharPointer();
        if (!message.empty() && message.rfind("[PARSE ERROR] ", 0) != 0) abort();
    });
    return 0;
}
