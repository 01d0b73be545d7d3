// The toolkit's start and stop: the Qt application, key routing, caught errors, hooks and console.
#include "trellis/toolkit.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QIcon>
#include <QKeyEvent>
#include <QStyle>
#include <QWidget>
#include <cstdlib>
#include <iostream>

#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/startup.h"
#include "trellis/ask.h"
#include "trellis/console.h"
#include "trellis/dispatch.h"
#include "trellis/shell.h"

namespace {

bool creatingApplication = false;

// Keys go first to the shell of the widget that receives them; errors
// raised by listeners end here, reported, and the loop goes on.
class TarnApplication : public QApplication {
public:
    TarnApplication(int& argc, char** argv) : QApplication(argc, argv) {}

    bool notify(QObject* receiver, QEvent* e) override {
        try {
            if ((e->type() == QEvent::KeyPress || e->type() == QEvent::KeyRelease) &&
                receiver->isWidgetType() &&
                routeKey(static_cast<QWidget*>(receiver), static_cast<QKeyEvent*>(e)))
                return true;
            return QApplication::notify(receiver, e);
        } catch (TarnException* error) {
            errorInProgress = 0;
            reportError(error->severity(), error->what());
            delete error;
            return true;
        }
    }

private:
    static bool routeKey(QWidget* receiver, QKeyEvent* e) {
        Object* found = widgetOfHandle(receiver);
        if (found == nil) return false;
        CppWidget* w = static_cast<CppWidget*>(found);
        while (w->hasParentWidget() && w->parent()) w = w->parent();
        return w->keyEvent(e->key(), e->type() == QEvent::KeyRelease) != 0;
    }
};

// Without any platform to open, Qt ends the process; the program ends it
// first, with its own message.
void noPlatform(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtFatalMsg && creatingApplication) {
        std::cerr << "This program must be linked with flag -subsystem:windows" << std::endl;
        quillAbort(0);
    }
    // Qt's own warnings are for its developers; what stops it is reported.
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << message.toLocal8Bit().constData() << std::endl;
}

int reportInBox(int severity, const char* message) {
    String text(severityWord(severity));
    text += " ";
    text += message;
    showMessage(text.asCharPointer(), "QUILL Error", MESSAGE_ERROR);
    return 1;
}

void setMinimizedIcon() {
    QIcon icon = QFileInfo("minimize.ico").isReadable() ? QIcon("minimize.ico")
                                                        : qApp->style()->standardIcon(QStyle::SP_DesktopIcon);
    QApplication::setWindowIcon(icon);
}

void clipboardChanged() {
    if (topLevelWidget && !QApplication::clipboard()->ownsClipboard())
        topLevelWidget->cbackOn(ClipboardDestroyed);
}

void makeConsole() {
    String title("cout/cerr ");
    if (Argc > 0) title += Argv[0];
    console = new WinOstream("Console", title.asCharPointer());
    console->resize(640, 300);
    console->attach();
}

void endConsoleLoop(Cback&) {
    console->close();
    exitLoop(0);
}

// At the end of a program that never showed a window, what it wrote stays
// on the screen until the user closes the console.
void showLonelyConsole() {
    if (!console || !eventDispatchHook || topLevelWidget->isRealized() || CppShell::shells().size() != 2)
        return;
    console->detach();
    if (!console->holdsOutput()) return;
    console->realize();
    console->addCback(WindowManagerCloseRequest, endConsoleLoop);
    mainLoop();
}

// Asks every window on the screen to close, as the window manager would.
void closeWindows(Cback&) {
    OrderedCltn shells(CppShell::shells());
    for (unsigned i = 0; i < shells.size(); ++i) {
        CppShell* shell = static_cast<CppShell*>(shells.at(i));
        if (validObject(shell) && shell->handle()->isVisible()) shell->closeRequested();
    }
}

// -closeAfter milliseconds: the windows are asked to close after that time,
// so that a script or a test can run a mode that waits for its user.
void closeAfterOption() {
    String delay;
    if (!findOption("-closeAfter", delay)) return;
    static Integer* closer = new Integer;
    closer->addCback(XTimeOut, closeWindows);
    addXTimeOut(std::atoi(delay.asCharPointer()), *closer);
}

struct Registration {
    Registration() {
        toolkitInitHook = toolkitStart;
        toolkitTermHook = toolkitStop;
    }
} registration;

}  // namespace

bool isHeadless() { return QGuiApplication::platformName() == QLatin1String("offscreen"); }

void toolkitStart() {
    QASSERT(topLevelWidget == 0);
    qInstallMessageHandler(noPlatform);
    creatingApplication = true;
    TarnApplication* application = new TarnApplication(Argc, Argv);
    creatingApplication = false;
    application->setQuitOnLastWindowClosed(false);
    new CppTopLevel("topLevel", "Tarn");
    errorReportHook = reportInBox;
    eventDispatchHook = dispatchOne;
    eventPendingHook = eventPending;
    sleepHook = toolkitSleep;
    setMinimizedIcon();
    QObject::connect(QApplication::clipboard(), &QClipboard::dataChanged, clipboardChanged);
    if (!isHeadless()) makeConsole();
    closeAfterOption();
}

void toolkitStop() {
    if (!qApp) return;
    showLonelyConsole();
    if (console) console->detach();
    OrderedCltn shells(CppShell::shells());
    for (int i = 0; i < int(shells.size()); ++i) {
        CppShell* shell = static_cast<CppShell*>(shells.at(i));
        if (!validObject(shell)) continue;
        shell->close();
        if (!shell->isRealized()) delete shell;
    }
    errorReportHook = 0;
    eventDispatchHook = 0;
    eventPendingHook = 0;
    sleepHook = 0;
}
