// KeptPlan: the plan made once, and forgotten.
#include "interpreter/keptplan.h"

#include <utility>

#include "interpreter/scalarplan.h"

KeptPlan::KeptPlan() {}

KeptPlan::~KeptPlan() {}

void KeptPlan::set(std::unique_ptr<ScalarPlan> made, std::vector<Statement*> partStatements) {
    plan = std::move(made);
    parts = std::move(partStatements);
    planTried = true;
}

void KeptPlan::forget() {
    plan.reset();
    parts.clear();
    planTried = false;
}
