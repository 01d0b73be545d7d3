// Scanner: the token scan of identifiers, numbers, operators, strings and characters.
#include "reverse/scanner.h"

#include <unistd.h>

#include <cctype>
#include <cstring>
#include <fstream>
#include <istream>

#include "quill/quillerr.h"

DEFINE_CLASS(Scanner, Object, 1, 0)

namespace {

// ORDER KIND
const char* const kindNames[] = {"ScanSpace",  "ScanDigit", "ScanFloat", "ScanIdentifier", "ScanOperator",
                                 "ScanString", "ScanChar",  "ScanError", "ScanEOF"};

int isIdentifierChar(int ch) { return std::isalnum(ch) || ch == '_'; }
int isDigitChar(int ch) { return std::isdigit(ch); }
int isAlnumChar(int ch) { return std::isalnum(ch); }

// Whether the punctuation pair c, n is one token.
bool isOperatorPair(int c, int n) {
    if (n == c && std::strchr(":&|=<>/+-", c)) return true;
    if (n == '=' && std::strchr("!<>+-*/", c)) return true;
    const char pair[3] = {char(c), char(n), 0};
    for (const char* known : {"/*", "*/", "[]", "()", "->"})
        if (std::strcmp(pair, known) == 0) return true;
    return false;
}

}  // namespace

Scanner::Scanner() : in(0), pushedKind(ScanEOF), multiLineStrings(0), recogniseStrings(1) {}

Scanner::Scanner(std::istream* stream)
    : in(stream), pushedKind(ScanEOF), multiLineStrings(0), recogniseStrings(1) {}

Scanner::Scanner(const String& name) : in(0), pushedKind(ScanEOF), multiLineStrings(0), recogniseStrings(1) {
    open(name);
}

Scanner::~Scanner() noexcept(false) { close(); }

bool Scanner::open(const String& name) {
    fileName = name;
    const char* path = name.asCharPointer();
    if (name.size() == 0 || access(path, F_OK) != 0 || access(path, R_OK) != 0) return false;
    std::ifstream* file = new std::ifstream(path, std::ios::in | std::ios::binary);
    if (!*file) {
        delete file;
        return false;
    }
    in = file;
    return true;
}

int Scanner::reopen(const String& name) {
    close();
    return open(name) ? 1 : 0;
}

int Scanner::close() {
    if (!in) return 0;
    delete in;
    in = 0;
    return 1;
}

void Scanner::putBack(const String& text, int kind) {
    pushedToken = text;
    pushedKind = kind;
}

String Scanner::kindName(int kind) {
    QASSERT(kind >= 0 && kind <= ScanEOF);
    return String(kindNames[kind]);
}

int Scanner::read() { return in->get(); }

void Scanner::unread(int ch) {
    if (ch != EOF) in->unget();
}

void Scanner::get(String& text, int& kind) {
    QASSERT(in != 0);
    if (pushedToken.size() > 0) {
        text = pushedToken;
        kind = pushedKind;
        pushedToken = "";
        return;
    }
    text = "";
    int ch = read();
    if (ch == EOF) {
        kind = ScanEOF;
        return;
    }
    QASSERT(ch != 0);
    text += char(ch);
    if (std::isalpha(ch) || ch == '_')
        kind = scanIdentifier(text);
    else if (std::isdigit(ch))
        kind = scanNumber(text);
    else if (std::isspace(ch))
        kind = ScanSpace;
    else if (ch == '"' && recogniseStrings)
        kind = scanString(text);
    else if (ch == '\'' && recogniseStrings)
        kind = scanChar(text);
    else if (std::ispunct(ch))
        kind = scanOperator(text);
    else
        kind = ScanError;
}

// Appends the characters for which belongs holds; answers the first other one, or EOF.
int Scanner::scanCharRun(String& text, int (*belongs)(int)) {
    int ch;
    while ((ch = read()) != EOF && belongs(ch)) text += char(ch);
    return ch;
}

int Scanner::scanIdentifier(String& text) {
    unread(scanCharRun(text, isIdentifierChar));
    return ScanIdentifier;
}

int Scanner::scanNumber(String& text) {
    int ch = scanCharRun(text, isDigitChar);
    if (ch == '.' || ch == 'e' || ch == 'E') {
        text += char(ch);
        return scanReal(text, ch);
    }
    unread(ch);
    return ScanDigit;
}

// Entered with ch, the last character read, already appended: a digit, '.', 'e' or 'E'.
// "1e" and "1." are reals as they stand.
int Scanner::scanReal(String& text, int ch) {
    if (ch == '.' || std::isdigit(ch)) {
        ch = scanCharRun(text, isDigitChar);
        if (ch != 'e' && ch != 'E') {
            unread(ch);
            return ScanFloat;
        }
        text += char(ch);
    }
    QASSERT(ch == 'e' || ch == 'E');
    ch = read();
    if (ch != '+' && ch != '-' && !std::isdigit(ch)) {
        unread(ch);
        return ScanFloat;
    }
    text += char(ch);
    unread(scanCharRun(text, isDigitChar));
    return ScanFloat;
}

// %=, &=, |= and ^= are no pairs: each reaches the parser as two tokens.
int Scanner::scanOperator(String& text) {
    int c = text[0u];
    int n = read();
    if (n == EOF) return ScanOperator;
    if (std::ispunct(n)) {
        if (!isOperatorPair(c, n)) {
            unread(n);
            return ScanOperator;
        }
        text += char(n);
        if ((c == '<' || c == '>') && n == c) {
            int m = read();
            if (m == '=')
                text += '=';
            else
                unread(m);
        }
        return ScanOperator;
    }
    if (c == '.' && std::isdigit(n)) {
        text += char(n);
        return scanReal(text, n);
    }
    unread(n);
    return ScanOperator;
}

// A new-line ends the literal as an error, consumed and not appended, unless
// multiLineStrings is set.
int Scanner::scanString(String& text) {
    bool escaped = false;
    for (;;) {
        int ch = read();
        if (ch == EOF) return ScanError;
        if (ch == '\n' && !multiLineStrings) return ScanError;
        text += char(ch);
        if (escaped)
            escaped = false;
        else if (ch == '\\')
            escaped = true;
        else if (ch == '"')
            return ScanString;
    }
}

// 'a', '\n', '\012' and '\x41' are characters; a new-line or the end of the
// stream anywhere in the literal makes it an error.
int Scanner::scanChar(String& text) {
    int ch = read();
    if (ch == EOF || ch == '\n') return ScanError;
    text += char(ch);
    if (ch == '\\') {
        ch = read();
        if (ch == EOF || ch == '\n') return ScanError;
        text += char(ch);
        if (std::isdigit(ch) || std::isalpha(ch)) {
            int stop = scanCharRun(text, std::isdigit(ch) ? isDigitChar : isAlnumChar);
            if (stop == EOF || stop == '\n') return ScanError;
            text += char(stop);
            return stop == '\'' ? ScanChar : ScanError;
        }
    }
    ch = read();
    if (ch == EOF || ch == '\n') return ScanError;
    text += char(ch);
    return ch == '\'' ? ScanChar : ScanError;
}
