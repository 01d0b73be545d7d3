// Helpers of the object core's tests: the text of a raised error.
#ifndef TESTS_QUILL_TESTUTIL_H
#define TESTS_QUILL_TESTUTIL_H

#include <functional>
#include <string>

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

#endif
