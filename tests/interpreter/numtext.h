// Programs of the numeric values for the tests: a main around a body, and the printed forms that the
// language shows, made by the numeric library itself.
#ifndef TESTS_INTERPRETER_NUMTEXT_H
#define TESTS_INTERPRETER_NUMTEXT_H

#include <string>

#include "quill/object.h"
#include "quill/quillstr.h"
#include "runtext.h"

inline ProgramRun runMain(const std::string& body) {
    return runText("int main() {\n" + body + "\nreturn 0;\n}\n");
}

// What cout << value writes for a numeric object.
inline std::string shown(const Object& ob) { return ob.asCharPointer(); }

// What cout << x writes for a float.
inline std::string number(double x) { return formatText("%g", x); }

// Whether the message of a failed run starts with the text.
inline bool failsWith(const ProgramRun& run, const std::string& text) {
    return run.message.compare(0, text.size(), text) == 0;
}

#endif
