// Menus on QMenuBar, QMenu and QAction: entries, accelerators, "--empty--" and the menu events.
#include "trellis/menu.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <iostream>

#include "quill/cback.h"
#include "quill/integer.h"
#include "trellis/entry.h"
#include "trellis/handles.h"
#include "trellis/qtext.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(MenuBar, CppComposite, 1, 0)
DEFINE_ABSTRACT_CLASS(MotifMenu, CppComposite, 1, 0)
DEFINE_ABSTRACT_CLASS(PulldownMenu, MotifMenu, 1, 0)
DEFINE_ABSTRACT_CLASS(PopupMenu, MotifMenu, 1, 0)
DEFINE_ABSTRACT_CLASS(ButtonMenu, CppCommand, 1, 0)

Symbol MenuPressed("MenuPressed");
Symbol MenuDown("MenuDown");
Symbol MenuHidden("MenuHidden");

namespace {

const char* const EMPTY_ENTRY = "--empty--";

// Entries keep their identifier in the action's data; "--empty--" has none.
bool isChoice(QAction* action) { return !action->isSeparator() && action->data().isValid(); }

String identityOf(QAction* action) { return entryIdentity(action->text().toUtf8().constData()); }

QMenu* qmenu(const CppWidget& w) { return static_cast<QMenu*>(w.handle()); }

void raiseChoice(MotifMenu& menu, int identifier) {
    Integer id(identifier);
    CallData data(id);
    menu.cbackOn(MenuPressed, &data);
}

}  // namespace

// MenuBar

MenuBar::MenuBar(const char* name, CppWidget* parent) : CppComposite(name, parent) {
    QMenuBar* bar = new QMenuBar(parentContainer());
    bar->setNativeMenuBar(false);
    setHandle(bar);
}

void MenuBar::add(CppWidget& child) {
    CppComposite::add(child);
    if (child.isKindOf(class_MotifMenu)) static_cast<QMenuBar*>(handle())->addMenu(qmenu(child));
}

// MotifMenu

MotifMenu::MotifMenu(const char* name, CppWidget* parent, const char* title)
    : CppComposite(name, parent, false), nextIdentifier(1) {
    QMenu* menu = new QMenu(toQt(title ? title : name), parentContainer());
    setHandle(menu);
    hWnd2Menu.add(menu, *this);
    showEmptyEntry();
    QObject::connect(menu, &QMenu::triggered, [this](QAction* action) {
        if (isChoice(action) && action->menu() == 0 && qmenu(*this)->actions().contains(action))
            raiseChoice(*this, action->data().toInt());
    });
    QObject::connect(menu, &QMenu::aboutToShow, [this] { cbackOn(MenuDown); });
    // Qt hides a menu before it reports the choice that closed it: the event
    // waits for the loop, so that the choice comes first.
    QObject::connect(menu, &QMenu::aboutToHide,
                     [this, menu] { QTimer::singleShot(0, menu, [this] { cbackOn(MenuHidden); }); });
    QObject::connect(menu, &QMenu::hovered, [this](QAction* action) {
        CppShell* s = shell();
        if (!s || !isChoice(action)) return;
        Integer id(action->data().toInt());
        CallData data(id);
        s->cbackOn(WinWmMenuSelect, &data);
    });
}

MotifMenu::~MotifMenu() noexcept(false) { hWnd2Menu.remove(handle()); }

void MotifMenu::showEmptyEntry() {
    QAction* empty = qmenu(*this)->addAction(EMPTY_ENTRY);
    empty->setEnabled(false);
}

int MotifMenu::addChoice(const char* entry) {
    QMenu* menu = qmenu(*this);
    if (choiceCount() == 0)
        for (QAction* action : menu->actions())
            if (!isChoice(action) && !action->isSeparator()) delete action;
    QAction* action = menu->addAction(toQt(entryLabel(entry)));
    int identifier = nextIdentifier++;
    action->setData(identifier);
    String translation = acceleratorTranslation(entryAccelerator(entry).asCharPointer());
    if (translation.size())
        action->setShortcut(
            QKeySequence(toQt(translationKeys(translation.asCharPointer())), QKeySequence::PortableText));
    return identifier;
}

void MotifMenu::addSeparator() { qmenu(*this)->addSeparator(); }

void MotifMenu::addTitle(const char* text) { qmenu(*this)->addSection(toQt(text)); }

QAction* MotifMenu::findChoice(const char* name, const char* caller) const {
    String wanted = entryIdentity(name);
    for (QAction* action : qmenu(*this)->actions())
        if (isChoice(action) && identityOf(action) == wanted) return action;
    if (caller) std::cerr << caller << name << std::endl;
    return 0;
}

void MotifMenu::modifyChoice(const char* oldName, const char* newEntry) {
    QAction* action = findChoice(oldName, "bad choice to modify > ");
    if (!action) return;
    action->setText(toQt(entryLabel(newEntry)));
    String translation = acceleratorTranslation(entryAccelerator(newEntry).asCharPointer());
    action->setShortcut(
        QKeySequence(toQt(translationKeys(translation.asCharPointer())), QKeySequence::PortableText));
}

void MotifMenu::disableChoice(const char* name) {
    if (QAction* action = findChoice(name, "bad choice to disable > ")) action->setEnabled(false);
}

void MotifMenu::enableChoice(const char* name) {
    if (QAction* action = findChoice(name, "bad choice to disable > ")) action->setEnabled(true);
}

void MotifMenu::reportMissing(const char* name) const {
    std::cerr << "Button " << name << " not present in menu " << this->name().name() << std::endl;
}

void MotifMenu::removeChoice(const char* name) {
    QAction* action = findChoice(name, 0);
    if (!action) return reportMissing(name);
    delete action;
    if (choiceCount() == 0) showEmptyEntry();
}

bool MotifMenu::hasChoice(const char* name) const { return findChoice(name, 0) != 0; }

bool MotifMenu::isEnabled(const char* name) const {
    QAction* action = findChoice(name, 0);
    return action && action->isEnabled();
}

int MotifMenu::choiceCount() const {
    int count = 0;
    for (QAction* action : qmenu(*this)->actions())
        if (isChoice(action)) ++count;
    return count;
}

String MotifMenu::choiceName(int identifier) const {
    for (QAction* action : qmenu(*this)->actions())
        if (isChoice(action) && action->data().toInt() == identifier) return identityOf(action);
    return String();
}

String MotifMenu::choiceOf(Cback& cb) const {
    CallData* data = cb.callData;
    if (!validObject(data) || !data->isObject() || !data->asObject()->isKindOf(class_Integer))
        return String();
    return choiceName(static_cast<Integer*>(data->asObject())->value());
}

void MotifMenu::choose(const char* name) {
    QAction* action = findChoice(name, 0);
    if (!action) return reportMissing(name);
    if (action->isEnabled()) action->trigger();
}

String MotifMenu::keysOf(const char* name) const {
    QAction* action = findChoice(name, 0);
    return action ? fromQt(action->shortcut().toString(QKeySequence::PortableText)) : String();
}

void MotifMenu::add(CppWidget& child) {
    CppComposite::add(child);
    if (!child.isKindOf(class_MotifMenu)) return;
    QMenu* menu = qmenu(*this);
    if (choiceCount() == 0)
        for (QAction* action : menu->actions())
            if (!action->isSeparator() && !action->menu()) delete action;
    QAction* cascade = menu->addMenu(qmenu(child));
    cascade->setData(nextIdentifier++);
}

// PulldownMenu, PopupMenu

PulldownMenu::PulldownMenu(const char* name, CppWidget* parent, const char* title)
    : MotifMenu(name, parent, title) {}

PopupMenu::PopupMenu(const char* name, CppWidget* parent, const char* title)
    : MotifMenu(name, parent, title) {}

void PopupMenu::popup(int x, int y) {
    QWidget* over = parent() ? parent()->handle() : 0;
    qmenu(*this)->popup(over ? over->mapToGlobal(QPoint(x, y)) : QCursor::pos());
}

// ButtonMenu

ButtonMenu::ButtonMenu(const char* name, CppWidget* parent, const char* label, const char* translation)
    : CppCommand(name, parent, label), menu_(new PopupMenu(formatText("%sPopup", name), 0, label)) {
    QPushButton* button = static_cast<QPushButton*>(handle());
    button->setMenu(qmenu(*menu_));
    if (translation && *translation)
        button->setShortcut(QKeySequence(toQt(translationKeys(translation)), QKeySequence::PortableText));
}

ButtonMenu::~ButtonMenu() noexcept(false) { delete menu_; }
