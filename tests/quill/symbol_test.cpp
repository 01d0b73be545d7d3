// Tests of Symbol and the symbol table: interning, equality, printing, table swaps.
#include "quill/symbol.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "quill/integer.h"
#include "quill/quillerr.h"
#include "quill/set.h"
#include "quill/substrng.h"
#include "testutil.h"

namespace {

TEST(SymbolTest, SameTextSharesOneName) {
    Symbol a("FileMenuNew");
    Symbol b(String("FileMenuNew"));
    Symbol c(a);
    Symbol other("FileMenuOpen");
    EXPECT_EQ(&a.name(), &b.name());
    EXPECT_EQ(&a.name(), &c.name());
    EXPECT_NE(&a.name(), &other.name());
    EXPECT_EQ(symbolTable().find(String("FileMenuNew")), &a.name());

    Symbol empty;
    EXPECT_STREQ(empty.name().asCharPointer(), "");
    EXPECT_EQ(&empty.name(), &Symbol("").name());
    EXPECT_STREQ(Symbol(Float(0.5)).name().asCharPointer(), "0.5");
}

TEST(SymbolTest, AssignFromTheAcceptedKinds) {
    Symbol s("start");
    s = Integer(42);
    EXPECT_EQ(&s.name(), &Symbol("42").name());
    s = Float(-1.25);
    EXPECT_EQ(&s.name(), &Symbol("-1.25").name());
    s = String("CppTextChanged");
    EXPECT_EQ(&s.name(), &Symbol("CppTextChanged").name());
    const Object& other = Symbol("IconChanged");
    s = other;
    EXPECT_EQ(&s.name(), &Symbol("IconChanged").name());

    std::string text = raisedText([] {
        Symbol t("x");
        String owner("window");
        t = static_cast<const Object&>(owner(0, 3));
    });
    EXPECT_EQ(text.rfind("[ASSERTFLD] Assertion failed \"ob.isKindOf(class_Symbol) ||", 0), 0u) << text;
}

TEST(SymbolTest, Equality) {
    Symbol a("TRACE_EXEC"), b("TRACE_EXEC"), c("CHECK_STOP");
    EXPECT_TRUE(a.isEqual(b));
    EXPECT_FALSE(a.isEqual(c));
    EXPECT_TRUE(a.isEqual(String("TRACE_EXEC")));
    EXPECT_FALSE(a.isEqual(String("TRACE")));
    EXPECT_TRUE(a.isEqual("TRACE_EXEC"));
    EXPECT_FALSE(a.isEqual(static_cast<const char*>(0)));
    EXPECT_FALSE(Symbol("1").isEqual(Integer(1)));

    EXPECT_LT(c.compare(a), 0);
    EXPECT_EQ(a.hash(), String("TRACE_EXEC").hash());
}

TEST(SymbolTest, PrintsBetweenHashMarksAndScanInternsTheLine) {
    Symbol s("ASK_PARAMETERS");
    std::ostringstream out;
    s.printOn(out);
    EXPECT_EQ(out.str(), "#ASK_PARAMETERS#");
    EXPECT_STREQ(s.asCharPointer(), "#ASK_PARAMETERS#");
    std::istringstream in("GraphEdtGuiNew\r\nnext");
    s.scanFrom(in);
    EXPECT_EQ(&s.name(), &Symbol("GraphEdtGuiNew").name());
}

TEST(SymbolTest, SwappedTableInternsApart) {
    Set& standard = symbolTable();
    Symbol before("swapTest");
    Set* mine = new Set(8);
    EXPECT_EQ(setSymbolTable(mine), &standard);
    Symbol inside("swapTest");
    EXPECT_NE(&inside.name(), &before.name());
    resetSymbolTable();
    EXPECT_EQ(&symbolTable(), &standard);
    EXPECT_EQ(&Symbol("swapTest").name(), &before.name());
    mine->deleteContents();
    delete mine;
}

TEST(SymbolTest, AddToSymbolTableAnswersTheInternedName) {
    Symbol known("knownName");
    String* fresh = new String("knownName");
    EXPECT_EQ(addToSymbolTable(fresh), &known.name());
    delete fresh;
    String* unknown = new String("unknownName");
    EXPECT_EQ(addToSymbolTable(unknown), unknown);
    EXPECT_EQ(&Symbol("unknownName").name(), unknown);
}

// Deleting the table frees the names held by every Symbol, so it runs in a
// child process; a new table is made on the next use.
TEST(SymbolDeathTest, DeletedTableIsMadeAgain) {
    EXPECT_EXIT(
        {
            Symbol("one");
            deleteSymbolTable();
            Symbol two("two");
            std::exit(symbolTable().size() == 1 && two.isEqual("two") ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
