// Plot: the plot of a system's step, free, noise and frequency responses, in a window of its own.
#ifndef GUI_PLOT_H
#define GUI_PLOT_H

#include <memory>
#include <string>
#include <vector>

#include "algebra/vector.h"
#include "control/dynop.h"
#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/symbol.h"

class PlotWindow;
struct PlotPicture;

extern Class class_Plot;

extern Symbol PlotUpdateRequest;  // raised on the Plot when the user asks to redraw with the model rebuilt

// The kinds of plot, in the order of the window's choices.
enum PlotKind { STEP_PLOT, FREE_PLOT, NOISE_PLOT, FREQUENCY_PLOT };

// What the window asks for: the kind, the channel selection "output,input", the final time and the
// frequency range; the initial state goes straight into the plot.
struct PlotSettings {
    PlotKind kind = STEP_PLOT;
    std::string channels = "1,1";
    double finalTime = 10.0;
    double firstFrequency = 0.01;
    double lastFrequency = 100.0;
};

// Kept as a member by its owner; the window is made at the first open and lives as long as the plot.
class Plot : public Object {
    DECLARE_MEMBERS(Plot)
public:
    Plot();
    ~Plot() noexcept(false) override;

    // The system to plot and the names of its channels, used in the channel choices, the legends and
    // the titles; empty name lists mean "u1..", "y1..", "x1..". A DiscDynOp plots at its sampling time.
    void setSystem(const DynOp& system, const std::vector<std::string>& inputNames,
                   const std::vector<std::string>& outputNames, const std::vector<std::string>& stateNames);
    // Shows the window, or raises it when open; replots with the new system.
    void open(const char* title);
    // Sized to the system's order, kept over repeated plots.
    Vector& initialState() { return initial; }

    // Draws what the window's settings ask for. Answers the refusal that the window's message line
    // then shows, or the empty text when it was drawn; nothing happens before the first open.
    std::string replot();
    // Runs a nested dispatch loop until the window is closed; at once when it is not shown.
    void waitUntilClosed();
    // Null before the first open.
    PlotWindow* window() const { return win; }

    // The name of state i, "x1.." when none was given.
    std::string stateName(unsigned i) const;

private:
    // The picture of the settings, or the refusal. Library faults go on as raised.
    std::string picture(const PlotSettings& settings, PlotPicture& picture) const;
    std::string inputName(unsigned i) const;
    std::string outputName(unsigned i) const;
    std::string timePicture(const PlotSettings& settings, PlotPicture& picture) const;
    std::string frequencyPicture(const PlotSettings& settings, PlotPicture& picture) const;

    std::unique_ptr<DynOp> system;
    std::vector<std::string> inputs, outputs, states;
    Vector initial;
    std::string title_;
    PlotWindow* win;
};

// The language's plot of a value: makes the Plot when plot is null, hands it the system with the
// initial condition (when of the system's order), opens it under the title and waits until the window
// is closed; the initial condition then holds the window's, kept for the next plot. Answers the Plot,
// which the caller owns.
Object* openPlotWindow(Object* plot, const DynOp& system, Vector& initialCondition, const char* title);

#endif
