// The test that an object can be the subject of a robust design.
#ifndef CONTROL_STRUCTCK_H
#define CONTROL_STRUCTCK_H

class Object;

// True for a system of any kind with controls, measures and inputs, more inputs than controls and
// more outputs than measures, whose D blocks from controls to objectives and from disturbances to
// measures are not zero.
bool structuralCheck(const Object& object);

#endif
