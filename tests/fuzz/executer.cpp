// Harness of the executer: the text is parsed and, when it parses, run within
// a budget of statements and time, past which the run is stopped. A run ends
// with its output or a message of the interpreter or the library (an int
// divided by zero, a value beyond the memory limit), as the console runner
// reports them, and leaves nothing allocated.
#include <chrono>
#include <cstdlib>
#include <string>

#include "fuzzsupport.h"
#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "quill/all.h"

namespace {

const long STATEMENTS = 20000;
const auto TIME = std::chrono::milliseconds(200);

struct Budget {
    Executer* executer;
    long statements;
    std::chrono::steady_clock::time_point end;
} budget;

void spendStatement(Cback&) {
    if (--budget.statements <= 0 || std::chrono::steady_clock::now() > budget.end) budget.executer->stop();
}

bool isMessage(const String& message) {
    std::string text = message.asCharPointer();
    return text.empty() || text[0] == '[' || text == "main function not found";
}

void parseAndRun(const std::string& text) {
    CodeParser parser;
    Executer executer(&parser);
    String message = parser.parseText(text.c_str(), 1);
    if (message.size() == 0) {
        budget = Budget{&executer, STATEMENTS, std::chrono::steady_clock::now() + TIME};
        executer.addCback(TRACE_EXEC, spendStatement);
        int stopped = 0;
        String failure = errorTextOf([&] { executer.run(message, stopped); });
        if (failure.size() > 0) message = failure;
    }
    if (!isMessage(message)) abort();
}

}  // namespace

DEFINE_FUZZ_ENTRY {
    startFuzzedLibrary();
    std::string text(reinterpret_cast<const char*>(data), size);
    expectNothingLeft([&] { parseAndRun(text); });
    return 0;
}
