// Statement and the block, for and if statements: construction, ownership and printing.
#include "interpreter/statemnt.h"

#include <cstring>
#include <ostream>
#include <utility>

#include "interpreter/expressn.h"
#include "quill/indent.h"

DEFINE_CLASS(Statement, LookupKey, 1, 0)
DEFINE_CLASS(BaseStatement, Statement, 1, 0)
DEFINE_CLASS(BlockOfCode, BaseStatement, 1, 0)
DEFINE_CLASS(ForStatement, BaseStatement, 1, 0)
DEFINE_CLASS(IfStatement, BaseStatement, 1, 0)

// --- Statement ---

Statement::Statement() : name("CodeWithoutName"), line(0) { key(name); }

Statement::Statement(const String& name, int line) : name(name), line(line) { key(this->name); }

void Statement::deepDeleteContents() { Object::deepDeleteContents(); }

Statement* Statement::makeEmpty(int line) { return new Statement("Empty", line); }
Statement* Statement::makeBreak(int line) { return new Statement("Break", line); }
Statement* Statement::makeContinue(int line) { return new Statement("Continue", line); }
Statement* Statement::makeExit(int line) { return new Statement("Exit", line); }

bool Statement::isPlain(const char* plainName) const {
    return isMemberOf(class_Statement) && std::strcmp(name.asCharPointer(), plainName) == 0;
}

void Statement::printOn(std::ostream& os) const {
    os << className() << " " << name.asCharPointer() << " " << line;
}

void Statement::printCode(std::ostream& os, const OrderedCltn& code) {
    {
        IndentScope inner(os);
        for (unsigned i = 0; i < code.size(); ++i) {
            writeIndentation(os);
            os << *code.at(int(i)) << "\n";
        }
    }
    writeIndentation(os);
    os << "]";
}

// --- BlockOfCode ---

BlockOfCode::BlockOfCode(int line) : BaseStatement("BlockOfCode", line) {}

BlockOfCode::~BlockOfCode() noexcept(false) { code.deleteContents(); }

void BlockOfCode::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " Code [\n";
    printCode(os, code);
}

// --- ForStatement ---

ForStatement::ForStatement() : BaseStatement("ForStatement", 0), body(0), test(0), assign(0), increment(0) {}

ForStatement::ForStatement(int line, Statement* assign, Expression* test, Statement* increment,
                           Statement* body)
    : BaseStatement("ForStatement", line), body(body), test(test), assign(assign), increment(increment) {}

ForStatement::~ForStatement() noexcept(false) {
    delete body;
    delete test;
    delete assign;
    delete increment;
}

namespace {

// One labelled part on a line of its own, one level further in.
void printPart(std::ostream& os, const char* label, const Object* part) {
    IndentScope inner(os);
    os << "\n";
    writeIndentation(os);
    os << label;
    if (part) os << *part;
}

}  // namespace

void ForStatement::printOn(std::ostream& os) const {
    Statement::printOn(os);
    printPart(os, "Assign = ", assign);
    printPart(os, "Test = ", test);
    printPart(os, "Increment = ", increment);
    printPart(os, "Statement = ", body);
    os << "\n";
    writeIndentation(os);
    os << ")";
}

// --- IfStatement ---

IfStatement::IfStatement() : BaseStatement("IfStatement", 0), test(0), thenPart(0), elsePart(0) {}

IfStatement::IfStatement(int line, Expression* test, Statement* thenPart, Statement* elsePart)
    : BaseStatement("IfStatement", line), test(test), thenPart(thenPart), elsePart(elsePart) {}

IfStatement::~IfStatement() noexcept(false) {
    delete test;
    delete thenPart;
    delete elsePart;
}

void IfStatement::printOn(std::ostream& os) const {
    Statement::printOn(os);
    printPart(os, "Test = ", test);
    printPart(os, "Then = ", thenPart);
    printPart(os, "Else = ", elsePart);
}
