// The dispatch loop with its levels, the timers and the wait that keeps the windows alive.
#ifndef TRELLIS_DISPATCH_H
#define TRELLIS_DISPATCH_H

class Cback;
class Object;
class Symbol;

extern Symbol XTimeOut;  // a timer has run out; raised on the object bound to it

// Non-zero when an event waits. Qt can't look into its queue without
// serving it, so the test dispatches what waits, and the dispatchOne that
// follows counts that pass as its own.
int eventPending();
// One pass over the event queue, waiting for an event when none is there.
void dispatchOne();
void dispatchPending();

// Enters one more loop level, dispatching until that level is left, and
// answers the value given to exitLoop.
int mainLoop();
// Leaves the innermost level with value. With no loop running it clears
// the library's dispatch hooks and ends the waits in progress.
void exitLoop(int value);
// Realises the top level when no one did, runs mainLoop, then exitLoop(0).
int runMainLoop();
// The number of loops running.
int loopLevel();
// The standard quit listener: exitLoop(0).
void quitCallback(Cback& cb);

// A one-shot timer that raises XTimeOut on object after the time given,
// unless the object is gone by then. Answers the timer's identifier.
int addXTimeOut(int milliseconds, Object& object);
void removeXTimeOut(int identifier);
unsigned pendingTimers();

// The library's sleep while windows stay alive: dispatches until the time
// is over. A wait inside a wait ends by its own timer.
void toolkitSleep(int milliseconds);

#endif
