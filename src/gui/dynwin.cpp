// DynamicPanelWindow: the icons of the panel's controls and the operations on them by name.
#include "gui/dynwin.h"

#include <QApplication>
#include <QFontMetrics>
#include <cstring>
#include <iostream>

#include "trellis/form.h"
#include "trellis/menu.h"

DEFINE_ABSTRACT_CLASS(DynamicPanelWindow, CppShell, 1, 0)

DynamicPanelWindow* DynamicPanelWindow::open(const char* mimFile, const char* title, String& message,
                                             bool withMenuBar) {
    DynamicPanel* panel = readPanel(mimFile, message);
    if (!panel) return 0;
    DynamicPanelWindow* window = new DynamicPanelWindow(panel, title, withMenuBar);
    window->realize();
    return window;
}

DynamicPanelWindow::DynamicPanelWindow(DynamicPanel* panel, const char* title, bool withMenuBar)
    : CppShell("DynamicPanelWindow", 0, title ? title : panel->title().asCharPointer()), panel_(panel) {
    outer = new CppForm("PanelWindowForm", this);
    form = new CppForm("PanelForm", outer);
    int unit = gridUnit(), barHeight = 0;
    if (withMenuBar) {
        bar = new MenuBar("MenuBar", outer);
        outer->attachAt(*bar, 0, 0);
        outer->attachHorizontal(bar, outer, 0);
        outer->attachHorizontal(outer, form, 0);
        outer->attachVertical(bar, form, 0);
        barHeight = QFontMetrics(QApplication::font()).height() + 2 * unit;
    } else {
        outer->attachAt(*form, 0, 0);
    }
    for (unsigned i = 0; i < panel->size(); ++i)
        icons.push_back(DynamicIcon::make(panel->at(int(i)), *form, unit, *this));
    form->resize(panel->columns() * unit, panel->rows() * unit);
    resize(panel->columns() * unit, panel->rows() * unit + barHeight);
}

// The widgets go first: their listeners are the icons.
DynamicPanelWindow::~DynamicPanelWindow() noexcept(false) {
    delete outer;
    for (DynamicIcon* icon : icons) delete icon;
    delete panel_;
}

int DynamicPanelWindow::gridUnit() {
    int line = QFontMetrics(QApplication::font()).height();
    return line < 16 ? 8 : (line + 1) / 2;
}

DynamicIcon* DynamicPanelWindow::icon(const char* control) const {
    for (DynamicIcon* icon : icons)
        if (std::strcmp(icon->control().name().asCharPointer(), control) == 0) return icon;
    return 0;
}

void DynamicPanelWindow::refused(const char* control, const char* asked) const {
    std::cerr << "panel " << title() << ": " << asked << " of " << control
              << ", which is no control of its kind" << std::endl;
}

DynamicIcon* DynamicPanelWindow::iconFor(const char* control, const char* asked) const {
    DynamicIcon* found = icon(control);
    if (!found) refused(control, asked);
    return found;
}

bool DynamicPanelWindow::has(const char* control) const { return icon(control) != 0; }

DynamicControl* DynamicPanelWindow::find(const char* control) const { return panel_->find(control); }

String DynamicPanelWindow::text(const char* control) const {
    DynamicIcon* icon = iconFor(control, "text");
    return icon ? icon->text() : String();
}

void DynamicPanelWindow::setText(const char* control, const char* text) {
    if (DynamicIcon* icon = iconFor(control, "setText")) icon->setText(text);
}

void DynamicPanelWindow::setEnabled(const char* control, bool on) {
    if (DynamicIcon* icon = iconFor(control, "setEnabled")) icon->setEnabled(on);
}

void DynamicPanelWindow::setVisible(const char* control, bool on) {
    if (DynamicIcon* icon = iconFor(control, "setVisible")) icon->setVisible(on);
}

void DynamicPanelWindow::cycleNext(const char* control) {
    DynamicIcon* icon = iconFor(control, "cycleNext");
    if (icon && !icon->cycleNext()) refused(control, "cycleNext");
}

void DynamicPanelWindow::addTrendPoint(const char* control, double value) {
    DynamicIcon* icon = iconFor(control, "addTrendPoint");
    if (icon && !icon->addPoint(value)) refused(control, "addTrendPoint");
}

void DynamicPanelWindow::clearTrend(const char* control) {
    DynamicIcon* icon = iconFor(control, "clearTrend");
    if (icon && !icon->clearPoints()) refused(control, "clearTrend");
}

void DynamicPanelWindow::appendConsole(const char* control, const char* text) {
    DynamicIcon* icon = iconFor(control, "appendConsole");
    if (icon && !icon->append(text)) refused(control, "appendConsole");
}

void DynamicPanelWindow::press(const char* control) {
    if (DynamicIcon* icon = iconFor(control, "press")) icon->press();
}
