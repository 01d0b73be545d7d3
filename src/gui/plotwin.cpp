// PlotWindow: the widget tree around the drawing, the reading of its fields and its buttons.
#include "gui/plotwin.h"

#include <QWidget>
#include <cstdlib>
#include <initializer_list>
#include <sstream>

#include "gui/plotview.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(PlotWindow, CppShell, 1, 0)

namespace {

const int GAP = 6;
const int WIDTH = 780, HEIGHT = 620;  // the window's first size
const char* const choiceLabels[] = {"Step response", "Free response", "Random noise", "Frequency plot"};
const char* const fieldLabels[] = {"Channels (output,input)", "Final time (s)", "Frequencies (rad/s) from",
                                   "to", "Initial state"};
const char* const buttonLabels[] = {"Draw", "Update", "Export...", "Close"};

// The whole text as a number; false for anything else.
bool readNumber(const String& text, double& value) {
    const char* begin = text.asCharPointer();
    char* end = 0;
    value = std::strtod(begin, &end);
    if (end == begin) return false;
    while (*end == ' ') ++end;
    return *end == 0;
}

std::string numberText(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

// The widgets one after the other from the form's left edge, under above; a label a little lower, to
// meet the line of the field beside it.
void placeRow(CppForm& f, CppWidget& above, std::initializer_list<CppWidget*> row) {
    CppWidget* left = &f;
    for (CppWidget* w : row) {
        f.attachHorizontal(left, w, GAP);
        f.attachVertical(&above, w, w->isKindOf(class_CppLabel) ? GAP + 4 : GAP);
        left = w;
    }
}

}  // namespace

PlotWindow::PlotWindow(Plot& plot) : CppShell("PlotWindow", 0, "Plot"), plot(plot), waiting(false) {
    form = new CppForm("PlotForm", this);
    CppForm& f = *form;
    buildChoices(f);
    CppWidget* lastRow = buildButtons(f, *buildFields(f, *choices[0]->parent()));
    messageLine = new CppLabel("Message", &f, " ");
    messageLine->sizeToFit();
    f.attachHorizontal(&f, messageLine, GAP);
    f.attachHorizontal(messageLine, &f, GAP);
    f.attachTopFromBottom(*messageLine, messageLine->handle()->height() + GAP);
    f.attachVertical(messageLine, &f, GAP);
    view_ = new PlotView("PlotView", &f);
    f.attachHorizontal(&f, view_, GAP);
    f.attachHorizontal(view_, &f, GAP);
    f.attachVertical(lastRow, view_, GAP);
    f.attachBottomToSibling(*view_, *messageLine, GAP);
    connect();
    resize(WIDTH, HEIGHT);
}

void PlotWindow::buildChoices(CppForm& f) {
    ButtonBox* box = new ButtonBox("Choices", &f, 2 * GAP);
    for (int k = STEP_PLOT; k <= FREQUENCY_PLOT; ++k)
        choices[k] = new ToggleButton(choiceLabels[k], box, choiceLabels[k], true);
    choices[STEP_PLOT]->setState(true);
    f.attachHorizontal(&f, box, GAP);
    f.attachVertical(&f, box, GAP);
}

// Two rows: the channels, the final time and the frequency range; then the initial state.
CppWidget* PlotWindow::buildFields(CppForm& f, CppWidget& above) {
    const int columns[] = {8, 8, 8, 8, 40};
    CppLabel* labels[FIELDS];
    for (int i = 0; i < FIELDS; ++i) {
        labels[i] = new CppLabel(formatText("Label%d", i), &f, fieldLabels[i]);
        fields[i] = new CppText(fieldLabels[i], &f, false, 1, columns[i]);
    }
    stateLabel = labels[INITIAL_STATE];
    placeRow(
        f, above,
        {labels[CHANNELS], fields[CHANNELS], labels[FINAL_TIME], fields[FINAL_TIME], labels[FIRST_FREQUENCY],
         fields[FIRST_FREQUENCY], labels[LAST_FREQUENCY], fields[LAST_FREQUENCY]});
    placeRow(f, *fields[CHANNELS], {labels[INITIAL_STATE], fields[INITIAL_STATE]});
    PlotSettings defaults;
    fields[CHANNELS]->setText(defaults.channels.c_str());
    fields[FINAL_TIME]->setText(numberText(defaults.finalTime).c_str());
    fields[FIRST_FREQUENCY]->setText(numberText(defaults.firstFrequency).c_str());
    fields[LAST_FREQUENCY]->setText(numberText(defaults.lastFrequency).c_str());
    return fields[INITIAL_STATE];
}

CppWidget* PlotWindow::buildButtons(CppForm& f, CppWidget& above) {
    ButtonBox* box = new ButtonBox("Buttons", &f, GAP);
    for (int b = 0; b < BUTTONS; ++b) buttons[b] = new CppCommand(buttonLabels[b], box, buttonLabels[b]);
    placeRow(f, above, {box});
    return box;
}

void PlotWindow::connect() {
    for (ToggleButton* choice : choices)
        choice->addCback(ToggleButtonChanged, cbackMethod<&PlotWindow::choiceChanged>, *this);
    for (CppText* text : fields) text->addCback(CppTextActivated, cbackMethod<&PlotWindow::drawAsked>, *this);
    buttons[DRAW]->addCback(CppCommandPressed, cbackMethod<&PlotWindow::drawAsked>, *this);
    buttons[UPDATE]->addCback(CppCommandPressed, cbackMethod<&PlotWindow::updateAsked>, *this);
    buttons[EXPORT]->addCback(CppCommandPressed, cbackMethod<&PlotWindow::exportAsked>, *this);
    buttons[CLOSE]->addCback(CppCommandPressed, cbackMethod<&PlotWindow::closeAsked>, *this);
}

// --- Fields ---

std::string PlotWindow::settings(PlotSettings& s) const {
    s.kind = chosen();
    s.channels = fields[CHANNELS]->getText().asCharPointer();
    double* numbers[] = {0, &s.finalTime, &s.firstFrequency, &s.lastFrequency};
    for (int i = FINAL_TIME; i <= LAST_FREQUENCY; ++i)
        if (!readNumber(fields[i]->getText(), *numbers[i]))
            return std::string("\"") + fieldLabels[i] + "\" is not a number";
    return std::string();
}

std::string PlotWindow::readInitialState() const {
    Vector& x0 = plot.initialState();
    std::istringstream text(fields[INITIAL_STATE]->getText().asCharPointer());
    std::vector<double> values;
    double value;
    while (text >> value) values.push_back(value);
    if (!text.eof() || values.size() != x0.size())
        return "The initial state needs " + std::to_string(x0.size()) + " numbers";
    for (unsigned i = 0; i < x0.size(); ++i) x0[i] = values[i];
    return std::string();
}

void PlotWindow::showInitialState() {
    const Vector& x0 = plot.initialState();
    std::string values, names;
    for (unsigned i = 0; i < x0.size(); ++i) {
        values += (i ? " " : "") + numberText(x0[i]);
        names += (i ? " " : "") + plot.stateName(i);
    }
    fields[INITIAL_STATE]->setText(values.c_str());
    stateLabel->setText((std::string(fieldLabels[INITIAL_STATE]) + " (" + names + ")").c_str());
    stateLabel->sizeToFit();
}

void PlotWindow::setMessage(const std::string& text) {
    messageLine->setText(text.empty() ? " " : text.c_str());
}

String PlotWindow::message() const {
    String text = messageLine->text();
    return text.isEqual(String(" ")) ? String() : text;
}

void PlotWindow::choose(PlotKind kind) { choices[kind]->setState(true); }

PlotKind PlotWindow::chosen() const {
    for (int k = STEP_PLOT; k <= FREQUENCY_PLOT; ++k)
        if (choices[k]->state()) return PlotKind(k);
    return STEP_PLOT;
}

// --- Events ---

void PlotWindow::drawAsked(Cback&) { plot.replot(); }

// The button that goes off raises the event too: only the one that goes on draws.
void PlotWindow::choiceChanged(Cback& cb) {
    if (cb.callData->asInt() && handle()->isVisible()) plot.replot();
}

void PlotWindow::updateAsked(Cback&) { plot.cbackOn(PlotUpdateRequest); }

void PlotWindow::exportAsked(Cback&) { view_->exportAsked(); }

void PlotWindow::closeAsked(Cback&) { closeRequested(); }

void PlotWindow::waitUntilClosed() {
    if (!handle()->isVisible()) return;
    waiting = true;
    mainLoop();
}

void PlotWindow::closeRequested() {
    close();
    if (!waiting) return;
    waiting = false;
    exitLoop(0);
}
