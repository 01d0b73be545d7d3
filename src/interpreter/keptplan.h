// KeptPlan, the plan that the executer made once for a loop or a function's body, kept with it.
#ifndef INTERPRETER_KEPTPLAN_H
#define INTERPRETER_KEPTPLAN_H

#include <cstddef>
#include <memory>
#include <vector>

class ScalarPlan;
class Statement;

// The plan, and the statement that each part of it runs, which names a failure of that part. Made once
// when the statement is of that kind; forgotten when what it was made of changes.
class KeptPlan {
public:
    KeptPlan();
    ~KeptPlan();
    KeptPlan(const KeptPlan&) = delete;
    KeptPlan& operator=(const KeptPlan&) = delete;

    // The plan, null when there is none; tried tells whether it was looked for.
    const ScalarPlan* get(bool& tried) const {
        tried = planTried;
        return plan.get();
    }
    void set(std::unique_ptr<ScalarPlan> made, std::vector<Statement*> partStatements);
    void forget();
    Statement* part(int i) const { return parts.at(std::size_t(i)); }

private:
    std::unique_ptr<ScalarPlan> plan;
    std::vector<Statement*> parts;  // not owned
    bool planTried = false;
};

#endif
