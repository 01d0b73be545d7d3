// The layout of the design panels: the model line on top, three groups of settings, then the trend of
// the norm beside the console; the extended system's components in two columns above its settings.
#include "gui/dsgnmim.h"

#include "control/extsys.h"
#include "gui/dynpanel.h"

namespace {

typedef DynamicControl C;

const int FIELD = 3;  // the height of a button or a field, in grid units

// A field with its caption at the left.
C captioned(const char* name, C::Kind kind, int x, int y, int width, int caption, const char* label,
            const char* value = "") {
    return C(name, kind, x, y, width, FIELD, label, value).setCaption(caption);
}

// A frame titled title, named after it.
void addGroup(DynamicPanel& p, const char* title, int x, int y, int width, int height) {
    p.add(C(formatText("%s group", title), C::GROUP, x, y, width, height, title));
}

void addModelLine(DynamicPanel& p) {
    addGroup(p, "Model", 1, 1, 108, 11);
    p.add(captioned("GuiFileName", C::VALUE, 2, 4, 80, 14, "Model file", "no model"));
    p.add(C("openModel", C::COMMAND, 84, 4, 24, FIELD, "Open model..."));
    p.add(captioned("coutFileName", C::VALUE, 2, 8, 80, 14, "Console file", "none"));
    p.add(C("Configuration", C::COMMAND, 84, 8, 24, FIELD, "Configuration..."));
}

void addPhaseGroup(DynamicPanel& p) {
    addGroup(p, "Phase", 1, 13, 35, 24);
    p.add(captioned("ChoiceButton", C::CYCLE, 2, 16, 33, 13, "Phase")
              .setCycle({"Step 1", "Step 2", "Final Results"}));
    p.add(captioned("StartCont", C::CYCLE, 2, 20, 33, 13, "Run").setCycle({"start", "continue"}));
    p.add(captioned("ConObs", C::CYCLE, 2, 24, 33, 13, "Design of", "Observer")
              .setCycle({"Control", "Observer"}));
    p.add(C("startButton", C::COMMAND, 2, 31, 10, FIELD, "Start").setColours("", "palegreen"));
    p.add(C("stopButton", C::COMMAND, 13, 31, 10, FIELD, "Stop").setColours("", "lightcoral"));
    p.add(C("resetButton", C::COMMAND, 24, 31, 11, FIELD, "Reset"));
}

void addAlgorithmGroup(DynamicPanel& p) {
    addGroup(p, "Algorithm", 37, 13, 35, 24);
    p.add(
        captioned("Algorithm", C::CYCLE, 38, 16, 33, 13, "Algorithm").setCycle({"approaching", "refining"}));
    p.add(captioned("InitialFeedback", C::CYCLE, 38, 20, 33, 13, "Initial feedback")
              .setCycle({"zero", "pole placement"}));
    p.add(C("StepByStep", C::TOGGLE, 38, 25, 33, FIELD, "Step by step", "NO"));
    p.add(C("inOneStep", C::TOGGLE, 38, 29, 33, FIELD, "Control and observer in one step", "NO"));
}

void addNormGroup(DynamicPanel& p) {
    addGroup(p, "Norm", 73, 13, 36, 24);
    p.add(captioned("Gramian", C::CYCLE, 74, 16, 34, 17, "Gramian").setCycle({"H-infinite", "H2"}));
    p.add(captioned("Minimum", C::CYCLE, 74, 20, 34, 17, "Minimum", "bound Hinf")
              .setCycle({"None", "min H2", "bound Hinf", "min Hinf"}));
    p.add(captioned("gamma", C::NUMBER, 74, 24, 34, 17, "Bound gamma", "100"));
    p.add(captioned("gammaFirst", C::VALUE, 74, 28, 34, 17, "Norm of Step 1", "not done"));
    p.add(captioned("StructuringMatrix", C::TEXT, 74, 32, 34, 17, "Structuring matrix", "Not Pres."));
}

}  // namespace

DynamicPanel* makeRobustControlPanel() {
    DynamicPanel* p = new DynamicPanel("Robust Control Design", 110, 66);
    addModelLine(*p);
    addPhaseGroup(*p);
    addAlgorithmGroup(*p);
    addNormGroup(*p);
    p->add(C("normTrend", C::TREND, 1, 38, 52, 27, "norm per iteration"));
    p->add(C("console", C::CONSOLE, 54, 38, 55, 27));
    return p;
}

DynamicPanel* makeExtendedSystemPanel() {
    DynamicPanel* p = new DynamicPanel("Extended System", 70, 53);
    addGroup(*p, "Components", 1, 1, 68, 31);
    for (unsigned i = 0; i < ExtendedSystem::componentCount; ++i) {
        const char* name = ExtendedSystem::componentNames[i];
        p->add(captioned(name, C::TEXT, 2 + 34 * int(i / 7), 4 + 4 * int(i % 7), 32, 7, name));
    }
    addGroup(*p, "Extended system", 1, 33, 68, 19);
    p->add(captioned("discCon", C::CYCLE, 2, 36, 33, 8, "Kind")
               .setCycle({"Continuous system", "Sampled data system"}));
    p->add(captioned("samplingTime", C::NUMBER, 37, 36, 31, 16, "Sampling time", "0.1"));
    p->add(captioned("c2dSamplingTime", C::NUMBER, 2, 40, 33, 20, "Discretize at time", "0.1"));
    p->add(C("discretize", C::COMMAND, 37, 40, 16, FIELD, "Discretize"));
    p->add(captioned("ModelFileName", C::TEXT, 2, 44, 66, 16, "Model file", "Tot.dyn"));
    p->add(C("composeModel", C::COMMAND, 2, 48, 16, FIELD, "Compose").setColours("", "palegreen"));
    p->add(C("clearModel", C::COMMAND, 19, 48, 16, FIELD, "Clear"));
    return p;
}
