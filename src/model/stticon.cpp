// StateTransIcon: sizes, attachment points and routes of the links of a state transition graph's nodes.
#include "model/stticon.h"

#include "editor/iconarc.h"
#include "model/nodegeom.h"
#include "trellis/drawprim.h"

DEFINE_ABSTRACT_CLASS(StateTransIcon, IconNode, 1, 0)

StateTransIcon::StateTransIcon() {
    iconWidth(float(nodeWidth()));
    iconHeight(float(nodeHeight()));
}

double StateTransIcon::nodeWidth() const { return 8.0; }
double StateTransIcon::nodeHeight() const { return 2.0; }
double StateTransIcon::labelWidth() const { return 0.9; }
double StateTransIcon::labelHeight() const { return 0.9; }
double StateTransIcon::labelOffset() const { return 0.9; }
double StateTransIcon::labelFont() const { return 0.9; }

int StateTransIcon::iconParameters(int mode, OrderedCltn&, OrderedCltn&, int&) {
    editMode = mode;
    return 0;
}

String StateTransIcon::checkParameters(int, const OrderedCltn&, int&) { return String(); }

FloatRect StateTransIcon::box() const { return FloatRect(posX(), posY(), nodeWidth(), nodeHeight()); }

std::vector<Polyline> StateTransIcon::selfRoutes() {
    OrderedCltn outgoing;
    toLinks(outgoing);
    std::vector<Polyline> loops;
    for (unsigned i = 0; i < outgoing.size(); ++i) {
        IconArc* link = CAST(IconArc, outgoing.at(i));
        if (link->to() != this || link->points()->size() != 5) continue;
        Polyline points;
        for (int k = 0; k < 5; ++k) points.push_back(link->point(k));
        loops.push_back(points);
    }
    return loops;
}

FloatPoint StateTransIcon::linkFromPoint(const FloatPoint& p1, const FloatPoint&) {
    return attachmentPoint(box(), p1);
}

FloatPoint StateTransIcon::linkToPoint(const FloatPoint&, const FloatPoint& p2) {
    return attachmentPoint(box(), p2);
}

void StateTransIcon::routeLink(OrderedCltn& result, IconNode& to, const FloatPoint& start,
                               const FloatPoint& end, const Class&) {
    if (&to != this) {
        routeBetween(result, *this, to, start, end);
        return;
    }
    for (const FloatPoint& p : selfRoute(box(), selfRoutes())) result.add(*new FloatPoint(p));
}

bool StateTransIcon::hasComment() { return false; }

void StateTransIcon::placeLabel(const String& text, double y) {
    centreLabel(*iconLabel(), text, nodeWidth(), labelHeight(), y);
}
