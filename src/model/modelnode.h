// ModelNode, the common base of the block diagram's nodes: name, dimensions, dialogue rows and link routing.
#ifndef MODEL_MODELNODE_H
#define MODEL_MODELNODE_H

#include <iosfwd>

#include "editor/iconnode.h"
#include "model/modeldata.h"
#include "quill/point.h"

class BinIstream;

extern Class class_ModelNode;

// Whether the object being read has no more fields: an older stream form
// that ends early. The text form sees the closing brace; the binary form has
// no end mark and sees only the end of the stream.
bool atObjectEnd(std::istream& is);
bool atObjectEnd(BinIstream& is);

// A node covers nodeWidth by nodeHeight cells from its position; its links
// leave and enter on the half-cell grid of its edge and run orthogonally.
// Changes reach the semantic through IconChanging, IconChanged and
// AskAnalyse raised on the node.
class ModelNode : public IconNode {
    DECLARE_MEMBERS(ModelNode)
public:
    ModelNode();
    // Stream form: IconNode's, then the name and the input and output dimensions.
    ModelNode(std::istream& is, Object* where);
    ModelNode(BinIstream& is, Object* where);
    ~ModelNode() noexcept(false) override;

    const String& nodeName() const { return nodeName_; }
    void setNodeName(const char* name) { nodeName_ = name; }
    bool isSettled() const { return settled != 0; }
    void setSettled(bool flag) { settled = flag; }
    int lastEditMode() const { return editMode; }

    virtual double nodeWidth() const;
    virtual double nodeHeight() const;
    virtual double labelWidth() const;
    virtual double labelHeight() const;
    virtual double labelOffset() const;
    virtual double labelFont() const;
    // mode 0: fills labels and values (Strings) for the dialogue, sets count
    // (pages left), returns 1; mode 1: applies what checkParameters stored,
    // rebuilds the picture, returns 0. The base only keeps the mode.
    virtual int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count);
    // mode 0: stores the trimmed values and answers the message through
    // errorText ("" when all is well), status 1. The base answers "".
    virtual String checkParameters(int mode, const OrderedCltn& values, int& status);
    virtual int inputDimension() const;
    virtual int outputDimension() const;
    virtual void setInputDimension(int n);
    virtual void setOutputDimension(int n);

    // A dialogue's message: the comma-separated parts of text a line each (a
    // part that starts with ' or $ runs to the next such mark, commas and
    // all), after "Warning\n\n" for "warning", "Fatal Error\n\n" for "fatal",
    // and "Error\n\n" with "\n\nIgnore error ?" behind for any other kind.
    // An empty text gives an empty message.
    static String errorText(const char* kind, const char* text);
    // The value of a dialogue's row, trimmed; empty past the last row.
    static String trimmedValue(const OrderedCltn& values, unsigned index);

    // The outgoing links that start at p and the incoming ones that end at p.
    OrderedCltn& linksAt(OrderedCltn& result, const FloatPoint& p);
    // The box the node covers on the board.
    FloatRect box() const;

    // The point of the edge nearest p1 (from) or p2 (to), on the half-cell grid.
    FloatPoint linkFromPoint(const FloatPoint& p1, const FloatPoint& p2) override;
    FloatPoint linkToPoint(const FloatPoint& p1, const FloatPoint& p2) override;
    // The orthogonal route to `to`; when it crosses links of the diagram
    // that these two nodes reach, an OrderedCltn of them closes the result,
    // for the editor to route them again.
    void routeLink(OrderedCltn& result, IconNode& to, const FloatPoint& start, const FloatPoint& end,
                   const Class& semanticClass) override;
    bool hasComment() override;
    String& iconDescription(String& result) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

protected:
    // The name centred across the node, its baseline at y.
    void placeLabel(double y);
    // A text of the comment at (0, y), length * 0.48 wide.
    void addCommentText(const String& text, double y);
    // The node's description, when it has one, as its comment picture.
    void showDescription(const String& description);
    // Rebuilds the picture after an apply.
    void rebuild();

private:
    template <class Stream>
    void readFields(Stream& is);

    int settled = 0;
    int inputDimension_ = 0;
    int outputDimension_ = 0;
    int editMode = 0;
    String nodeName_;
};

#endif
