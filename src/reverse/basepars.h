// BaseParser, the token reader with position, comments and syntax errors that hand-written parsers sit on.
#ifndef REVERSE_BASEPARS_H
#define REVERSE_BASEPARS_H

#include <cstdint>

#include "reverse/scanner.h"

extern Class class_BaseParser;

class BaseParser : public Object {
    DECLARE_MEMBERS(BaseParser)
public:
    // Does not own s, which may be null and be set later by the subclass.
    explicit BaseParser(Scanner* s = 0, int line = 1, int column = 1);
    // Builds and owns a Scanner on the file.
    explicit BaseParser(const String& fileName);
    ~BaseParser() noexcept(false) override;

    // Reads a token into token and tokenKind and moves the position past it; answers the kind.
    int nextToken();
    // Pushes the current token back into the scanner; a new-line takes its line back.
    void putBack();
    // With /* current: the comment up to and including */; the end of input before is an error.
    String parseComment();
    // With // current: the rest of the line, its new-line included.
    String skipLine();
    // Reads white space; the first other token stays current. With stopAtNewLine
    // a new-line ends the run after being appended.
    String skipSpaces(int stopAtNewLine);
    // Reports the syntax error on the error stream and raises it as a PARSE ERROR.
    [[noreturn]] void parseError(const String& where);
    void setRecogniseStrings(int on);

    virtual void parse();

    int getLine() const { return line; }
    int getColumn() const { return column; }
    int getTokenKind() const { return tokenKind; }
    const String& getToken() const { return token; }

protected:
    Scanner* scanner;
    std::int32_t line;    // from 1
    std::int32_t column;  // from 1
    std::int32_t tokenKind;
    String token;
    std::int32_t ownsScanner;
};

#endif
