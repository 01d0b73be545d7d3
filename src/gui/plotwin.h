// PlotWindow, the plot's window: the choice of response, the channel, time and frequency fields, the
// initial state, the buttons and the message line around the drawing.
#ifndef GUI_PLOTWIN_H
#define GUI_PLOTWIN_H

#include <string>

#include "gui/plot.h"
#include "trellis/shell.h"

class CppCommand;
class CppForm;
class CppLabel;
class CppText;
class PlotView;
class ToggleButton;

extern Class class_PlotWindow;

class PlotWindow : public CppShell {
    DECLARE_MEMBERS(PlotWindow)
public:
    enum Field { CHANNELS, FINAL_TIME, FIRST_FREQUENCY, LAST_FREQUENCY, INITIAL_STATE, FIELDS };
    enum Button { DRAW, UPDATE, EXPORT, CLOSE, BUTTONS };

    explicit PlotWindow(Plot& plot);

    // Reads the fields; answers the refusal of the first that does not hold a number, or empty.
    std::string settings(PlotSettings& settings) const;
    // Reads the initial-state field into the plot's vector; answers the refusal, or empty.
    std::string readInitialState() const;
    // Writes the plot's initial state into its field, and the state names into its label.
    void showInitialState();
    void setMessage(const std::string& text);
    String message() const;
    // Selects the kind of plot, as the user does; the plot is drawn again when shown.
    void choose(PlotKind kind);
    PlotKind chosen() const;

    PlotView& view() const { return *view_; }
    CppText& field(Field f) const { return *fields[f]; }
    CppCommand& button(Button b) const { return *buttons[b]; }

    // Runs a nested loop until the window is closed; at once when it is not shown.
    void waitUntilClosed();
    // Hides the window and ends the wait.
    void closeRequested() override;

private:
    void buildChoices(CppForm& f);
    CppWidget* buildFields(CppForm& f, CppWidget& above);
    CppWidget* buildButtons(CppForm& f, CppWidget& above);
    void connect();
    void drawAsked(Cback& cb);
    void choiceChanged(Cback& cb);
    void updateAsked(Cback& cb);
    void exportAsked(Cback& cb);
    void closeAsked(Cback& cb);

    Plot& plot;
    CppForm* form;
    ToggleButton* choices[FREQUENCY_PLOT + 1];
    CppText* fields[FIELDS];
    CppLabel* stateLabel;
    CppCommand* buttons[BUTTONS];
    PlotView* view_;
    CppLabel* messageLine;
    bool waiting;
};

#endif
