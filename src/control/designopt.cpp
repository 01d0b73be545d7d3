// The text tables of the design's options, read both ways.
#include "control/designopt.h"

#include <cstring>
#include <initializer_list>

#include "control/param.h"

const char* const designPhaseType = "DesignPhase";
const char* const lmiModeType = "LmiMode";
const char* const gramianRoleType = "GramianRole";

const ChoiceTexts startChoice = {"StartCont", {"start", "continue"}};
const ChoiceTexts gramianChoice = {"Gramian", {"H-infinite", "H2"}};
const ChoiceTexts algorithmChoice = {"Algorithm", {"approaching", "refining"}};
const ChoiceTexts feedbackChoice = {"InitialFeedback", {"zero", "pole placement"}};

namespace {

template <class E>
struct Entry {
    E value;
    const char* text;
};

const Entry<DesignPhase> phases[] = {{DesignPhase::Step1, "Step 1"},
                                     {DesignPhase::Step2, "Step 2"},
                                     {DesignPhase::FinalResults, "Final Results"},
                                     {DesignPhase::InNoise, "inNoise"}};
const Entry<LmiMode> modes[] = {{LmiMode::None, "None"},
                                {LmiMode::MinH2, "min H2"},
                                {LmiMode::BoundHinf, "bound Hinf"},
                                {LmiMode::MinHinf, "min Hinf"}};
const Entry<GramianRole> roles[] = {{GramianRole::Control, "Control"}, {GramianRole::Observer, "Observer"}};

template <class E, size_t N>
const char* find(const Entry<E> (&table)[N], E value) {
    for (const Entry<E>& e : table)
        if (e.value == value) return e.text;
    return "";
}

template <class E, size_t N>
bool find(const Entry<E> (&table)[N], const char* text, E& value) {
    for (const Entry<E>& e : table)
        if (text && std::strcmp(e.text, text) == 0) {
            value = e.value;
            return true;
        }
    return false;
}

template <class E, size_t N>
void registerTable(const char* type, const Entry<E> (&table)[N]) {
    Parameter::removeEnums(type);
    for (const Entry<E>& e : table) Parameter::addEnumValue(type, e.text);
}

}  // namespace

const char* textOf(DesignPhase phase) { return find(phases, phase); }
const char* textOf(LmiMode mode) { return find(modes, mode); }
const char* textOf(GramianRole role) { return find(roles, role); }
bool valueOf(const char* text, DesignPhase& phase) { return find(phases, text, phase); }
bool valueOf(const char* text, LmiMode& mode) { return find(modes, text, mode); }
bool valueOf(const char* text, GramianRole& role) { return find(roles, text, role); }

void registerDesignEnums() {
    registerTable(designPhaseType, phases);
    registerTable(lmiModeType, modes);
    registerTable(gramianRoleType, roles);
    for (const ChoiceTexts* choice : {&startChoice, &gramianChoice, &algorithmChoice, &feedbackChoice}) {
        Parameter::removeEnums(choice->type);
        for (const char* text : choice->texts) Parameter::addEnumValue(choice->type, text);
    }
}
