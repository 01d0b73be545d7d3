// ScalarPool: one stack of spare values per scalar class.
#include "interpreter/scalarpool.h"

#include <memory>

#include "interpreter/charvar.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"

ScalarPool::~ScalarPool() {
    for (std::vector<ScalarVar*>& values : spare)
        for (ScalarVar* v : values) delete v;
}

ScalarVar* ScalarPool::take(int level, double x, const String& name) {
    std::vector<ScalarVar*>& values = spare[level - ScalarVar::CHAR_LEVEL];
    if (values.empty()) {
        std::unique_ptr<ScalarVar> made(ScalarVar::makeOfLevel(level, x));
        made->setName(name);
        return made.release();
    }
    ScalarVar* v = values.back();
    values.pop_back();
    v->setNumber(x);
    v->setName(name);
    return v;
}

int ScalarPool::slot(Class* kind) {
    if (kind == &class_CharVar) return 0;
    if (kind == &class_IntVar) return 1;
    if (kind == &class_FloatVar) return 2;
    return -1;
}

int ScalarPool::plainLevel(Variable* v) {
    int index = v ? slot(v->isA()) : -1;
    if (index < 0 || v->references() != 0) return 0;
    if (index == 2 && !static_cast<FloatVar*>(v)->ownsItsValue()) return 0;
    return ScalarVar::CHAR_LEVEL + index;
}

bool ScalarPool::keep(Variable* v) {
    int index = plainLevel(v) - ScalarVar::CHAR_LEVEL;
    if (index < 0 || spare[index].size() >= SPARE_VALUES) return false;
    spare[index].push_back(static_cast<ScalarVar*>(v));
    return true;
}
