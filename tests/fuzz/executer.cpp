// Harness of the executer: the text is parsed and, when it parses, run within
// a budget of statements, time and stack, past which the run is stopped. A run
// ends with its output or a message of the interpreter and leaves nothing allocated.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzzsupport.h"
#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "quill/all.h"

namespace {

const long STATEMENTS = 20000;
const auto TIME = std::chrono::milliseconds(200);
// Interpreted recursion has no limit of its own yet and overflows the C stack.
const uintptr_t STACK = 2 << 20;

struct Budget {
    Executer* executer;
    long statements;
    std::chrono::steady_clock::time_point end;
    uintptr_t stackBase;
} budget;

void spendStatement(Cback&) {
    char here;
    uintptr_t depth = budget.stackBase - reinterpret_cast<uintptr_t>(&here);
    if (--budget.statements <= 0 || depth > STACK || std::chrono::steady_clock::now() > budget.end)
        budget.executer->stop();
}

bool isMessage(const String& message) {
    std::string text = message.asCharPointer();
    return text.empty() || text.rfind("[PARSE ERROR] ", 0) == 0 || text.rfind("[RUN-TIME ERROR] ", 0) == 0 ||
           text == "main function not found";
}

void parseAndRun(const std::string& text) {
    CodeParser parser;
    Executer executer(&parser);
    String message = parser.parseText(text.c_str(), 1);
    if (message.size() == 0) {
        char base;
        budget = Budget{&executer, STATEMENTS, std::chrono::steady_clock::now() + TIME,
                        reinterpret_cast<uintptr_t>(&base)};
        executer.addCback(TRACE_EXEC, spendStatement);
        int stopped = 0;
        executer.run(message, stopped);
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
