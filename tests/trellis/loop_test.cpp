// Dispatch: loop levels and exitLoop, timers, waits inside waits, deferred events, keys and caught errors.
#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QWidget>

#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/startup.h"
#include "trellis/cursor.h"
#include "trellis/dispatch.h"
#include "trellis/form.h"
#include "trellis/handles.h"
#include "trellis/shell.h"
#include "trellis/text.h"
#include "trltest.h"

namespace {

std::vector<std::string> journal;

void note(Cback& cb) { journal.push_back(cb.event.name().asCharPointer()); }

// A shell that keeps the key A for itself.
class KeyShell : public CppShell {
public:
    KeyShell() : CppShell("KeyShell", 0) {}
    int keyEvent(int key, bool isUp) override {
        seen.push_back(isUp ? -key : key);
        return key == Qt::Key_A;
    }
    std::vector<int> seen;
};

void sendKey(QWidget* to, int key, const char* text) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(to, &press);
    QApplication::sendEvent(to, &release);
}

TEST(LoopTest, exitLoopWithoutLoopClearsTheDispatchHooks) {
    ASSERT_EQ(0, loopLevel());
    exitLoop(5);
    EXPECT_EQ(nullptr, eventDispatchHook);
    EXPECT_EQ(nullptr, eventPendingHook);
    eventDispatchHook = dispatchOne;
    eventPendingHook = eventPending;
}

// The outer loop's timer opens an inner loop; the inner timer ends only the
// inner level, whose value comes back to the callback, and a last timer
// ends the outer level.
TEST(LoopTest, nestedLoopsEndLevelByLevel) {
    struct Script {
        static void outer(Cback& cb) {
            Integer& inner = *CAST(Integer, cb.userData);
            addXTimeOut(5, inner);
            int value = mainLoop();
            journal.push_back("inner ended with " + std::to_string(value) + " at level " +
                              std::to_string(loopLevel()));
            exitLoop(7);
        }
        static void inner(Cback&) { exitLoop(3); }
    };
    journal.clear();
    Integer outerTimer, innerTimer;
    outerTimer.addCback(XTimeOut, Script::outer, &innerTimer);
    innerTimer.addCback(XTimeOut, Script::inner);
    addXTimeOut(5, outerTimer);
    EXPECT_EQ(7, mainLoop());
    EXPECT_EQ(0, loopLevel());
    ASSERT_EQ(1u, journal.size());
    EXPECT_EQ("inner ended with 3 at level 1", journal[0]);
}

TEST(LoopTest, timerOfADeletedObjectRaisesNothing) {
    journal.clear();
    Integer* bound = new Integer;
    bound->addCback(XTimeOut, note);
    unsigned before = pendingTimers();
    addXTimeOut(1, *bound);
    delete bound;
    Integer kept;
    kept.addCback(XTimeOut, note);
    addXTimeOut(20, kept);
    toolkitSleep(60);
    EXPECT_EQ(std::vector<std::string>{"XTimeOut"}, journal);
    EXPECT_EQ(before, pendingTimers());
}

TEST(LoopTest, removedTimerNeverRuns) {
    journal.clear();
    Integer bound;
    bound.addCback(XTimeOut, note);
    removeXTimeOut(addXTimeOut(1, bound));
    toolkitSleep(20);
    EXPECT_TRUE(journal.empty());
}

// A wait started from within a wait ends by its own timer, and the outer
// one goes on to its full time.
TEST(LoopTest, waitInsideAWait) {
    static qint64 innerEnd = 0;
    static QElapsedTimer clock;
    struct Script {
        static void innerWait(Cback&) {
            toolkitSleep(30);
            innerEnd = clock.elapsed();
        }
    };
    Integer trigger;
    trigger.addCback(XTimeOut, Script::innerWait);
    clock.start();
    addXTimeOut(10, trigger);
    toolkitSleep(150);
    qint64 outerEnd = clock.elapsed();
    EXPECT_GE(innerEnd, 40);
    EXPECT_LT(innerEnd, 150);
    EXPECT_GE(outerEnd, 150);
}

TEST(LoopTest, librarySleepDispatchesThroughTheHook) {
    journal.clear();
    Integer bound;
    bound.addCback(XTimeOut, note);
    addXTimeOut(1, bound);
    sleepMillis(30);
    EXPECT_EQ(1u, journal.size());
}

TEST(LoopTest, postedEventIsRaisedFromTheLoopAndItsDataFreed) {
    journal.clear();
    static Symbol Posted("Posted");
    CppShell shell("Poster", 0);
    shell.addCback(Posted, note);
    CallData* data = new CallData(new String("owned"), true);
    shell.postEvent(Posted, data);
    EXPECT_TRUE(journal.empty());
    dispatchPending();
    EXPECT_EQ(std::vector<std::string>{"Posted"}, journal);
    EXPECT_FALSE(validObject(data));
}

TEST(LoopTest, keyConsumedByTheShellNeverReachesTheControl) {
    KeyShell shell;
    CppForm* form = new CppForm("Form", &shell);
    CppText* text = new CppText("Field", form);
    sendKey(text->handle(), Qt::Key_A, "a");
    sendKey(text->handle(), Qt::Key_B, "b");
    EXPECT_EQ("b", std::string(text->getText().asCharPointer()));
    EXPECT_EQ((std::vector<int>{Qt::Key_A, -Qt::Key_A, Qt::Key_B, -Qt::Key_B}), shell.seen);
}

TEST(LoopTest, focusFollowsTheFocusFlag) {
    CppShell shell("FocusShell", 0);
    CppForm* form = new CppForm("Form", &shell);
    CppText* first = new CppText("First", form);
    CppText* second = new CppText("Second", form);
    shell.realize();
    first->setFocusFlag(true);
    first->setFocus();
    EXPECT_EQ(first->handle(), shell.handle()->focusWidget());
    second->setFocus();
    EXPECT_EQ(first->handle(), shell.handle()->focusWidget());
    shell.close();
}

TEST(LoopTest, errorOfAListenerIsReportedAndTheLoopGoesOn) {
    static std::string reported;
    struct Script {
        static void fails(Cback&) { setError(GENERICERR, SEV_ERROR, "TEST", "listener ", "failed", ""); }
        static int report(int, const char* message) {
            reported = message;
            return 1;
        }
    };
    ErrorReportHook former = errorReportHook;
    errorReportHook = Script::report;
    journal.clear();
    Integer failing, after;
    failing.addCback(XTimeOut, Script::fails);
    after.addCback(XTimeOut, note);
    addXTimeOut(1, failing);
    addXTimeOut(15, after);
    toolkitSleep(50);
    errorReportHook = former;
    EXPECT_EQ("[TEST] listener failed", reported);
    EXPECT_EQ(1u, journal.size());
    EXPECT_EQ(0, errorInProgress);
}

TEST(WidgetTest, cursorsByNameAndTheirPrevious) {
    CppShell shell("CursorShell", 0);
    EXPECT_EQ("", std::string(shell.setCursor("watch").asCharPointer()));
    EXPECT_EQ(Qt::WaitCursor, shell.handle()->cursor().shape());
    EXPECT_EQ("watch", std::string(shell.setCursor("no such cursor").asCharPointer()));
    EXPECT_EQ(Qt::CrossCursor, shell.handle()->cursor().shape());
    EXPECT_EQ(Qt::ForbiddenCursor, cursorShape("pirate"));
    EXPECT_EQ(Qt::SizeBDiagCursor, cursorShape("bottom_left_corner"));
}

TEST(WidgetTest, handleTableFollowsTheWidgets) {
    CppShell shell("TableShell", 0);
    CppForm* form = new CppForm("Form", &shell);
    QWidget* handle = form->handle();
    EXPECT_EQ(form, widgetOfHandle(handle));
    EXPECT_EQ(&shell, shell.childNamed("Form")->parent());
    delete form;
    EXPECT_EQ(nil, hWnd2Widget.find(handle));
    CerrCapture cerr;
    hWnd2Widget.remove(handle);
    EXPECT_EQ("hWnd not present in dictionary hWnd2Widget\n", cerr.str());
}

TEST(WidgetTest, geometryRealisesAManagedChildOfARealisedParent) {
    CppShell shell("GeometryShell", 0);
    shell.realize();
    CppForm* form = new CppForm("Late", &shell);
    int x, y, w, h;
    form->getGeometry(x, y, w, h);
    EXPECT_TRUE(form->isRealized());
    shell.close();
}

}  // namespace
