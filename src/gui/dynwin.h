// DynamicPanelWindow, the window that shows a dynamic panel and gives its controls by name.
#ifndef GUI_DYNWIN_H
#define GUI_DYNWIN_H

#include <vector>

#include "gui/dynicon.h"
#include "gui/dynpanel.h"
#include "trellis/shell.h"

class CppForm;
class MenuBar;

extern Class class_DynamicPanelWindow;

// A press or change of a control raises DynamicIconSelected on the window, with the control's name.
// Controls are named as in the panel; a name that the panel does not hold is reported on the error
// stream, and its getters answer empty.
class DynamicPanelWindow : public CppShell {
    DECLARE_MEMBERS(DynamicPanelWindow)
public:
    // Reads the ".mim" file and shows its panel under title (the panel's own title when null); null
    // with the reason in message when the file is missing or is no panel.
    // With withMenuBar the panel stands under a menu bar for its owner's menus.
    static DynamicPanelWindow* open(const char* mimFile, const char* title, String& message,
                                    bool withMenuBar = false);
    // Takes the panel.
    DynamicPanelWindow(DynamicPanel* panel, const char* title, bool withMenuBar = false);
    ~DynamicPanelWindow() noexcept(false) override;

    bool has(const char* control) const;
    DynamicControl* find(const char* control) const;
    String text(const char* control) const;
    void setText(const char* control, const char* text);
    void setEnabled(const char* control, bool on);
    void setVisible(const char* control, bool on);
    // The next value of a cycling button's list.
    void cycleNext(const char* control);
    void addTrendPoint(const char* control, double value);
    void clearTrend(const char* control);
    void appendConsole(const char* control, const char* text);
    // Does what a click does, or Return in a field.
    void press(const char* control);

    // The panel with the values shown now, to be written back with writePanel.
    const DynamicPanel& panel() const { return *panel_; }
    // The menu bar above the panel, null without one.
    MenuBar* menuBar() const { return bar; }
    DynamicIcon* icon(const char* control) const;
    // Pixels of one grid step: half the height of a line of text.
    static int gridUnit();

private:
    // The icon, or null after a line on the error stream that names what was asked.
    DynamicIcon* iconFor(const char* control, const char* asked) const;
    void refused(const char* control, const char* asked) const;

    DynamicPanel* panel_;
    CppForm* outer;  // the menu bar, when there is one, over the form of the controls
    MenuBar* bar = 0;
    CppForm* form;
    std::vector<DynamicIcon*> icons;
};

#endif
