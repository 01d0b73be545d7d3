// BaseParser: positions, push-back across lines, comments, lines, blanks and the syntax error.
#include "reverse/basepars.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

#include "quill/quillerr.h"

namespace {

// A parser over a text, owning its scanner.
class TextParser : public BaseParser {
public:
    explicit TextParser(const std::string& text) : BaseParser(new Scanner(new std::istringstream(text))) {
        ownsScanner = 1;
    }
};

// The message of the error that body raises, with what went to the error stream.
template <class Body>
std::string raised(Body body, std::string* errorStream = 0) {
    std::ostringstream captured;
    std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
    std::string message;
    try {
        body();
    } catch (TarnException* e) {
        message = e->what();
        delete e;
    }
    std::cerr.rdbuf(old);
    if (errorStream) *errorStream = captured.str();
    return message;
}

TEST(BaseParserTest, lineAndColumnFollowTheTokens) {
    TextParser parser("ab cd\n  e");
    EXPECT_EQ(parser.nextToken(), ScanIdentifier);
    EXPECT_EQ(parser.getColumn(), 3);
    parser.nextToken();  // blank
    parser.nextToken();  // cd
    EXPECT_EQ(parser.getColumn(), 6);
    EXPECT_EQ(parser.getLine(), 1);
    parser.nextToken();  // new-line
    EXPECT_EQ(parser.getLine(), 2);
    EXPECT_EQ(parser.getColumn(), 1);
    // The new-line pushed back takes its line back, the column stays.
    parser.putBack();
    EXPECT_EQ(parser.getLine(), 1);
    EXPECT_EQ(parser.nextToken(), ScanSpace);
    EXPECT_EQ(parser.getLine(), 2);
    EXPECT_STREQ(parser.skipSpaces(0).asCharPointer(), "  ");
    EXPECT_STREQ(parser.getToken().asCharPointer(), "e");
    EXPECT_EQ(parser.getColumn(), 4);
}

TEST(BaseParserTest, commentsAndLines) {
    TextParser parser("/* a \"x\" */ rest // tail\nnext");
    parser.nextToken();
    EXPECT_STREQ(parser.parseComment().asCharPointer(), "/* a \"x\" */");
    parser.skipSpaces(0);
    EXPECT_STREQ(parser.getToken().asCharPointer(), "rest");
    parser.skipSpaces(0);
    EXPECT_STREQ(parser.skipLine().asCharPointer(), "// tail\n");
    EXPECT_EQ(parser.getLine(), 2);
    parser.nextToken();
    EXPECT_STREQ(parser.getToken().asCharPointer(), "next");
    // A line at the end of input ends there without an error.
    TextParser last("// only");
    last.nextToken();
    EXPECT_STREQ(last.skipLine().asCharPointer(), "// only");
}

TEST(BaseParserTest, skipSpacesStopsAfterTheNewLineWhenAsked) {
    TextParser parser(" \t\n x");
    EXPECT_STREQ(parser.skipSpaces(1).asCharPointer(), " \t\n");
    EXPECT_EQ(parser.getTokenKind(), ScanSpace);
    EXPECT_STREQ(parser.skipSpaces(1).asCharPointer(), " ");
    EXPECT_STREQ(parser.getToken().asCharPointer(), "x");
}

TEST(BaseParserTest, unterminatedCommentIsAParseError) {
    TextParser parser("/* open\n");
    parser.nextToken();
    std::string errorStream;
    std::string message = raised([&] { parser.parseComment(); }, &errorStream);
    EXPECT_EQ(message, "[PARSE ERROR] parseComment at line 2,1: token was  ");
    EXPECT_EQ(errorStream, "Parse error parseComment at line 2 on token  ScanEOF\n");
}

TEST(BaseParserTest, parseErrorNamesThePlaceAndToken) {
    TextParser parser("x  yy");
    parser.nextToken();
    parser.skipSpaces(0);
    std::string errorStream;
    EXPECT_EQ(raised([&] { parser.parseError("somewhere"); }, &errorStream),
              "[PARSE ERROR] somewhere at line 1,6: token was yy ");
    EXPECT_EQ(errorStream, "Parse error somewhere at line 1 on token yy ScanIdentifier\n");
}

TEST(BaseParserTest, missingFileFailsAtTheFirstReadAndParseIsTheSubclasses) {
    BaseParser parser(String("/nonexistent/tarn/prog.cxx"));
    std::string message = raised([&] { parser.nextToken(); });
    EXPECT_NE(message.find("\"in != 0\""), std::string::npos) << message;
    EXPECT_NE(raised([&] { parser.parse(); }).find("parse"), std::string::npos);
    BaseParser withoutScanner;
    EXPECT_NE(raised([&] { withoutScanner.setRecogniseStrings(0); }).find("scanner != 0"), std::string::npos);
}

}  // namespace
