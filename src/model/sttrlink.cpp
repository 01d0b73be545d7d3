// StateTransLink: the base dialogue operations and the description of the model editors' links.
#include "model/sttrlink.h"

DEFINE_CLASS(StateTransLink, IconArc, 1, 0)

int StateTransLink::iconParameters(int mode, OrderedCltn&, OrderedCltn&, int&) {
    editMode = mode;
    return 0;
}

String StateTransLink::checkParameters(int, const OrderedCltn&, int&) { return String(); }

String& StateTransLink::iconDescription(String& result) {
    result = "State Transition Link";
    return result;
}
