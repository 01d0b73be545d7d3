// Signal handlers: a fatal signal becomes a TarnException with code SYSERR.
#include "quill/quillsig.h"

#include <pthread.h>
#include <signal.h>

#include "quill/cback.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

struct SignalEntry {
    int number;
    const char* name;
};

const SignalEntry handledSignals[] = {
    {SIGABRT, "Program sent an abort()"}, {SIGFPE, "Floating Exception"}, {SIGTERM, "Terminal Interrupt"},
    {SIGILL, "Illegal Instruction"},      {SIGSEGV, "Segment Violation"},
};

void onSignal(int sig);

void setAction(int sig, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    // The handler leaves by throwing, never through sigreturn: the signal must
    // not stay blocked behind it, or its next arrival would be lost.
    action.sa_flags = handler == SIG_DFL ? 0 : SA_NODEFER;
    sigaction(sig, &action, 0);
}

void onSignal(int sig) {
    setAction(sig, onSignal);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, sig);
    pthread_sigmask(SIG_UNBLOCK, &set, 0);
    // A signal that arrives while a raised error has not been caught (the
    // abort of a throw that found no way out, say) takes the fatal path at
    // once: throwing again would only come back here.
    if (errorInProgress) {
        reportError(SEV_FATAL, formatText(errorText(SYSERR), "System Signal ", signalName(sig), ""));
        quillAbort(0);
    }
    setError(SYSERR, SEV_FATAL, "System Signal ", signalName(sig), "");
}

}  // namespace

const char* signalName(int sig) {
    for (const SignalEntry& s : handledSignals)
        if (s.number == sig) return s.name;
    return 0;
}

void installSignalHandlers() {
    for (const SignalEntry& s : handledSignals) setAction(s.number, onSignal);
}

void removeSignalHandlers() {
    for (const SignalEntry& s : handledSignals) setAction(s.number, SIG_DFL);
}

void resetAbortSignal() { setAction(SIGABRT, SIG_DFL); }

Object& libraryObject() {
    static Object* library = new Object;
    return *library;
}

void unhandledException(int number, const char* process, const char* text) {
    String message;
    formatString(message, "{ Unhandled exception %d for process %s }\n\t", number, process ? process : "");
    message += text ? text : "";
    CallData data(message.asCharPointer());
    libraryObject().cbackOn(AbortErrorCback, &data);
    reportError(SEV_FATAL, message.asCharPointer());
}
