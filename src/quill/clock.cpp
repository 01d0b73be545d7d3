// Clock: the millisecond tick, the stopwatch on it and its stream form.
#include "quill/clock.h"

#include <chrono>
#include <istream>
#include <ostream>

#include "quill/binstrm.h"

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

// Stream form: the milliseconds elapsed, since the tick itself means nothing
// to another process.

Clock::Clock(std::istream& is, Object* where) : Object(is, where), start(now()) {
    long elapsedTime = 0;
    is >> elapsedTime;
    start -= elapsedTime;
}

Clock::Clock(BinIstream& is, Object* where) : Object(is, where), start(now()) {
    long elapsedTime = 0;
    is >> elapsedTime;
    start -= elapsedTime;
}

void Clock::storer(std::ostream& os) const {
    Object::storer(os);
    os << elapsed() << ' ';
}

void Clock::storer(BinOstream& os) const {
    Object::storer(os);
    os << elapsed();
}
