// Plot: the system and its names, the responses that the window's settings ask for, and the language's
// opening of a plot.
#include "gui/plot.h"

#include <QWidget>
#include <algorithm>
#include <cmath>

#include "control/freqresp.h"
#include "control/muxparse.h"
#include "control/response.h"
#include "gui/plotview.h"
#include "gui/plotwin.h"
#include "quill/quillerr.h"

DEFINE_CLASS(Plot, Object, 1, 0)

Symbol PlotUpdateRequest("PlotUpdateRequest");

namespace {

const unsigned TIME_POINTS = 500;  // steps of a continuous time response
const unsigned MAX_DISCRETE_STEPS = 100000;
const unsigned FREQUENCY_POINTS = 400;
const unsigned long NOISE_SEED = 9676722;

const char* const titles[] = {"Step Response", "Free Response", "Response to random noise"};

std::string nameAt(const std::vector<std::string>& names, unsigned i, char prefix) {
    return i < names.size() ? names[i] : prefix + std::to_string(i + 1);
}

// The steps over the final time: a discrete system's own sampling time, at least one step.
unsigned stepsOf(const DynOp& s, double finalTime) {
    if (!s.isDiscreteTime()) return TIME_POINTS;
    double T = s.samplingTimeOf() > 0.0 ? s.samplingTimeOf() : 1.0;
    return unsigned(std::clamp(std::floor(finalTime / T + 1e-9), 1.0, double(MAX_DISCRETE_STEPS)));
}

}  // namespace

Plot::Plot() : system(new DynOp), initial(0u), win(0) {}

Plot::~Plot() noexcept(false) { delete win; }

void Plot::setSystem(const DynOp& s, const std::vector<std::string>& inputNames,
                     const std::vector<std::string>& outputNames,
                     const std::vector<std::string>& stateNames) {
    system = s.inTimeDomain(s);
    inputs = inputNames;
    outputs = outputNames;
    states = stateNames;
    initial.reSize(s.order());
    if (win) win->showInitialState();
}

void Plot::open(const char* title) {
    title_ = title ? title : "";
    if (!win) win = new PlotWindow(*this);
    win->setTitle(title_.empty() ? "Plot" : title_.c_str());
    win->showInitialState();
    if (win->handle()->isVisible())
        win->raise();
    else
        win->realize();
    replot();
}

void Plot::waitUntilClosed() {
    if (win) win->waitUntilClosed();
}

std::string Plot::inputName(unsigned i) const { return nameAt(inputs, i, 'u'); }

std::string Plot::outputName(unsigned i) const { return nameAt(outputs, i, 'y'); }

std::string Plot::stateName(unsigned i) const { return nameAt(states, i, 'x'); }

// A fault of the numeric library is shown as a refusal: the window stays as it was.
std::string Plot::replot() {
    if (!win) return std::string();
    PlotSettings settings;
    std::string refusal = win->settings(settings);
    if (refusal.empty() && settings.kind == FREE_PLOT) refusal = win->readInitialState();
    PlotPicture drawn;
    try {
        if (refusal.empty()) refusal = picture(settings, drawn);
    } catch (TarnException* e) {
        refusal = e->message().asCharPointer();
        delete e;
    }
    if (refusal.empty()) {
        win->view().draw(drawn);
        if (settings.kind == FREQUENCY_PLOT) refusal = halfSamplingWarning(*system, settings.lastFrequency);
        win->setMessage(refusal);
        return std::string();
    }
    win->setMessage(refusal);
    return refusal;
}

std::string Plot::picture(const PlotSettings& settings, PlotPicture& p) const {
    return settings.kind == FREQUENCY_PLOT ? frequencyPicture(settings, p) : timePicture(settings, p);
}

// One output from one input; the free response selects the output alone.
std::string Plot::timePicture(const PlotSettings& settings, PlotPicture& p) const {
    bool free = settings.kind == FREE_PLOT;
    Multiplexing m =
        parseMultiplexing(settings.channels, MuxWording::Plot, free ? MuxMode::FreeResponse : MuxMode::Ranges,
                          int(system->inputNumber()), int(system->outputNumber()));
    if (!m.ok()) return m.message;
    if (m.destFirst != m.destLast) return "simulator accepts only one output";
    if (m.sourceFirst != m.sourceLast) return "simulator accepts only one input";
    if (!(settings.finalTime > 0.0)) return "The final time must be positive";
    unsigned output = unsigned(m.destFirst - 1), input = unsigned(m.sourceFirst - 1);
    unsigned steps = stepsOf(*system, settings.finalTime);
    Simulator simulator(*system, settings.finalTime / steps, int(output));
    if (settings.kind == STEP_PLOT)
        p.response = simulator.stepResponse(input, steps);
    else if (free)
        p.response = simulator.freeResponse(initial, steps);
    else
        p.response = simulator.noiseResponse(input, 1.0, NOISE_SEED, steps);
    p.title = titles[settings.kind];
    p.xLabel = "time (s)";
    p.yLabel = outputName(output);
    p.legends = {title_ + "." + outputName(output) + (free ? "" : " from " + inputName(input))};
    return std::string();
}

// The largest singular value of the selected block of channels.
std::string Plot::frequencyPicture(const PlotSettings& settings, PlotPicture& p) const {
    Multiplexing m = parseMultiplexing(settings.channels, MuxWording::Plot, MuxMode::Ranges,
                                       int(system->inputNumber()), int(system->outputNumber()));
    if (!m.ok()) return m.message;
    if (!(0.0 < settings.firstFrequency && settings.firstFrequency < settings.lastFrequency))
        return "The frequency range must run from a positive frequency upwards";
    unsigned outputs = unsigned(m.destLast - m.destFirst + 1),
             inputs = unsigned(m.sourceLast - m.sourceFirst + 1);
    std::unique_ptr<DynOp> block = system->inTimeDomain(
        system->subSystem(unsigned(m.destFirst - 1), unsigned(m.sourceFirst - 1), outputs, inputs));
    p.response = singularValuePlot(*block, settings.firstFrequency, settings.lastFrequency, FREQUENCY_POINTS);
    p.title = "Frequency plot";
    p.xLabel = "(rad/s)";
    p.yLabel = "Max singular value (dB)";
    std::string out = outputName(unsigned(m.destFirst - 1)), in = inputName(unsigned(m.sourceFirst - 1));
    if (outputs > 1) out += ":" + outputName(unsigned(m.destLast - 1));
    if (inputs > 1) in += ":" + inputName(unsigned(m.sourceLast - 1));
    p.legends = {title_ + "." + out + " from " + in};
    p.logarithmic = true;
    return std::string();
}

Object* openPlotWindow(Object* plotObject, const DynOp& system, Vector& initialCondition, const char* title) {
    Plot* plot = plotObject ? CAST(Plot, plotObject) : new Plot;
    plot->setSystem(system, {}, {}, {});
    if (initialCondition.size() == system.order()) plot->initialState() = initialCondition;
    plot->open(title);
    plot->waitUntilClosed();
    initialCondition = plot->initialState();
    return plot;
}
