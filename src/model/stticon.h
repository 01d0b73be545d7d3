// StateTransIcon, the common node of state transition graphs: sizes, dialogue operations and the
// routes of its links, self-loops included.
#ifndef MODEL_STTICON_H
#define MODEL_STTICON_H

#include <vector>

#include "editor/iconnode.h"
#include "model/route.h"

extern Class class_StateTransIcon;

// A node covers nodeWidth by nodeHeight cells (8 by 2); its links attach and run as those of the
// block diagram's nodes, and a link to the node itself loops over its top side.
class StateTransIcon : public IconNode {
    DECLARE_MEMBERS(StateTransIcon)
public:
    StateTransIcon();
    // Stream form: IconNode's.
    StateTransIcon(std::istream& is, Object* where) : IconNode(is, where) {}
    StateTransIcon(BinIstream& is, Object* where) : IconNode(is, where) {}

    int lastEditMode() const { return editMode; }

    virtual double nodeWidth() const;
    virtual double nodeHeight() const;
    virtual double labelWidth() const;
    virtual double labelHeight() const;
    virtual double labelOffset() const;
    virtual double labelFont() const;
    // As those of ModelNode: mode 0 fills the dialogue's rows, mode 1 applies what
    // checkParameters stored. The base keeps the mode and answers 0 and "".
    virtual int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count);
    virtual String checkParameters(int mode, const OrderedCltn& values, int& status);

    FloatRect box() const;
    // The routes of the node's links to itself, as they stand.
    std::vector<Polyline> selfRoutes();

    FloatPoint linkFromPoint(const FloatPoint& p1, const FloatPoint& p2) override;
    FloatPoint linkToPoint(const FloatPoint& p1, const FloatPoint& p2) override;
    // The orthogonal route of ModelNode to another node; to itself, selfRoute over the top side,
    // further out than the loops the node has.
    void routeLink(OrderedCltn& result, IconNode& to, const FloatPoint& start, const FloatPoint& end,
                   const Class& semanticClass) override;
    bool hasComment() override;

protected:
    // The text centred across the node, its baseline at y.
    void placeLabel(const String& text, double y);

private:
    int editMode = 0;
};

#endif
