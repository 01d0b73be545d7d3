// runProgram: parse, run and report an interpreted program from the command line.
#include "interpreter/runner.h"

#include <unistd.h>

#include <iostream>

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "quill/quillerr.h"

// An error of another code than the interpreter's (a signal, a failed
// assertion) ends the run as a failure with its message.
int runProgram(const String& fileName) {
    if (fileName.size() == 0 || access(fileName.asCharPointer(), R_OK) != 0) {
        std::cerr << "tarn: cannot read the program \"" << fileName.asCharPointer() << "\"" << std::endl;
        return 1;
    }
    CodeParser parser;
    Executer executer(&parser);
    String message = parser.parseFile(fileName);
    if (message.size() == 0) {
        int stopped = 0;
        try {
            executer.run(message, stopped);
        } catch (TarnException* e) {
            message = e->message();
            delete e;
        }
    }
    std::cout.flush();
    if (message.size() == 0) return 0;
    std::cerr << message.asCharPointer() << std::endl;
    return 1;
}
