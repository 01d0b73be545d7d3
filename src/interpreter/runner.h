// runProgram, the console runner of an interpreted program.
#ifndef INTERPRETER_RUNNER_H
#define INTERPRETER_RUNNER_H

class String;

// Parses and runs the program in the file: its cout goes to the standard
// output, a parse or run-time message to the error stream. Answers the exit
// status: 0, or 1 when the file cannot be read or the program failed.
int runProgram(const String& fileName);

#endif
