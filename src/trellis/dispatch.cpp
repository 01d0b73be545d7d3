// Loop levels, dispatch passes, one-shot timers and the dispatching sleep.
#include "trellis/dispatch.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QObject>
#include <QTimerEvent>
#include <iostream>
#include <map>

#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/startup.h"
#include "quill/symbol.h"
#include "trellis/shell.h"

Symbol XTimeOut("XTimeOut");

namespace {

int level = 0;
int result = 0;
bool dispatchedAhead = false;  // eventPending served the queue for the next dispatchOne
bool stopWaits = false;

// A pending timer marks its object with a listener of its own: the
// listener dies with the object, and its serial tells it apart from any
// later one at the same address, so a timer can't fire on a newer object
// that took the place of a destroyed one.
Symbol TimerMark("TimerMark");

void timerMark(Cback&) {}

struct PendingTimer {
    Object* bound;
    Cback* mark;
    double serial;

    bool boundAlive() const {
        return validObject(mark) && mark->isMemberOf(class_Cback) && mark->wakeup == serial &&
               mark->owner == bound;
    }
    void dropMark() const {
        if (!boundAlive()) return;
        bound->removeCback(*mark, true);
        delete mark;
    }
};

// Receives the Qt timers; the table maps their identifiers to the pending ones.
class TimerHost : public QObject {
public:
    std::map<int, PendingTimer> table;

protected:
    void timerEvent(QTimerEvent* e) override {
        auto found = table.find(e->timerId());
        killTimer(e->timerId());
        if (found == table.end()) return;
        PendingTimer pending = found->second;
        table.erase(found);
        if (!pending.boundAlive()) return;
        pending.dropMark();
        pending.bound->cbackOn(XTimeOut);
    }
};

TimerHost& timers() {
    static TimerHost* host = new TimerHost;
    return *host;
}

void clearCell(Cback& cb) { static_cast<Integer*>(cb.owner)->value(0); }

Integer* newCell() {
    Integer* cell = new Integer(0);
    cell->addCback(XTimeOut, clearCell);
    return cell;
}

}  // namespace

int eventPending() {
    if (dispatchedAhead) return 1;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher) return 0;
    QCoreApplication::sendPostedEvents();
    dispatchedAhead = dispatcher->processEvents(QEventLoop::AllEvents);
    return dispatchedAhead;
}

void dispatchOne() {
    if (dispatchedAhead) {
        dispatchedAhead = false;
        return;
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void dispatchPending() {
    while (eventPending()) dispatchOne();
}

int mainLoop() {
    int remembered = level++;
    while (level > remembered) dispatchOne();
    return result;
}

void exitLoop(int value) {
    if (level < 1) {
        eventDispatchHook = 0;
        eventPendingHook = 0;
        stopWaits = true;
        return;
    }
    --level;
    result = value;
}

int runMainLoop() {
    if (!topLevelWidget->isRealized()) topLevelWidget->realize();
    int value = mainLoop();
    exitLoop(0);
    return value;
}

int loopLevel() { return level; }

void quitCallback(Cback&) { exitLoop(0); }

int addXTimeOut(int milliseconds, Object& object) {
    int id = timers().startTimer(milliseconds < 0 ? 0 : milliseconds, Qt::PreciseTimer);
    if (id == 0) {
        std::cerr << "addXTimeOut cannot add a new timer" << std::endl;
        return 0;
    }
    Cback& mark = object.addCback(TimerMark, timerMark);
    timers().table[id] = PendingTimer{&object, &mark, mark.wakeup};
    return id;
}

void removeXTimeOut(int identifier) {
    auto found = timers().table.find(identifier);
    if (found == timers().table.end()) return;
    found->second.dropMark();
    timers().table.erase(found);
    timers().killTimer(identifier);
}

unsigned pendingTimers() { return unsigned(timers().table.size()); }

void toolkitSleep(int milliseconds) {
    static Integer* shared = 0;
    static bool sharedInUse = false;
    if (!shared) shared = newCell();
    // A wait inside a wait has a cell of its own, so that each ends by its timer.
    bool fresh = sharedInUse;
    Integer* cell = fresh ? newCell() : shared;
    sharedInUse = true;
    struct Restore {
        Integer* cell;
        bool fresh;
        int timer;
        ~Restore() {
            removeXTimeOut(timer);
            if (fresh)
                delete cell;
            else
                sharedInUse = false;
        }
    } restore{cell, fresh, 0};
    cell->value(1);
    restore.timer = addXTimeOut(milliseconds, *cell);
    stopWaits = false;
    while (cell->value() > 0 && !stopWaits) dispatchOne();
}
