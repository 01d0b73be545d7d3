// BaseParser: token reading with line and column, comments, lines, blanks and the syntax error.
#include "reverse/basepars.h"

#include <iostream>

#include "quill/quillerr.h"

DEFINE_CLASS(BaseParser, Object, 1, 0)

namespace {

bool isNewLine(int kind, const String& text) {
    return kind == ScanSpace && text.size() == 1 && text[0u] == '\n';
}

}  // namespace

BaseParser::BaseParser(Scanner* s, int line, int column)
    : scanner(s), line(line), column(column), tokenKind(ScanEOF), ownsScanner(0) {}

BaseParser::BaseParser(const String& fileName)
    : scanner(new Scanner(fileName)), line(1), column(1), tokenKind(ScanEOF), ownsScanner(1) {}

BaseParser::~BaseParser() noexcept(false) {
    if (ownsScanner) delete scanner;
}

int BaseParser::nextToken() {
    int kind = ScanEOF;
    scanner->get(token, kind);
    tokenKind = kind;
    if (isNewLine(tokenKind, token)) {
        ++line;
        column = 1;
    } else {
        column += int(token.size());
    }
    return tokenKind;
}

void BaseParser::putBack() {
    scanner->putBack(token, tokenKind);
    if (isNewLine(tokenKind, token)) --line;
}

String BaseParser::parseComment() {
    String result(token);
    do {
        if (nextToken() == ScanEOF) parseError("parseComment");
        result += token;
    } while (!(tokenKind == ScanOperator && token == "*/"));
    return result;
}

String BaseParser::skipLine() {
    String result(token);
    while (nextToken() != ScanEOF) {
        result += token;
        if (isNewLine(tokenKind, token)) break;
    }
    return result;
}

String BaseParser::skipSpaces(int stopAtNewLine) {
    String result;
    while (nextToken() == ScanSpace) {
        result += token;
        if (stopAtNewLine && isNewLine(tokenKind, token)) break;
    }
    return result;
}

void BaseParser::parseError(const String& where) {
    std::cerr << "Parse error " << where.asCharPointer() << " at line " << line << " on token "
              << token.asCharPointer() << " " << Scanner::kindName(tokenKind).asCharPointer() << std::endl;
    String position;
    formatString(position, " at line %d,%d: token was %s ", int(line), int(column), token.asCharPointer());
    setError(GENERICERR, SEV_ERROR, "PARSE ERROR", where.asCharPointer(), position.asCharPointer(), "");
}

void BaseParser::setRecogniseStrings(int on) {
    QASSERT(scanner != 0);
    scanner->setRecogniseStrings(on);
}

void BaseParser::parse() { derivedClassResponsibility("parse"); }
