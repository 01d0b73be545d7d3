// StateTransEvent, one timed event of a state transition graph: when, in which state, what happened.
#ifndef MODEL_STEVENT_H
#define MODEL_STEVENT_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_StateTransEvent;

// The state and the event are referred to, not owned; nil when not given.
class StateTransEvent : public Object {
    DECLARE_MEMBERS(StateTransEvent)
public:
    StateTransEvent(double time = 0.0, Object* state = nil, Object* event = nil);
    // Stream form: the base, the time, the state and the event.
    StateTransEvent(std::istream& is, Object* where);
    StateTransEvent(BinIstream& is, Object* where);

    double time() const { return time_; }
    Object* state() const { return state_; }
    Object* event() const { return event_; }

    void printOn(std::ostream& os) const override;  // "Event at " and the time, "%10g"
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double time_;
    Object* state_;
    Object* event_;
};

#endif
