// StateGraphMaker: state transition graphs made in code.
#include "model/stgmake.h"

#include "editor/drawfile.h"
#include "model/bstsem.h"
#include "model/diagmake.h"
#include "quill/dictnary.h"

namespace {

FloatPoint sideMiddle(const FloatRect& box, Side side) {
    switch (side) {
        case LeftSide:
            return FloatPoint(box.x(), box.y() + box.height() / 2);
        case RightSide:
            return FloatPoint(box.x() + box.width(), box.y() + box.height() / 2);
        case TopSide:
            return FloatPoint(box.x() + box.width() / 2, box.y());
        case BottomSide:
            break;
    }
    return FloatPoint(box.x() + box.width() / 2, box.y() + box.height());
}

}  // namespace

StateGraphMaker::StateGraphMaker() : sem(new StateGraphSem), icons_(new Dictionary) {}

StateGraphMaker::~StateGraphMaker() { deleteDrawing(*icons_, sem); }

void StateGraphMaker::confirm(IconNode& icon, std::initializer_list<const char*> values) {
    OrderedCltn labels, rows;
    for (const char* v : values) rows.add(*new String(v));
    int status = 0, count = 0;
    checkParameters(icon, 0, rows, status);
    iconParameters(icon, 1, labels, rows, count);
    rows.deleteContents();
}

void StateGraphMaker::place(StateIcon& node, int x, int y) {
    node.setPosition(Point(x, y));
    node.update();
    icons_->add(node);
    sem->iconInserted(node);
}

StateIcon& StateGraphMaker::state(const char* name, const char* description, int x, int y) {
    StateIcon* node = new StateIcon;
    place(*node, x, y);
    confirm(*node, {name, description});
    return *node;
}

ProcessIcon& StateGraphMaker::process(const char* name, const char* description, const char* variables, int x,
                                      int y) {
    ProcessIcon* node = new ProcessIcon;
    place(*node, x, y);
    confirm(*node, {name, description, variables});
    return *node;
}

TransitionLink& StateGraphMaker::transition(StateTransIcon& from, StateTransIcon& to, const char* rule,
                                            const char* actions, Side fromSide, Side toSide) {
    TransitionLink* link = new TransitionLink;
    FloatPoint p1 = sideMiddle(from.box(), fromSide), p2 = sideMiddle(to.box(), toSide);
    delete sem->placeLink(*link, from, to, p1, p2);
    from.addToLink(*link);
    to.addFromLink(*link);
    link->setFrom(&from);
    link->setTo(&to);
    link->update();
    confirm(*link, {rule, actions});
    link->release();
    link->update();
    icons_->add(*link);
    return *link;
}

void StateGraphMaker::save(const char* fileName) { saveDrawing(fileName, *icons_, *sem); }
