// Runs interpreted programs in-process for the tests, with what they write captured.
#ifndef TESTS_INTERPRETER_RUNTEXT_H
#define TESTS_INTERPRETER_RUNTEXT_H

#include <iostream>
#include <sstream>
#include <string>

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "interpreter/runner.h"
#include "quill/quillerr.h"

struct ProgramRun {
    std::string out;      // what cout wrote
    std::string err;      // the error stream
    std::string message;  // the parse or run-time message, empty on success
    int status;           // the runner's exit status, or stoppedResult for runText
};

// Sends the standard output and error streams into strings for a scope.
class CapturedStreams {
public:
    CapturedStreams() : oldOut(std::cout.rdbuf(out.rdbuf())), oldErr(std::cerr.rdbuf(err.rdbuf())) {}
    ~CapturedStreams() {
        std::cout.rdbuf(oldOut);
        std::cerr.rdbuf(oldErr);
    }
    std::ostringstream out, err;

private:
    std::streambuf* oldOut;
    std::streambuf* oldErr;
};

// The file through the console runner.
inline ProgramRun runFile(const std::string& path) {
    CapturedStreams streams;
    int status = runProgram(path.c_str());
    return ProgramRun{streams.out.str(), streams.err.str(), "", status};
}

// The text parsed and run by a parser and an executer of its own; an error of
// the library that is not the language's own ends the run as in the runner.
inline ProgramRun runText(const std::string& source) {
    CapturedStreams streams;
    CodeParser parser;
    Executer executer(&parser);
    String message = parser.parseText(source.c_str(), 1);
    int stopped = 0;
    try {
        if (message.size() == 0) executer.run(message, stopped);
    } catch (TarnException* e) {
        message = e->message();
        delete e;
    }
    return ProgramRun{streams.out.str(), streams.err.str(), message.asCharPointer(), stopped};
}

#endif
