// State transition graphs made in code, as the editor makes them: nodes placed and given their
// dialogue's values, transitions routed between them. The shipped example and tests draw with it.
#ifndef MODEL_STGMAKE_H
#define MODEL_STGMAKE_H

#include "model/route.h"
#include "model/stateicn.h"
#include "model/stgsem.h"
#include "model/trnslink.h"

class Dictionary;

class StateGraphMaker {
public:
    StateGraphMaker();
    ~StateGraphMaker();
    StateGraphMaker(const StateGraphMaker&) = delete;
    StateGraphMaker& operator=(const StateGraphMaker&) = delete;

    StateGraphSem& semantic() { return *sem; }
    Dictionary& icons() { return *icons_; }
    StateIcon& state(const char* name, const char* description, int x, int y);
    ProcessIcon& process(const char* name, const char* description, const char* variables, int x, int y);
    // A transition from the middle of a side of from to the middle of a side of to; one from a
    // node to itself loops over its top whatever the sides.
    TransitionLink& transition(StateTransIcon& from, StateTransIcon& to, const char* rule,
                               const char* actions, Side fromSide = RightSide, Side toSide = LeftSide);
    // The graph as the editor stores it.
    void save(const char* fileName);

private:
    // Gives the node or link its dialogue's values, as a confirmed dialogue does.
    static void confirm(IconNode& icon, std::initializer_list<const char*> values);
    void place(StateIcon& node, int x, int y);

    StateGraphSem* sem;
    Dictionary* icons_;
};

#endif
