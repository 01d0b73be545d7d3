// What the nodes of the model editors share on the board: the box of a node, the orthogonal route
// of a link between two nodes with the links it crosses, and the name centred across a node.
#ifndef MODEL_NODEGEOM_H
#define MODEL_NODEGEOM_H

#include "quill/point.h"

class DrawString;
class IconNode;
class OrderedCltn;
class String;

// The box a node covers: a model node's own, else its cells as IconNode sizes them.
FloatRect nodeBox(IconNode& node);

// Appends to result the orthogonal route from start, on the edge of from, to end, on the edge of
// to; when it crosses links of the drawing that these two nodes reach, an OrderedCltn of them
// closes the result, for the editor to route them again.
void routeBetween(OrderedCltn& result, IconNode& from, IconNode& to, const FloatPoint& start,
                  const FloatPoint& end);

// The label shows text centred across a node nodeWidth wide, its baseline at y.
void centreLabel(DrawString& label, const String& text, double nodeWidth, double labelHeight, double y);

#endif
