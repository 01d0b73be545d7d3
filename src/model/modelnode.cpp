// ModelNode: dimensions, name, stream form, dialogue messages, attachment points and routes of links.
#include "model/modelnode.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "editor/iconarc.h"
#include "model/nodegeom.h"
#include "model/route.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(ModelNode, IconNode, 1, 0)

bool atObjectEnd(std::istream& is) { return (is >> std::ws).peek() == '}'; }
bool atObjectEnd(BinIstream& is) { return is.atEnd(); }

ModelNode::ModelNode() {
    iconWidth(float(nodeWidth()));
    iconHeight(float(nodeHeight()));
}

ModelNode::ModelNode(std::istream& is, Object* where) : IconNode(is, where) { readFields(is); }

ModelNode::ModelNode(BinIstream& is, Object* where) : IconNode(is, where) { readFields(is); }

template <class Stream>
void ModelNode::readFields(Stream& is) {
    readFrom(is, class_String, &nodeName_);
    inputDimension_ = readNumber<int>(is);
    outputDimension_ = readNumber<int>(is);
}

ModelNode::~ModelNode() noexcept(false) {}

double ModelNode::nodeWidth() const { return 8.0; }
double ModelNode::nodeHeight() const { return 2.0; }
double ModelNode::labelWidth() const { return 0.9; }
double ModelNode::labelHeight() const { return 0.9; }
double ModelNode::labelOffset() const { return 0.9; }
double ModelNode::labelFont() const { return 0.9; }

int ModelNode::iconParameters(int mode, OrderedCltn&, OrderedCltn&, int&) {
    editMode = mode;
    return 0;
}

String ModelNode::checkParameters(int, const OrderedCltn&, int&) { return String(); }

int ModelNode::inputDimension() const { return inputDimension_; }
int ModelNode::outputDimension() const { return outputDimension_; }
void ModelNode::setInputDimension(int n) { inputDimension_ = n; }
void ModelNode::setOutputDimension(int n) { outputDimension_ = n; }

namespace {

// The parts of text between commas, a line each; a part that opens with '
// or $ closes at the next same mark and may hold commas.
String joinedParts(const std::string& text) {
    std::string result;
    size_t at = 0;
    while (at < text.size()) {
        size_t end;
        if (text[at] == '\'' || text[at] == '$') {
            size_t close = std::min(text.find(text[at], at + 1), text.size());
            result += text.substr(at + 1, close - at - 1);
            end = text.find(',', close);
        } else {
            end = text.find(',', at);
            result += text.substr(at, end == std::string::npos ? std::string::npos : end - at);
        }
        if (end == std::string::npos) break;
        result += '\n';
        at = end + 1;
    }
    return String(result.c_str());
}

}  // namespace

String ModelNode::errorText(const char* kind, const char* text) {
    String body = joinedParts(text ? text : "");
    if (body.size() == 0) return body;
    String k(kind ? kind : "");
    if (k == "warning") return "Warning\n\n" + body;
    if (k == "fatal") return "Fatal Error\n\n" + body;
    return "Error\n\n" + body + "\n\nIgnore error ?";
}

OrderedCltn& ModelNode::linksAt(OrderedCltn& result, const FloatPoint& p) {
    OrderedCltn outgoing, incoming;
    toLinks(outgoing);
    fromLinks(incoming);
    for (unsigned i = 0; i < outgoing.size(); ++i) {
        IconArc* link = CAST(IconArc, outgoing.at(i));
        if (!link->points()->isEmpty() && link->firstPoint() == p) result.add(*link);
    }
    for (unsigned i = 0; i < incoming.size(); ++i) {
        IconArc* link = CAST(IconArc, incoming.at(i));
        if (!link->points()->isEmpty() && link->lastPoint() == p) result.add(*link);
    }
    return result;
}

FloatRect ModelNode::box() const { return FloatRect(posX(), posY(), nodeWidth(), nodeHeight()); }

FloatPoint ModelNode::linkFromPoint(const FloatPoint& p1, const FloatPoint&) {
    return attachmentPoint(box(), p1);
}
FloatPoint ModelNode::linkToPoint(const FloatPoint&, const FloatPoint& p2) {
    return attachmentPoint(box(), p2);
}

void ModelNode::routeLink(OrderedCltn& result, IconNode& to, const FloatPoint& start, const FloatPoint& end,
                          const Class&) {
    routeBetween(result, *this, to, start, end);
}

bool ModelNode::hasComment() { return true; }

String& ModelNode::iconDescription(String& result) {
    result = "State Icon";
    return result;
}

void ModelNode::placeLabel(double y) { centreLabel(*iconLabel(), nodeName_, nodeWidth(), labelHeight(), y); }

void ModelNode::addCommentText(const String& text, double y) {
    DrawImageString* line =
        new DrawImageString(0, float(y), float(text.size() * 0.48), text.asCharPointer(), stringColour);
    line->height = float(labelHeight());
    commentIcon()->add(*line);
}

void ModelNode::showDescription(const String& description) {
    commentIcon()->deleteIcons();
    if (description.size() > 0) addCommentText(description, 0);
}

void ModelNode::rebuild() {
    unbuildIcon();
    buildIcon();
}

String ModelNode::trimmedValue(const OrderedCltn& values, unsigned index) {
    return index < values.size() ? CAST(String, values.at(index))->stripBoth() : String();
}

void ModelNode::storer(std::ostream& os) const {
    IconNode::storer(os);
    nodeName_.storeOn(os);
    os << inputDimension_ << ' ' << outputDimension_ << ' ';
}

void ModelNode::storer(BinOstream& os) const {
    IconNode::storer(os);
    nodeName_.storeOn(os);
    os << inputDimension_ << outputDimension_;
}

void ModelNode::clearCopiedState() {
    IconNode::clearCopiedState();
    nodeName_.clearCopiedState();
}
