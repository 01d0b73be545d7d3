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
    // Stream form: the milliseconds elapsed; a clock read goes on from there.
    Clock(std::istream& is, Object* where);
    Clock(BinIstream& is, Object* where);

    // The system's millisecond tick: steady, from an arbitrary origin.
    static long now();

    // Milliseconds since the start or the last reset.
    long elapsed() const { return now() - start; }
    void reset() { start = now(); }
    long startTick() const { return start; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // "<elapsed> ms"
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    long start;  // the tick of the start, in milliseconds
};

#endif
