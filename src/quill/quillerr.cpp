// The error table, setError, the report sinks and TarnException.
#include "quill/quillerr.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "quill/binstrm.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/qclass.h"
#include "quill/startup.h"

namespace {

const char* const fixedTexts[] = {
    "[ANY] Generic error -- should not happen ",
    "[ALLOCFAIL] Not enough memory -- NEW failed: requested %ld bytes",
    "[ALLOCSIZE] Negative or zero object allocation size requested: %s::%s()",
    "[ASSERTFLD] Assertion failed \"%s\" in File %s: Line %d",
    "[BADARGCL] Invalid argument class: expected %s(%s), was %s(%s)",
    "[BADARGCLM] Invalid argument class: expected %s::%s(%s), was %s::%s(%s)",
    "[BADARGS] Invalid argument class: expected %s OR %s, was %s",
    "[BADARGSP] Invalid argument species: expected %s(%s), was %s(%s)",
    "[BADARGSPM] Invalid argument species: expected %s::%s(%s), was %s::%s(%s)",
    "[BADCLASS] Invalid object class: expected %s, was %s",
    "[BADERRNUM] Invalid error code: %s(%d)",
    "[BADOBJECT] Invalid object: %#.08lx in function %s()",
    "[BADPTR] %s(%s): %s",
    "[BADSPEC] Invalid object species: expected %s, was %s",
    "[CASTBADCL] Cast bad class in file %s at line %d: expected %s, was %s",
    "[CASTBADOB] Cast bad object in file %s at line %d: expected %s",
    "[DELETENIL] Tried to delete the nil object",
    "[DRVDCLASSRSP] Derived class responsability method %s::%s()",
    "[%s] %s%s%s",
    "[ILLEGALMETHOD] Should not implement method %s::%s()",
    "[INDEXRANGE] Index out of range: %s::%s(%d)",
    "[NOTINIT] Tried to use uninitialized class %s: %s::%s()",
    "[NOTYET] Sorry, method %s:%s() has not yet been implemented",
    "[RDABSTCLASS] Tried to read object of abstract class %s",
    "[RDBADTYP] Bad record type (%d) read from file descriptor %d",
    "[RDEOF] Premature EOF encountered on input stream",
    "[RDFAIL] Input stream read failed ... %s ...",
    "[RDREFERR] Tried to read object reference into pre-allocated area: class %s @%d",
    "[RDSYNERR] Syntax error on input stream: expected %s, was %s ...",
    "[RDUNKCLASS] Tried to read object of unknown class %s",
    "[RDVERSERR] Incorrect class %s version number encountered on read: expected %lu, was %lu",
    "[RDWRONGCLASS] Tried to read object of wrong class: expected %s, was %s",
    "[READBINERR] %s",
    "[READBINUNDFL] Underflow -- %d bytes expected - %d bytes read",
    "[STOREBINERR] %s",
    "[STRINGOV] String buffer overflowed during read (%u characters)",
    "[SYSERR] %s(%s): %s",
    "[TOOMANYERRS] One too many error was set: %s",
};

const int INITIAL_SLOTS = 138;
const int GROWTH = 100;
const int MAX_MESSAGE = 10000;
const char* const UNKNOWN_TEXT = "UNKNOW ERROR";

const char** errorTexts = 0;
int slots = 0;
int lastErrorCode = 37;

std::ostream* reportStreamOne = 0;
std::ostream* reportStreamTwo = &std::cerr;

void growTable() {
    checkPointer(errorTexts, "newQUILLerror(1)", 0);
    errorTexts = static_cast<const char**>(objectRealloc(errorTexts, (slots + GROWTH) * sizeof(const char*)));
    for (int i = slots; i < slots + GROWTH; ++i) errorTexts[i] = UNKNOWN_TEXT;
    slots += GROWTH;
    checkPointer(errorTexts, "newQUILLerror", 0);
}

}  // namespace

ErrorReportHook errorReportHook = 0;
int errorInProgress = 0;

void createErrorTable() {
    if (errorTexts) return;
    errorTexts = static_cast<const char**>(objectAlloc(INITIAL_SLOTS * sizeof(const char*)));
    slots = INITIAL_SLOTS;
    lastErrorCode = 37;
    for (int i = 0; i < slots; ++i) errorTexts[i] = i <= lastErrorCode ? fixedTexts[i] : UNKNOWN_TEXT;
}

void deleteErrorTable() {
    if (!errorTexts) return;
    objectFree(errorTexts);
    errorTexts = 0;
    slots = 0;
}

int newQUILLerror(const char* text) {
    createErrorTable();
    if (lastErrorCode + 1 >= slots) growTable();
    errorTexts[++lastErrorCode] = text;
    return lastErrorCode;
}

int lastErrorCodeInUse() { return lastErrorCode; }

const char* errorText(int code) {
    createErrorTable();
    return code >= 0 && code < slots ? errorTexts[code] : UNKNOWN_TEXT;
}

void setError(int code, int severity, ...) {
    // Raising before the start-up made the table still has the fixed texts.
    createErrorTable();
    if (code < 0 || code > lastErrorCode) setError(BADERRNUM, SEV_ERROR, "ExceptionAction", code);
    char buffer[MAX_MESSAGE + 2];
    va_list args;
    va_start(args, severity);
    int length = vsnprintf(buffer, sizeof buffer, errorTexts[code], args);
    va_end(args);
    if (length > MAX_MESSAGE) {
        reportError(SEV_FATAL, "[QUILL_NOCONTINUE] Error string is longer of allocated space\n");
        reportError(severity, buffer);
        quillAbort(0);
    }
    errorInProgress = 1;
    throw new TarnException(code, buffer, severity);
}

const char* severityWord(int severity) {
    switch (severity) {
        case -4:
            return "FATAL";
        case -3:
        case 1:
            return "ERROR";
        case -2:
            return "WARNING";
        case -1:
            return "INFO";
        case 0:
            return "SUCCESS";
        default:
            return "UNKNOWN SEVERITY CODE";
    }
}

void setReportStreams(std::ostream* one, std::ostream* two) {
    reportStreamOne = one;
    reportStreamTwo = two;
}

void reportError(int severity, const char* text) {
    if (errorReportHook && errorReportHook(severity, text)) return;
    for (std::ostream* os : {reportStreamOne, reportStreamTwo})
        if (os) *os << "\n" << severityWord(severity) << " " << text << std::endl;
}

// TarnException

DEFINE_CLASS(TarnException, Object, 1, 0)

TarnException::TarnException() : code_(0), severity_(0) {}

TarnException::TarnException(int code, const char* message, int severity)
    : code_(code), message_(message), severity_(severity) {}

TarnException::TarnException(std::istream& is, Object* where) : Object(is, where), code_(0), severity_(0) {
    is >> code_ >> severity_;
    readFrom(is, "String", &message_);
}

TarnException::TarnException(BinIstream& is, Object* where) : Object(is, where), code_(0), severity_(0) {
    is >> code_ >> severity_;
    readFrom(is, "String", &message_);
}

TarnException::~TarnException() noexcept(false) { errorInProgress = 0; }

bool TarnException::isEqual(const Object& ob) const {
    return ob.isSpecies(*species()) && static_cast<const TarnException&>(ob).code_ == code_;
}

void TarnException::storer(std::ostream& os) const {
    Object::storer(os);
    os << code_ << ' ' << severity_ << ' ';
    message_.storeOn(os);
}

void TarnException::storer(BinOstream& os) const {
    Object::storer(os);
    os << code_ << severity_;
    message_.storeOn(os);
}

void TarnException::printOn(std::ostream& os) const {
    os << className();
    if (code_ != 0) os << " " << code_;
    os << message_.asCharPointer();
}
