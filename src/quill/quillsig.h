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

#endif
