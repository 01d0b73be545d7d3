// The indentation of an output stream: nested prints write it at the start of each line.
#ifndef QUILL_INDENT_H
#define QUILL_INDENT_H

#include <iosfwd>

// One unit is two blanks. The level belongs to the stream and starts at 0.
void indentMore(std::ostream& os);
void indentLess(std::ostream& os);  // never below 0
int indentLevel(const std::ostream& os);
void writeIndentation(std::ostream& os);

// Holds one more level of indentation on os for a scope.
class IndentScope {
public:
    explicit IndentScope(std::ostream& os) : os(os) { indentMore(os); }
    ~IndentScope() { indentLess(os); }
    IndentScope(const IndentScope&) = delete;
    IndentScope& operator=(const IndentScope&) = delete;

private:
    std::ostream& os;
};

#endif
