// Clock: the millisecond tick and the stopwatch on it.
#include "quill/clock.h"

#include <chrono>
#include <ostream>

DEFINE_CLASS(Clock, Object, 1, 0)

Clock::Clock() : start(now()) {}

long Clock::now() {
    using namespace std::chrono;
    return long(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

bool Clock::isEqual(const Object& ob) const {
    return ob.isSpecies(class_Clock) && static_cast<const Clock&>(ob).start == start;
}

unsigned Clock::hash() const { return unsigned(start); }

void Clock::printOn(std::ostream& os) const { os << elapsed() << " ms"; }
