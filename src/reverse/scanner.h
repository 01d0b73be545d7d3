// Scanner, which cuts a character stream into the tokens of the interpreted language.
#ifndef REVERSE_SCANNER_H
#define REVERSE_SCANNER_H

#include <cstdint>
#include <iosfwd>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

extern Class class_Scanner;

// Token kinds; ORDER KIND: also the index into the table of their printed names.
enum ScanKind {
    ScanSpace,       // exactly one white-space character, the new-line included
    ScanDigit,       // a run of decimal digits
    ScanFloat,       // a real literal
    ScanIdentifier,  // letters, digits, _
    ScanOperator,    // one punctuation character, or a recognised pair such as >>= or ()
    ScanString,      // the whole literal, quotes and backslashes as written
    ScanChar,        // the whole literal, quotes as written
    ScanError,       // what had been read when a literal went wrong, or an unclassifiable character
    ScanEOF          // empty text
};

// Reads one character at a time by the C locale's character classes, with one
// token of push-back. A ScanError is delivered like any token: the parser decides.
class Scanner : public Object {
    DECLARE_MEMBERS(Scanner)
public:
    Scanner();  // no stream: the first read fails the assertion "in != 0"
    // Takes an open stream and owns it.
    explicit Scanner(std::istream* stream);
    // Opens the file when it exists and is readable; otherwise the stream stays null.
    explicit Scanner(const String& fileName);
    ~Scanner() noexcept(false) override;

    // Closes the present stream and opens fileName as the constructor does; 1 when opened.
    int reopen(const String& fileName);
    // Destroys the stream; 1 when there was one.
    int close();

    void get(String& text, int& kind);
    // Stores one token for the next get; a second call before it overwrites the first.
    // An empty text means nothing is pushed back.
    void putBack(const String& text, int kind);
    void setRecogniseStrings(int on) { recogniseStrings = on; }
    const String& getFileName() const { return fileName; }

    static String kindName(int kind);

private:
    bool open(const String& name);
    int read();           // the next character, or EOF
    void unread(int ch);  // returns ch to the stream; EOF is not returned
    int scanIdentifier(String& text);
    int scanNumber(String& text);
    int scanReal(String& text, int ch);
    int scanOperator(String& text);
    int scanString(String& text);
    int scanChar(String& text);
    int scanCharRun(String& text, int (*belongs)(int));

    std::istream* in;  // owned; null when no stream could be opened
    String fileName;   // empty for an in-memory stream
    String pushedToken;
    std::int32_t pushedKind;
    std::int32_t multiLineStrings;  // a new-line may stand in a string literal; nothing sets it
    std::int32_t recogniseStrings;  // when 0, " and ' are plain punctuation
};

#endif
