// Mirror images of route ends and polylines. Each transformation is its own
// inverse: a shape computed on transformed ends is transformed back.
#ifndef MODEL_ROUTEMIRROR_H
#define MODEL_ROUTEMIRROR_H

#include "model/routeshape.h"

// The link's ends exchanged; its polyline is reversed.
RouteEnds exchanged(const RouteEnds& ends);
Polyline reversed(Polyline points);

// x negated: left and right sides change places.
RouteEnds negatedX(const RouteEnds& ends);
Polyline negatedX(Polyline points);

// x and y exchanged: left becomes top and right bottom.
RouteEnds transposed(const RouteEnds& ends);
Polyline transposed(Polyline points);

#endif
