// The numbered error table, the raise operation, the report sinks and TarnException.
#ifndef QUILL_QUILLERR_H
#define QUILL_QUILLERR_H

#include <iosfwd>

#include "quill/object.h"
#include "quill/quillstr.h"

extern Class class_TarnException;

// Codes of the fixed part of the error table.
enum {
    ANY = 0,
    ALLOCFAIL,
    ALLOCSIZE,
    ASSERTFLD,
    BADARGCL,
    BADARGCLM,
    BADARGS,
    BADARGSP,
    BADARGSPM,
    BADCLASS,
    BADERRNUM,
    BADOBJECT,
    BADPTR,
    BADSPEC,
    CASTBADCL,
    CASTBADOB,
    DELETENIL,
    DRVDCLASSRSP,
    GENERICERR,
    ILLEGALMETHOD,
    INDEXRANGE,
    NOTINIT,
    NOTYET,
    RDABSTCLASS,
    RDBADTYP,
    RDEOF,
    RDFAIL,
    RDREFERR,
    RDSYNERR,
    RDUNKCLASS,
    RDVERSERR,
    RDWRONGCLASS,
    READBINERR,
    READBINUNDFL,
    STOREBINERR,
    STRINGOV,
    SYSERR,
    TOOMANYERRS
};

// Severities.
enum { SEV_FATAL = -4, SEV_ERROR = 1, SEV_WARNING = -2, SEV_INFO = -1, SEV_SUCCESS = 0 };

class TarnException : public Object {
    DECLARE_MEMBERS(TarnException)
public:
    TarnException();
    TarnException(int code, const char* message, int severity);
    TarnException(const TarnException&) = default;
    // Stream form: code, severity, then the message as a String object.
    TarnException(std::istream& is, Object* where);
    TarnException(BinIstream& is, Object* where);
    ~TarnException() noexcept(false) override;

    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    int code() const { return code_; }
    int severity() const { return severity_; }
    const String& message() const { return message_; }
    const char* what() const { return message_.asCharPointer(); }

private:
    int code_;
    String message_;
    int severity_;
};

// Runs action; answers the text of the library's error that it raised, the
// error deleted, or an empty text when it raised none.
template <class Action>
String errorTextOf(Action action) {
    try {
        action();
    } catch (TarnException* e) {
        String message = e->message();
        delete e;
        return message;
    }
    return String();
}

// Formats the text of code with the arguments and throws a new TarnException.
// An unknown code raises BADERRNUM instead.
[[noreturn]] void setError(int code, int severity, ...);
// Adds a text to the table and answers its code.
int newQUILLerror(const char* text);
int lastErrorCodeInUse();
const char* errorText(int code);
void createErrorTable();
void deleteErrorTable();

// Writes a report through the hook, or else to the two report streams.
void reportError(int severity, const char* text);
const char* severityWord(int severity);
void setReportStreams(std::ostream* one, std::ostream* two);

typedef int (*ErrorReportHook)(int severity, const char* message);
extern ErrorReportHook errorReportHook;
// Set while a raised error travels; cleared by each catch site.
extern int errorInProgress;

// Every assertion: the expression as text, the source file and the line.
#define QASSERT(expr) ((expr) ? (void)0 : setError(ASSERTFLD, SEV_ERROR, #expr, __FILE__, __LINE__))
#define QASSERT_TEXT(expr, text) ((expr) ? (void)0 : setError(ASSERTFLD, SEV_ERROR, text, __FILE__, __LINE__))

#endif
