// Geometry of a block diagram's links: the side of a node a point lies on,
// the attachment point on a node's edge, and the orthogonal route between two nodes.
#ifndef MODEL_ROUTE_H
#define MODEL_ROUTE_H

#include <vector>

#include "quill/point.h"

using Polyline = std::vector<FloatPoint>;

// Sides of a node's box.
enum Side { LeftSide = 0, RightSide = 1, TopSide = 2, BottomSide = 3 };

// The side of box that point lies on: left or right when its x offset is
// within 0.01 of 0 or of the width, else top when its y offset is within
// 0.01 of 0, else bottom.
int sideOf(const FloatRect& box, const FloatPoint& point);

// The point of the box's edge nearest to point, on the half-cell grid: on
// the top or bottom edge when point's x offset lies within 0.5 and width - 0.5,
// else on the left or right edge, kept half a cell from the corners when
// point's y offset lies within the box, and moved to the corner's neighbour
// on the top or bottom edge when it does not.
FloatPoint attachmentPoint(const FloatRect& box, const FloatPoint& point);

// The polyline of a link from start, on an edge of fromBox, to end, on an
// edge of toBox, by the shape that the pair of sides selects. Every segment
// is horizontal or vertical; the route leaves start and enters end
// perpendicular to their sides. Between boxes two or more cells apart it
// keeps one cell from both; closer boxes leave room only for shorter runs
// out and in, and the route stays out of both when they are a cell apart.
Polyline orthogonalRoute(const FloatRect& fromBox, const FloatRect& toBox, const FloatPoint& start,
                         const FloatPoint& end);

// The five points of a link from a node to itself, drawn over the top side: up from the top edge,
// across through a middle point, and down again, one cell above the node and a quarter of its
// width either side of its middle. loops are the node's other self-routes: the new route is
// centred on the mean of their ends when those lie on the top edge (within 0.001), and lies one
// step further out than they do: half a cell wider each side, and higher by the node's height for
// each of them.
Polyline selfRoute(const FloatRect& box, const std::vector<Polyline>& loops);

#endif
