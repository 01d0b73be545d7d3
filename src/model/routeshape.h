// The four basic route shapes, each leaving its start on the right side of
// the from box; the other twelve are their mirror images.
#ifndef MODEL_ROUTESHAPE_H
#define MODEL_ROUTESHAPE_H

#include "model/route.h"

// What a route joins: the two boxes and the points on their edges.
struct RouteEnds {
    FloatRect fromBox;
    FloatRect toBox;
    FloatPoint start;
    FloatPoint end;
};

Polyline rightToLeft(const RouteEnds& ends);
Polyline rightToRight(const RouteEnds& ends);
Polyline rightToTop(const RouteEnds& ends);
Polyline rightToBottom(const RouteEnds& ends);

#endif
