// The structural test of a design subject.
#include "control/structck.h"

#include "control/dynop.h"

bool structuralCheck(const Object& object) {
    if (!object.isKindOf(class_DynOp)) return false;
    const DynOp& s = static_cast<const DynOp&>(object);
    unsigned m = s.inputNumber(), p = s.outputNumber(), controls = s.controlNumber(),
             measures = s.measureNumber();
    if (controls == 0 || measures == 0 || m == 0 || m <= controls || p <= measures) return false;
    Matrix D = s.getD();
    Matrix controlsToObjectives = dynop::block(D, 0, m - controls, p - measures, controls);
    Matrix disturbancesToMeasures = dynop::block(D, p - measures, 0, measures, m - controls);
    return !controlsToObjectives.allAbsNotAbove(zeroTolerance) &&
           !disturbancesToMeasures.allAbsNotAbove(zeroTolerance);
}
