// The options of a design as types.
//
//   DesignPhase  Step1, Step2, FinalResults, InNoise   texts "Step 1", "Step 2", "Final Results", "inNoise"
//   LmiMode      None, MinH2, BoundHinf, MinHinf       texts "None", "min H2", "bound Hinf", "min Hinf"
//   GramianRole  Control, Observer                     texts "Control", "Observer"
//
//   const char* textOf(E value);                  the value's text
//   bool valueOf(const char* text, E& value);     false, value untouched, for a text not in the table
//   ChoiceTexts  the panel's two-way choices, startChoice, gramianChoice, algorithmChoice and
//                feedbackChoice: the type of their enumeration and its two texts
//   void registerDesignEnums();                   all the tables as Parameter enumerations
//
//   StepOptions   the arguments of one step of a design (RobustControl::firstStep, secondStep and
//                 OptimumGramian::optimize).
//   GramianSetup  the arguments of the set-up of one design (OptimumGramian::make).
#ifndef CONTROL_DESIGNOPT_H
#define CONTROL_DESIGNOPT_H

#include "algebra/matrix.h"
#include "quill/quillstr.h"

class Object;

enum class DesignPhase { Step1, Step2, FinalResults, InNoise };
enum class LmiMode { None, MinH2, BoundHinf, MinHinf };
enum class GramianRole { Control, Observer };

// The Parameter enumeration names of the three tables.
extern const char* const designPhaseType;
extern const char* const lmiModeType;
extern const char* const gramianRoleType;

const char* textOf(DesignPhase phase);
const char* textOf(LmiMode mode);
const char* textOf(GramianRole role);
bool valueOf(const char* text, DesignPhase& phase);
bool valueOf(const char* text, LmiMode& mode);
bool valueOf(const char* text, GramianRole& role);

struct ChoiceTexts {
    const char* type;
    const char* texts[2];
};
extern const ChoiceTexts startChoice;      // "StartCont": "start", "continue"
extern const ChoiceTexts gramianChoice;    // "Gramian": "H-infinite", "H2"
extern const ChoiceTexts algorithmChoice;  // "Algorithm": "approaching", "refining"
extern const ChoiceTexts feedbackChoice;   // "InitialFeedback": "zero", "pole placement"

// Registers the tables with Parameter::addEnum; again is harmless.
void registerDesignEnums();

struct StepOptions {
    double gamma = 1.0;  // bound on the H-infinity norm
    unsigned maxIterations = 20;
    bool useH2 = false;
    bool approaching = false;  // the Riccati approach instead of the gramian refinement
    double alfa = 0.5;
    bool continueFlag = false;  // continue from the gains of an earlier step
    String fileNamePrefix;      // prefixes the files written
    bool stepByStep = false;
    LmiMode lmiMode = LmiMode::None;
    double minFreq = 1e-4;  // lowest frequency of the norm search
};

struct GramianSetup {
    GramianRole role = GramianRole::Control;
    double tolerance = 1e-6;           // of the choice of the subsystems
    int initialFeedback = 1;           // 1: poles placed, through the "Starting Poles" dialogue; 0: zero
    Matrix startPoles = Matrix(0, 0);  // rows (re, im), the dialogue's fall-back
    String name;                       // prefix of the names stored
    Object* owner = nullptr;           // answers the dialogues and the stop checks
};

#endif
