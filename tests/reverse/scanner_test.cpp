// Scanner: the token kinds and texts of operator pairs, numbers, strings and characters; push-back and
// streams.
#include "reverse/scanner.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "quill/quillerr.h"

namespace {

struct Token {
    int kind;
    std::string text;
};

bool operator==(const Token& a, const Token& b) { return a.kind == b.kind && a.text == b.text; }

std::ostream& operator<<(std::ostream& os, const Token& t) {
    return os << Scanner::kindName(t.kind).asCharPointer() << "(" << t.text << ")";
}

// Every token of the text up to the end, spaces left out.
std::vector<Token> scan(const std::string& text) {
    Scanner scanner(new std::istringstream(text));
    std::vector<Token> tokens;
    for (;;) {
        String token;
        int kind = ScanEOF;
        scanner.get(token, kind);
        if (kind == ScanEOF) return tokens;
        if (kind != ScanSpace) tokens.push_back({kind, token.asCharPointer()});
    }
}

Token id(const char* t) { return {ScanIdentifier, t}; }
Token op(const char* t) { return {ScanOperator, t}; }
Token digit(const char* t) { return {ScanDigit, t}; }
Token real(const char* t) { return {ScanFloat, t}; }

struct Row {
    const char* text;
    std::vector<Token> tokens;
};

void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(scan(row.text), row.tokens);
    }
}

TEST(ScannerTest, operatorPairsAreTheListedOnesOnly) {
    expectRows({
        {"a>>=b", {id("a"), op(">>="), id("b")}},
        {"a>>b", {id("a"), op(">>"), id("b")}},
        {"a<<=b<<c", {id("a"), op("<<="), id("b"), op("<<"), id("c")}},
        // %=, &=, |= and ^= are two tokens each.
        {"a%=b", {id("a"), op("%"), op("="), id("b")}},
        {"a&=b|=c^=d",
         {id("a"), op("&"), op("="), id("b"), op("|"), op("="), id("c"), op("^"), op("="), id("d")}},
        {"x=-1", {id("x"), op("="), op("-"), digit("1")}},
        {"x+-1", {id("x"), op("+"), op("-"), digit("1")}},
        {"x--1", {id("x"), op("--"), digit("1")}},
        {"a==b!=c<=d>=e",
         {id("a"), op("=="), id("b"), op("!="), id("c"), op("<="), id("d"), op(">="), id("e")}},
        {"a&&b||c::d", {id("a"), op("&&"), id("b"), op("||"), id("c"), op("::"), id("d")}},
        {"a+=b-=c*=d/=e",
         {id("a"), op("+="), id("b"), op("-="), id("c"), op("*="), id("d"), op("/="), id("e")}},
        {"f()[]->/**///", {id("f"), op("()"), op("[]"), op("->"), op("/*"), op("*/"), op("//")}},
        {"a**b", {id("a"), op("*"), op("*"), id("b")}},
        {"(a)", {op("("), id("a"), op(")")}},
        {"#", {op("#")}},
    });
}

TEST(ScannerTest, numbersAndReals) {
    expectRows({
        {"1.e5", {real("1.e5")}},
        {".5e-3", {real(".5e-3")}},
        {"1e+", {real("1e+")}},
        {"1e", {real("1e")}},
        {"1.", {real("1.")}},
        {"1.5", {real("1.5")}},
        {"2E10x", {real("2E10"), id("x")}},
        {"12abc", {digit("12"), id("abc")}},
        {"007", {digit("007")}},
        {"a.b", {id("a"), op("."), id("b")}},
        {"x_1 _y", {id("x_1"), id("_y")}},
    });
}

TEST(ScannerTest, stringsKeepQuotesAndBackslashes) {
    expectRows({
        {"\"ab\"", {{ScanString, "\"ab\""}}},
        {"\"a\\\"b\" c", {{ScanString, "\"a\\\"b\""}, id("c")}},
        {"\"a\\\\\"", {{ScanString, "\"a\\\\\""}}},
        // A new-line ends the literal as an error and is consumed.
        {"\"ab\ncd", {{ScanError, "\"ab"}, id("cd")}},
        {"\"ab", {{ScanError, "\"ab"}}},
    });
}

TEST(ScannerTest, characters) {
    expectRows({
        {"'a'", {{ScanChar, "'a'"}}},
        {"'\\n'", {{ScanChar, "'\\n'"}}},
        {"'\\012'", {{ScanChar, "'\\012'"}}},
        {"'\\x41'", {{ScanChar, "'\\x41'"}}},
        {"'\\''", {{ScanChar, "'\\''"}}},
        {"'ab'", {{ScanError, "'ab"}, {ScanError, "'"}}},
        {"'\\'\n", {{ScanError, "'\\'"}}},
        {"'\\12x'", {{ScanError, "'\\12x"}, {ScanError, "'"}}},
        {"'", {{ScanError, "'"}}},
    });
}

TEST(ScannerTest, withoutStringRecognitionQuotesArePunctuation) {
    Scanner scanner(new std::istringstream("\"a'"));
    scanner.setRecogniseStrings(0);
    std::vector<Token> tokens;
    for (int i = 0; i < 3; ++i) {
        String text;
        int kind = 0;
        scanner.get(text, kind);
        tokens.push_back({kind, text.asCharPointer()});
    }
    EXPECT_EQ(tokens, (std::vector<Token>{op("\""), id("a"), op("'")}));
}

TEST(ScannerTest, spacesAreOneTokenEachAndUnknownBytesAreErrors) {
    Scanner scanner(new std::istringstream(" \n\x01"));
    String text;
    int kind = 0;
    scanner.get(text, kind);
    EXPECT_EQ(Token({kind, text.asCharPointer()}), Token({ScanSpace, " "}));
    scanner.get(text, kind);
    EXPECT_EQ(Token({kind, text.asCharPointer()}), Token({ScanSpace, "\n"}));
    scanner.get(text, kind);
    EXPECT_EQ(Token({kind, text.asCharPointer()}), Token({ScanError, "\x01"}));
    scanner.get(text, kind);
    EXPECT_EQ(kind, ScanEOF);
    EXPECT_EQ(text.size(), 0u);
}

TEST(ScannerTest, pushedBackTokenComesAgainWithoutReading) {
    Scanner scanner(new std::istringstream("a b"));
    String text;
    int kind = 0;
    scanner.get(text, kind);
    scanner.putBack("zz", ScanDigit);
    scanner.putBack(text, kind);  // the second push-back replaces the first
    String again;
    int againKind = 0;
    scanner.get(again, againKind);
    EXPECT_STREQ(again.asCharPointer(), "a");
    EXPECT_EQ(againKind, ScanIdentifier);
    scanner.get(again, againKind);
    EXPECT_EQ(againKind, ScanSpace);
    // An empty text stands for "nothing pushed back".
    scanner.putBack("", ScanDigit);
    scanner.get(again, againKind);
    EXPECT_STREQ(again.asCharPointer(), "b");
}

TEST(ScannerTest, missingFileFailsAtTheFirstRead) {
    Scanner scanner(String("/nonexistent/tarn/file.cxx"));
    EXPECT_STREQ(scanner.getFileName().asCharPointer(), "/nonexistent/tarn/file.cxx");
    String text;
    int kind = 0;
    try {
        scanner.get(text, kind);
        FAIL() << "no assertion";
    } catch (TarnException* e) {
        EXPECT_NE(std::string(e->what()).find("\"in != 0\""), std::string::npos) << e->what();
        delete e;
    }
    EXPECT_EQ(scanner.close(), 0);
    EXPECT_EQ(scanner.reopen("/nonexistent/tarn/other.cxx"), 0);
}

TEST(ScannerTest, kindNamesAndTheirBound) {
    EXPECT_STREQ(Scanner::kindName(ScanSpace).asCharPointer(), "ScanSpace");
    EXPECT_STREQ(Scanner::kindName(ScanEOF).asCharPointer(), "ScanEOF");
    for (int bad : {-1, ScanEOF + 1}) {
        try {
            Scanner::kindName(bad);
            FAIL() << bad;
        } catch (TarnException* e) {
            EXPECT_NE(std::string(e->what()).find("kind >= 0 && kind <= ScanEOF"), std::string::npos);
            delete e;
        }
    }
}

}  // namespace
