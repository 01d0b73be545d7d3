// Clock, a stopwatch that counts milliseconds from its start.
#ifndef QUILL_CLOCK_H
#define QUILL_CLOCK_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Clock;

class Clock : public Object {
    DECLARE_MEMBERS(Clock)
public:
    Clock();  // started now

    // The system's millisecond tick: steady, from an arbitrary origin.
    static long now();

    // Milliseconds since the start or the last reset.
    long elapsed() const { return now() - start; }
    void reset() { start = now(); }
    long startTick() const { return start; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // "<elapsed> ms"

private:
    long start;  // the tick of the start, in milliseconds
};

#endif
