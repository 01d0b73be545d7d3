// CppShell, CppTopLevel and CppDialog on a Qt window: close, activation, drops and deferred events.
#include "trellis/shell.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QIcon>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "quill/cback.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/startup.h"
#include "trellis/dispatch.h"
#include "trellis/toolkit.h"

DEFINE_ABSTRACT_CLASS(CppShell, CppComposite, 1, 0)
DEFINE_ABSTRACT_CLASS(CppTopLevel, CppShell, 1, 0)
DEFINE_ABSTRACT_CLASS(CppDialog, CppShell, 1, 0)

Symbol WinWmMenuSelect("WinWmMenuSelect");
Symbol TopLevelFocusIn("TopLevelFocusIn");
Symbol TopLevelFocusOut("TopLevelFocusOut");
Symbol FilesDropped("FilesDropped");
Symbol WindowManagerCloseRequest("WindowManagerCloseRequest");
Symbol ClipboardDestroyed("ClipboardDestroyed");

CppTopLevel* topLevelWidget = 0;

namespace {

// A child that fills the shell: managed, and no window of its own.
bool fillsShell(CppWidget& child) { return child.isManaged() && !child.isKindOf(class_CppShell); }

OrderedCltn& shellList() {
    static OrderedCltn* list = new OrderedCltn;
    return *list;
}

// An event queued by postEvent: a copy of the symbol and the data, both
// freed with the event, also when the window goes before it is delivered.
class PostedEvent : public QEvent {
public:
    static QEvent::Type kind() {
        static const QEvent::Type type = QEvent::Type(QEvent::registerEventType());
        return type;
    }
    PostedEvent(const Symbol& event, CallData* data)
        : QEvent(kind()), symbol(new Symbol(event)), data(data) {}
    ~PostedEvent() override {
        delete symbol;
        if (validObject(data) && data->isMemberOf(class_CallData)) delete data;
    }
    Symbol* symbol;
    CallData* data;
};

// The Qt window of a shell. The shell lets go of it before the window
// goes, so that no event reaches a shell half destroyed.
class ShellWindow : public QWidget {
public:
    ShellWindow(CppShell& shell, QWidget* parent, Qt::WindowFlags flags)
        : QWidget(parent, flags), shell(&shell) {
        setAcceptDrops(true);
    }
    void forget() { shell = 0; }

protected:
    void closeEvent(QCloseEvent* e) override {
        e->ignore();
        if (shell) shell->closeRequested();
    }
    void changeEvent(QEvent* e) override {
        QWidget::changeEvent(e);
        if (shell && e->type() == QEvent::ActivationChange)
            shell->cbackOn(isActiveWindow() ? TopLevelFocusIn : TopLevelFocusOut);
    }
    void resizeEvent(QResizeEvent* e) override {
        QWidget::resizeEvent(e);
        if (!shell) return;
        shell->fitChildren();
        shell->cbackOn(WidgetResize);
    }
    void dragEnterEvent(QDragEnterEvent* e) override {
        if (e->mimeData()->hasUrls()) e->acceptProposedAction();
    }
    void dropEvent(QDropEvent* e) override {
        if (!shell) return;
        OrderedCltn* names = new OrderedCltn;
        for (const QUrl& url : e->mimeData()->urls())
            if (url.isLocalFile()) names->add(*new String(url.toLocalFile().toLocal8Bit().constData()));
        QPoint at = e->position().toPoint();
        shell->setDropPoint(Point(at.x(), at.y()));
        CallData data(names, true);
        shell->cbackOn(FilesDropped, &data);
    }
    bool event(QEvent* e) override {
        if (e->type() != PostedEvent::kind()) return QWidget::event(e);
        PostedEvent* posted = static_cast<PostedEvent*>(e);
        if (shell && validObject(posted->symbol) && posted->symbol->isMemberOf(class_Symbol))
            shell->cbackOn(*posted->symbol, posted->data);
        return true;
    }

private:
    CppShell* shell;
};

}  // namespace

// CppShell

CppShell::CppShell(const char* name, CppWidget* parent, const char* title) : CppComposite(name, parent) {
    build(title, PLAIN);
}

CppShell::CppShell(const char* name, CppWidget* parent, const char* title, Kind kind)
    : CppComposite(name, parent) {
    build(title, kind);
}

void CppShell::build(const char* title, Kind kind) {
    // A dialogue stays above the window it belongs to; other shells are
    // windows apart.
    QWidget* owner = kind == DIALOG && parent() && parent()->shell() ? parent()->shell()->handle() : 0;
    Qt::WindowFlags flags = kind == DIALOG ? Qt::Dialog : Qt::Window;
    setHandle(new ShellWindow(*this, owner, flags));
    handle()->hide();
    setTitle(title ? title : name().name().asCharPointer());
    shellList().add(*this);
}

CppShell::~CppShell() noexcept(false) {
    static_cast<ShellWindow*>(handle())->forget();
    int i = shellList().indexOfSame(*this);
    if (i >= 0) shellList().removeAtIndex(i);
}

const OrderedCltn& CppShell::shells() { return shellList(); }

void CppShell::realize() {
    CppComposite::realize();
    if (!sizedByProgram) {
        QSize size = handle()->size();
        bool any = false;
        for (int i = 0; i < childCount(); ++i) {
            CppWidget* child = widgetAt(i);
            if (!fillsShell(*child)) continue;
            QSize childSize = child->handle()->size();
            size = any ? size.expandedTo(childSize) : childSize;
            any = true;
        }
        if (any) handle()->resize(size);
    }
    fitChildren();
    if (showsOnRealize()) {
        handle()->show();
        if (!isHeadless()) handle()->raise();
    }
}

void CppShell::resize(int width, int height) {
    CppWidget::resize(width, height);
    fitChildren();
}

int CppShell::hasParentWidget() const { return 0; }

void CppShell::add(CppWidget& child) {
    CppComposite::add(child);
    if (fillsShell(child)) child.handle()->resize(handle()->size());
}

void CppShell::fitChildren() {
    QSize size = handle()->size();
    for (int i = 0; i < childCount(); ++i) {
        CppWidget* child = widgetAt(i);
        if (!fillsShell(*child)) continue;
        child->move(0, 0);
        child->resize(size.width(), size.height());
    }
}

void CppShell::setTitle(const char* title) { handle()->setWindowTitle(QString::fromLocal8Bit(title)); }

String CppShell::title() const { return String(handle()->windowTitle().toLocal8Bit().constData()); }

void CppShell::setIcon(const char* fileName) {
    if (QFileInfo(fileName).isReadable()) handle()->setWindowIcon(QIcon(fileName));
}

void CppShell::close() { handle()->hide(); }

void CppShell::closeRequested() {
    if (!hasCback(WindowManagerCloseRequest)) quillAbort(0);
    cbackOn(WindowManagerCloseRequest);
}

void CppShell::raise() {
    if (!isHeadless()) handle()->raise();
    handle()->activateWindow();
}

void CppShell::postEvent(const Symbol& event, CallData* callData) {
    QCoreApplication::postEvent(handle(), new PostedEvent(event, callData));
}

// CppTopLevel

CppTopLevel::CppTopLevel(const char* name, const char* title) : CppShell(name, 0, title, TOP_LEVEL) {
    if (topLevelWidget) shouldNotImplement("creator for another CppTopLevel");
    topLevelWidget = this;
}

CppTopLevel::~CppTopLevel() noexcept(false) {
    if (topLevelWidget == this) topLevelWidget = 0;
}

bool CppTopLevel::showsOnRealize() const {
    for (int i = 0; i < childCount(); ++i)
        if (fillsShell(*widgetAt(i))) return true;
    return false;
}

// CppDialog

CppDialog::CppDialog(const char* name, CppWidget* parent, const char* title)
    : CppShell(name, parent, title, DIALOG), modal(false) {}

void CppDialog::popup(int grab) {
    if (!isRealized()) realize();
    handle()->setWindowModality(grab == GRAB_EXCLUSIVE ? Qt::ApplicationModal : Qt::NonModal);
    handle()->show();
    if (!isHeadless()) handle()->raise();
}

void CppDialog::popdown() { handle()->hide(); }

bool CppDialog::isUp() const { return handle()->isVisible(); }

int CppDialog::runModal() {
    popup(GRAB_EXCLUSIVE);
    bool outer = modal;
    modal = true;
    int result = mainLoop();
    modal = outer;
    popdown();
    return result;
}

void CppDialog::closeRequested() {
    if (hasCback(WindowManagerCloseRequest)) {
        cbackOn(WindowManagerCloseRequest);
        return;
    }
    popdown();
    if (modal) exitLoop(0);
}
