// The handlers that turn fatal signals into the error SYSERR.
#ifndef QUILL_QUILLSIG_H
#define QUILL_QUILLSIG_H

// Sets handlers for SIGABRT, SIGFPE, SIGTERM, SIGILL and SIGSEGV. Each one
// raises SYSERR at FATAL severity, "System Signal " with the signal's name.
void installSignalHandlers();
// Gives the five signals back their default action.
void removeSignalHandlers();
// Gives SIGABRT its default action, so that a final abort cannot loop.
void resetAbortSignal();
// The name a handler reports for sig, or null for a signal it does not handle.
const char* signalName(int sig);

class Object;
// The library's own object, on which process-wide events such as
// AbortErrorCback are raised.
Object& libraryObject();
// For a host that reports the unhandled exceptions of a process by number:
// raises AbortErrorCback on the library object with the text
// "{ Unhandled exception <number> for process <process> }\n\t" and text, then
// reports that text at FATAL.
void unhandledException(int number, const char* process, const char* text);

#endif
