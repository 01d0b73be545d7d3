// The box of a node, the orthogonal routes of links between nodes and the links they cross, and
// the centred name of a node.
#include "model/nodegeom.h"

#include <algorithm>
#include <vector>

#include "editor/iconarc.h"
#include "model/crossing.h"
#include "model/modelnode.h"
#include "model/route.h"
#include "quill/arrayob.h"
#include "trellis/drawprim.h"

namespace {

// The node in a link's end slot; a pasted link may still hold a name there.
IconNode* endNode(ArrayOb& slots) {
    Object* end = slots[0];
    return end != nil && end->isKindOf(class_IconNode) ? static_cast<IconNode*>(end) : 0;
}

// The links that join the nodes reachable from the two given nodes.
std::vector<IconArc*> reachableLinks(IconNode& first, IconNode& second) {
    std::vector<IconNode*> nodes{&first, &second};
    std::vector<IconArc*> links;
    for (size_t i = 0; i < nodes.size(); ++i) {
        OrderedCltn incoming, outgoing;
        nodes[i]->fromLinks(incoming);
        nodes[i]->toLinks(outgoing);
        for (OrderedCltn* list : {&incoming, &outgoing})
            for (unsigned k = 0; k < list->size(); ++k) {
                if (!list->at(k)->isKindOf(class_IconArc)) continue;
                IconArc* link = static_cast<IconArc*>(list->at(k));
                if (std::find(links.begin(), links.end(), link) != links.end()) continue;
                links.push_back(link);
                for (IconNode* end : {endNode(*link->fromIcons()), endNode(*link->toIcons())})
                    if (end && std::find(nodes.begin(), nodes.end(), end) == nodes.end())
                        nodes.push_back(end);
            }
    }
    return links;
}

Polyline pointsOf(const IconArc& link) {
    Polyline points;
    for (unsigned i = 0; i < link.points()->size(); ++i) points.push_back(link.point(int(i)));
    return points;
}

}  // namespace

FloatRect nodeBox(IconNode& node) {
    if (node.isKindOf(class_ModelNode)) return static_cast<ModelNode&>(node).box();
    return FloatRect(node.posX(), node.posY(), node.iconWidth(), node.iconHeight());
}

void routeBetween(OrderedCltn& result, IconNode& from, IconNode& to, const FloatPoint& start,
                  const FloatPoint& end) {
    Polyline route = orthogonalRoute(nodeBox(from), nodeBox(to), start, end);
    for (const FloatPoint& p : route) result.add(*new FloatPoint(p));
    std::vector<IconArc*> links = reachableLinks(from, to);
    std::vector<LinkRoute> others;
    for (size_t i = 0; i < links.size(); ++i)
        if (links[i]->points()->size() > 1) others.push_back(LinkRoute{int(i), pointsOf(*links[i])});
    std::vector<int> crossed = crossedLinks(route, others);
    if (crossed.empty()) return;
    OrderedCltn* rerouted = new OrderedCltn;
    for (int id : crossed) rerouted->add(*links[size_t(id)]);
    result.add(*rerouted);
}

void centreLabel(DrawString& label, const String& text, double nodeWidth, double labelHeight, double y) {
    float width = float(text.size() * 0.48);
    label.text = text;
    label.width = width;
    label.height = float(labelHeight);
    label.x = float((nodeWidth - width) * 0.5);
    label.y = float(y - labelHeight);
}
