// Statement, the node of the program tree, and the statements that hold other statements.
#ifndef INTERPRETER_STATEMNT_H
#define INTERPRETER_STATEMNT_H

#include <cstdint>
#include <iosfwd>

#include "interpreter/keptplan.h"
#include "quill/lookupky.h"
#include "quill/orderedc.h"
#include "quill/quillstr.h"

class Expression;

extern Class class_Statement;
extern Class class_BaseStatement;
extern Class class_BlockOfCode;
extern Class class_ForStatement;
extern Class class_IfStatement;

// A node knows its name, its source line and its children, and prints itself;
// the Executer decides what it does. The name is the LookupKey's key, so that
// a collection of statements is searched by a String. A plain Statement stands
// for a statement without fields, told by its name: "Empty", "Break",
// "Continue", "Exit".
class Statement : public LookupKey {
    DECLARE_MEMBERS(Statement)
public:
    Statement();  // "CodeWithoutName", line 0
    Statement(const String& name, int line);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    static Statement* makeEmpty(int line);
    static Statement* makeBreak(int line);
    static Statement* makeContinue(int line);
    static Statement* makeExit(int line);
    bool isEmpty() const { return isPlain("Empty"); }
    bool isBreak() const { return isPlain("Break"); }
    bool isContinue() const { return isPlain("Continue"); }
    bool isExit() const { return isPlain("Exit"); }

    const String& getName() const { return name; }
    void setName(const String& newName) { name = newName; }
    int getLine() const { return line; }

    // Class name, name and line, then what the kind of node adds.
    void printOn(std::ostream& os) const override;
    // The key is the statement's own name, deleted with it.
    void deepDeleteContents() override;

protected:
    // Writes each statement on a line of its own, one level further in, then "]".
    static void printCode(std::ostream& os, const OrderedCltn& code);

private:
    bool isPlain(const char* plainName) const;

    String name;  // the key
    std::int32_t line;
};

class BaseStatement : public Statement {
    DECLARE_MEMBERS(BaseStatement)
public:
    BaseStatement() {}
    BaseStatement(const String& name, int line) : Statement(name, line) {}
};

class BlockOfCode : public BaseStatement {
    DECLARE_MEMBERS(BlockOfCode)
public:
    explicit BlockOfCode(int line = 0);
    ~BlockOfCode() noexcept(false) override;

    void add(Statement* statement) { code.add(*statement); }
    const OrderedCltn& getCode() const { return code; }
    void printOn(std::ostream& os) const override;

private:
    OrderedCltn code;  // owned statements
};

class ForStatement : public BaseStatement {
    DECLARE_MEMBERS(ForStatement)
public:
    ForStatement();
    ForStatement(int line, Statement* assign, Expression* test, Statement* increment, Statement* body);
    ~ForStatement() noexcept(false) override;

    Statement* getBody() const { return body; }
    Expression* getTest() const { return test; }  // an empty test is true
    Statement* getAssign() const { return assign; }
    Statement* getIncrement() const { return increment; }
    void printOn(std::ostream& os) const override;
    // The executer's plan of the whole loop, made once when the loop is of that kind.
    KeptPlan& loopPlan() const { return plan; }

private:
    Statement* body;  // all four owned
    Expression* test;
    Statement* assign;
    Statement* increment;
    mutable KeptPlan plan;
};

class IfStatement : public BaseStatement {
    DECLARE_MEMBERS(IfStatement)
public:
    IfStatement();
    IfStatement(int line, Expression* test, Statement* thenPart, Statement* elsePart);
    ~IfStatement() noexcept(false) override;

    Expression* getTest() const { return test; }
    Statement* getThen() const { return thenPart; }
    Statement* getElse() const { return elsePart; }
    void printOn(std::ostream& os) const override;

private:
    Expression* test;  // all three owned
    Statement* thenPart;
    Statement* elsePart;
};

#endif
