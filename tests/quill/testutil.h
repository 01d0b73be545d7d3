// Helpers of the object core's tests: the text of a raised error, of a printed object, of a file.
#ifndef TESTS_QUILL_TESTUTIL_H
#define TESTS_QUILL_TESTUTIL_H

#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>

#include "quill/object.h"
#include "quill/quillerr.h"

// Runs f and answers the message of the TarnException it raises, or
// "no error" when it raises none.
inline std::string raisedText(const std::function<void()>& f, int* code = 0, int* severity = 0) {
    try {
        f();
    } catch (TarnException* e) {
        std::string text = e->message().asCharPointer();
        if (code) *code = e->code();
        if (severity) *severity = e->severity();
        delete e;
        return text;
    }
    return "no error";
}

// Runs f and answers what it wrote on the console (std::cout).
inline std::string consoleOf(const std::function<void()>& f) {
    std::ostringstream captured;
    std::streambuf* old = std::cout.rdbuf(captured.rdbuf());
    try {
        f();
    } catch (...) {
        std::cout.rdbuf(old);
        throw;
    }
    std::cout.rdbuf(old);
    return captured.str();
}

// What printOn writes for ob.
inline std::string printedText(const Object& ob) {
    std::ostringstream os;
    ob.printOn(os);
    return os.str();
}

// The whole text of a file; empty when it cannot be read.
inline std::string fileText(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

#endif
