// A graph editor on the base kind of drawing, driven as a person drives it: pointer events on the
// drawing area, menu entries, the buttons of the parameter dialogue.
#ifndef TESTS_EDITOR_GRAPHTEST_H
#define TESTS_EDITOR_GRAPHTEST_H

#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <string>

#include "../trellis/trltest.h"
#include "editor/chessbrd.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconnode.h"
#include "editor/paramedt.h"
#include "editor/semantic.h"
#include "quill/dictnary.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/formdlg.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

class GraphEditorTest : public ::testing::Test {
protected:
    void SetUp() override { editor = new GraphEditor(topLevelWidget, "Semantic", "Graphic Editor - "); }
    void TearDown() override { delete editor; }

    DrawArea& area() const { return editor->gui().drawArea(); }
    void pointer(const Symbol& event, double x, double y, int button = 1, unsigned modifiers = 0) {
        area().raisePointer(event, FloatPoint(x, y), button, modifiers);
    }
    void click(double x, double y, int button = 1, unsigned modifiers = 0) {
        pointer(DownGraphic, x, y, button, modifiers);
        pointer(UpGraphic, x, y, button, modifiers);
    }
    // Press, wait out the drag delay, move in steps, release.
    void drag(double x0, double y0, double x1, double y1, unsigned modifiers = 0) {
        pointer(DownGraphic, x0, y0, 1, modifiers);
        toolkitSleep(350);
        for (int step = 1; step <= 4; ++step)
            pointer(MoveDownGraphic, x0 + (x1 - x0) * step / 4, y0 + (y1 - y0) * step / 4, 1, modifiers);
        pointer(UpGraphic, x1, y1, 1, modifiers);
    }
    void doubleClick(double x, double y) {
        click(x, y);
        pointer(DoubleClickGraphic, x, y);
        pointer(UpGraphic, x, y);
    }

    // The parameter dialogue that is up, pressed OK (or Cancel).
    void answerDialog(bool ok = true) {
        ParamDialog* dialog = openDialog();
        ASSERT_NE(dialog, nullptr);
        (ok ? dialog->okButton() : dialog->cancelButton()).press();
    }
    ParamDialog* openDialog() const {
        const QWidget* active = QApplication::activeModalWidget();
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || (active && window != active)) continue;
            Object* widget = widgetOfHandle(window);
            if (widget && widget != nil && widget->isKindOf(class_ParamDialog))
                return static_cast<ParamDialog*>(widget);
        }
        return nullptr;
    }

    // A rectangle from the icon menu, its dialogue confirmed, placed by a click at (x, y).
    IconNode* place(double x, double y, const char* label = 0) {
        editor->gui().iconMenu().menu().choose("Rectangle");
        ParamDialog* dialog = openDialog();
        if (dialog && label) dialog->setRowText(0, label);
        answerDialog();
        pointer(MoveGraphic, x, y);
        click(x, y);
        // "Use entry as label" is on for a new rectangle: its label is placed next.
        if (editor->status() == GraphEditor::PlacingComment) click(x, y - 1);
        return iconAt(x, y);
    }
    // A link of the current kind from one cell to another, by a double click in link mode.
    IconArc* link(double x0, double y0, double x1, double y1) {
        editor->gui().choiceMenu().menu().choose("Link");
        doubleClick(x0, y0);
        pointer(MoveGraphic, x1, y1);
        click(x1, y1);
        if (openDialog()) answerDialog();
        IconNode* from = iconAt(x0, y0);
        OrderedCltn links;
        if (from) from->toLinks(links);
        return links.isEmpty() ? nullptr : static_cast<IconArc*>(links.last());
    }
    IconNode* iconAt(double x, double y) const {
        IconNode* icon = editor->board().iconAt(int(x), int(y));
        return icon == nil ? nullptr : icon;
    }
    unsigned count() const { return editor->editorIcons().size(); }
    unsigned links() const {
        OrderedCltn icons;
        icons.addContentsOf(editor->editorIcons());
        unsigned n = 0;
        for (unsigned i = 0; i < icons.size(); ++i) n += icons.at(i)->isKindOf(class_IconArc);
        return n;
    }
    void edit(const char* entry) { editor->gui().editMenu().choose(entry); }

    GraphEditor* editor = nullptr;
    Answers answers;
};

#endif
