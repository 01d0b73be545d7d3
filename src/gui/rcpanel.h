// GraphMainLib, the robust design panel: the panel "RobustControl.mim" given its meaning. Each
// control is found by name and the panel's whole state lives in the controls' texts; a press
// follows the rules of its control, the start button runs a phase of the design from the event
// loop, and the panel's state is saved at the end and restored at the next start.
#ifndef GUI_RCPANEL_H
#define GUI_RCPANEL_H

#include <memory>
#include <string>

#include "algebra/algebra.h"
#include "control/rcdesign.h"
#include "gui/projdata.h"

class Cback;
class DynamicPanelWindow;
class ExtendedSystemPanel;

extern Class class_GraphMainLib;

// Raised on the GraphMainLib when its window has been closed.
extern Symbol GraphMainLibExit;

class GraphMainLib : public Algebra {
    DECLARE_MEMBERS(GraphMainLib)
public:
    // The panel read from "RobustControl.mim" in directory, "project.gui" and "configuration"
    // from the working directory. Without the panel file the message is shown (startMessage())
    // and the window stays empty.
    explicit GraphMainLib(const char* directory);
    GraphMainLib(const GraphMainLib&) = delete;
    GraphMainLib& operator=(const GraphMainLib&) = delete;
    ~GraphMainLib() noexcept(false) override;

    // The panel window, empty when its file was missing.
    DynamicPanelWindow* window() const { return panel; }
    const String& startMessage() const { return message; }

    // What a press on the named control does.
    void press(const char* control);
    // The phase that the start button armed, run now; answers the norm design answered.
    double runPhase();
    // The end of the mode: false, after the warning, while dialogues are open or a phase runs.
    // Otherwise the controls go to "project.gui" and the Matlab path to "configuration".
    bool close();
    // The stop flag that the next "CHECK_STOP" reports.
    void requestStop() { stopRequested = true; }
    // A phase is armed or running.
    bool isBusy() const { return running || timer != 0; }
    RobustControlDesign& design() { return designer; }
    ExtendedSystemPanel& extendedPanel() { return *extended; }

    // The design parameters of a phase, collected from the controls.
    void collectParameters(ParametersCltn& parameters) const;
    void reset();
    void stepSetup(const char* phase);

private:
    String text(const char* control) const;
    void setText(const char* control, const char* value);
    void show(const std::string& line);
    String consoleFile() const;
    void flip(const char* control, const char* a, const char* b);
    bool is(const char* control, const char* value) const { return text(control) == value; }

    void pressChoice();
    void pressGramian();
    void pressMinimum();
    void pressStepByStep();
    void pressInitialFeedback();
    void pressConfiguration();
    void pressOpenModel();
    void takeStructuring();
    void endPhase(double norm);
    void endSecondStep(double norm);

    friend class ExtendedSystemPanel;
    void readProject();
    void readConfiguration();
    void takeMatlabPath(const char* refusal);
    void saveState();

    // The events of the extended system panel's window.
    void extendedPressed(Cback& cb);
    void extendedClosing(Cback& cb);
    void buildMenus();
    void menuChosen(Cback& cb);
    static const char* helpText();

    // Events of the window and of the design.
    void controlPressed(Cback& cb);
    void timerRan(Cback& cb);
    void askParameters(Cback& cb);
    void checkStop(Cback& cb);
    void iterationNorm(Cback& cb);
    void windowClosing(Cback& cb);

    RobustControlDesign designer;
    ProjectData project;
    DynamicPanelWindow* panel = 0;
    std::unique_ptr<ExtendedSystemPanel> extended;
    String message;
    String matlabPath;
    bool stopRequested = false;
    bool running = false;
    int timer = 0;
    int openDialogs = 0;
};

#endif
