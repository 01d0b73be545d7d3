// The links that a new route crosses, which the editor then reroutes.
#ifndef MODEL_CROSSING_H
#define MODEL_CROSSING_H

#include <vector>

#include "model/route.h"

// A link already on the diagram, by an identifier of the caller's choosing.
struct LinkRoute {
    int id;
    Polyline points;
};

// True when a segment of one polyline crosses a segment of the other, each
// passing strictly through the other (by more than 0.001): touching ends,
// a shared attachment point or a near miss is no crossing.
bool polylinesCross(const Polyline& a, const Polyline& b);

// The identifiers of the links in others that route crosses, in their order.
std::vector<int> crossedLinks(const Polyline& route, const std::vector<LinkRoute>& others);

#endif
