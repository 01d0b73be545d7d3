// StateTransEvent: the stream form and the printed line of a timed event.
#include "model/stevent.h"

#include <cstdio>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"

DEFINE_CLASS(StateTransEvent, Object, 1, 0)

StateTransEvent::StateTransEvent(double time, Object* state, Object* event)
    : time_(time), state_(state), event_(event) {}

StateTransEvent::StateTransEvent(std::istream& is, Object* where) : Object(is, where) {
    time_ = readNumber<double>(is);
    state_ = readFrom(is);
    event_ = readFrom(is);
}

StateTransEvent::StateTransEvent(BinIstream& is, Object* where) : Object(is, where) {
    time_ = readNumber<double>(is);
    state_ = readFrom(is);
    event_ = readFrom(is);
}

void StateTransEvent::printOn(std::ostream& os) const {
    char time[32];
    snprintf(time, sizeof time, "%10g", time_);
    os << "Event at " << time;
}

void StateTransEvent::storer(std::ostream& os) const {
    Object::storer(os);
    os << time_ << ' ';
    state_->storeOn(os);
    event_->storeOn(os);
}

void StateTransEvent::storer(BinOstream& os) const {
    Object::storer(os);
    os << time_;
    state_->storeOn(os);
    event_->storeOn(os);
}
