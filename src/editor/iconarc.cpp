// IconArc: ends, points, cells and arrow picture of a link; ClassArc: a link with labels.
#include "editor/iconarc.h"

#include <cmath>
#include <cstring>
#include <ostream>

#include "editor/iconmeta.h"
#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "trellis/drawprim.h"

DEFINE_CLASS(IconArc, IconNode, 1, 0)
DEFINE_CLASS(ClassArc, IconArc, 1, 0)

// IconArc

IconArc::IconArc() : points_(new OrderedCltn) { initMetaData(); }

IconArc::IconArc(std::istream& is, Object* where) : IconNode(is, where), points_(0) {
    points_ = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
    initMetaData();
}

IconArc::IconArc(BinIstream& is, Object* where) : IconNode(is, where), points_(0) {
    points_ = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
    initMetaData();
}

IconArc::~IconArc() noexcept(false) {
    points_->deleteContents();
    delete points_;
}

IconNode* IconArc::end(ArrayOb& slots) const { return slots[0] == nil ? 0 : CAST(IconNode, slots[0]); }
IconNode* IconArc::from() const { return end(*fromIcons()); }
IconNode* IconArc::to() const { return end(*toIcons()); }
void IconArc::setFrom(Object* icon) { (*fromIcons())[0] = icon == nil ? nil : CAST(IconNode, icon); }
void IconArc::setTo(Object* icon) { (*toIcons())[0] = icon == nil ? nil : CAST(IconNode, icon); }

FloatPoint IconArc::point(int index) const { return *CAST(FloatPoint, points_->at(index)); }

// A first list is taken as it is, and a comment not yet placed goes beside the middle of the
// link, its first line below it; a later one is copied, and the comment moves with the middle of
// the link.
void IconArc::setPoints(const OrderedCltn& list) {
    if (points_->isEmpty()) {
        points_->addContentsOf(list);
        if (commentIcon()->x == 0.0f && commentIcon()->y == 0.0f && points_->size() >= 2) {
            commentIcon()->x = float(midPoint().x() + 0.2);
            commentIcon()->y = float(midPoint().y() + 0.7);
        }
        return;
    }
    FloatPoint offset = FloatPoint(commentIcon()->x, commentIcon()->y) - midPoint();
    points_->deleteContents();
    for (unsigned i = 0; i < list.size(); ++i) points_->add(*new FloatPoint(*CAST(FloatPoint, list.at(i))));
    FloatPoint place = midPoint() + offset;
    commentIcon()->x = float(place.x());
    commentIcon()->y = float(place.y());
}

const char* IconArc::canBeLinkTo(const FloatPoint&, const Class&) {
    return "Link icon cannot be the to icon for another link";
}

const char* IconArc::canBeLinkFrom(const FloatPoint&, const Class&) {
    return "Link icon cannot be the from icon for another link";
}

namespace {

// The cells under a segment, walked along its longer axis; the cell of the
// segment's end is left to the next segment.
void addSegmentCells(OrderedCltn& cells, const FloatPoint& a, const FloatPoint& b) {
    FloatPoint d = b - a;
    if (std::fabs(d.y()) < std::fabs(d.x())) {
        double m = d.y() / d.x(), c = a.y() - m * a.x();
        int step = d.x() > 0 ? 1 : -1;
        for (int x = int(a.x()); x != int(b.x()); x += step) cells.add(*new Point(x, int(x * m + c)));
    } else {
        double m = d.x() / d.y(), c = a.x() - m * a.y();
        int step = d.y() > 0 ? 1 : -1;
        for (int y = int(a.y()); y != int(b.y()); y += step) cells.add(*new Point(int(y * m + c), y));
    }
}

}  // namespace

void IconArc::fillGeoIcon() {
    FloatPoint previous = point(0);
    for (unsigned i = 1; i < points_->size(); ++i) {
        FloatPoint p = point(i);
        if (p == previous) continue;
        addSegmentCells(*geoIcon(), previous, p);
        previous = p;
    }
    geoIcon()->add(*new Point(int(previous.x()), int(previous.y())));
}

void IconArc::buildIcon() { buildArc(0.15f, 0.3f); }

void IconArc::buildArc(float a, float b) {
    QASSERT_TEXT(points_->size() > 1, "points->size() > 1");
    FloatPoint previous = firstPoint(), d;
    for (unsigned i = 1; i < points_->size(); ++i) {
        d = point(i) - previous;
        if (d != FloatPoint())
            compositeIcon()->add(*new DrawLine(previous.x(), previous.y(), d.x(), d.y(), iconColour));
        previous = point(i);
    }
    if (d != FloatPoint() && a != 0) addArrowHead(previous, d, a, b);
    compositeIcon()->add(*iconLabel());
    compositeIcon()->add(*commentIcon());
}

// Two strokes back from the end, b along the link and a to either side.
void IconArc::addArrowHead(const FloatPoint& end, const FloatPoint& d, float a, float b) {
    double cx = 0, cy = d.y() > 0 ? 1 : -1;
    if (d.x() != 0) {
        double m = d.y() / d.x();
        cx = (d.x() > 0 ? 1 : -1) / std::sqrt(m * m + 1);
        cy = m * cx;
    }
    FloatPoint back(-b * cx, -b * cy), side(a * cy, -a * cx);
    for (const FloatPoint& stroke : {back + side, back - side})
        compositeIcon()->add(*new DrawLine(end.x(), end.y(), stroke.x(), stroke.y(), iconColour));
}

String& IconArc::iconDescription(String& result) {
    result = "Link";
    return result;
}

Object* IconArc::getIconFieldValue(const char* category) {
    if (strcmp(category, iconcat::FROMCOMMENT()) == 0) return &fromComment(fromCommentText);
    if (strcmp(category, iconcat::TOCOMMENT()) == 0) return &toComment(toCommentText);
    if (strcmp(category, iconcat::TITLE()) == 0) return &linkTitleText(titleText);
    return IconNode::getIconFieldValue(category);
}

// A link documents its comments and title instead of links of its own.
void IconArc::initMetaData() {
    IconNode::initMetaData();
    IconMetaData& first = *CAST(IconMetaData, metaDataCltn().first());
    first.remove(first.field(iconcat::FROMLINKS));
    first.remove(first.field(iconcat::TOLINKS));
    for (IconCategory category : {iconcat::FROMCOMMENT, iconcat::TOCOMMENT, iconcat::TITLE})
        setDynamicField(category, DocGenData::none());
}

String& IconArc::fromComment(String& result) {
    result = "";
    return result;
}

String& IconArc::toComment(String& result) {
    result = "";
    return result;
}

String& IconArc::fromIconId(String& result) {
    result = from() ? from()->name().asCharPointer() : "";
    return result;
}

String& IconArc::toIconId(String& result) {
    result = to() ? to()->name().asCharPointer() : "";
    return result;
}

String& IconArc::linkTitleText(String& result) {
    String fromId, toId;
    result = fromIconId(fromId) + " -> " + toIconId(toId);
    return result;
}

void IconArc::storer(std::ostream& os) const {
    IconNode::storer(os);
    points_->storeOn(os);
}

void IconArc::storer(BinOstream& os) const {
    IconNode::storer(os);
    points_->storeOn(os);
}

void IconArc::clearCopiedState() {
    IconNode::clearCopiedState();
    fromCommentText.clearCopiedState();
    toCommentText.clearCopiedState();
    titleText.clearCopiedState();
}

void IconArc::deepenShallowCopy() {
    IconNode::deepenShallowCopy();
    points_ = CAST(OrderedCltn, points_->deepCopy());
}

// ClassArc

ClassArc::ClassArc(std::istream& is, Object* where) : IconArc(is, where) {
    readFrom(is, class_OrderedCltn, &labels_);
}

ClassArc::ClassArc(BinIstream& is, Object* where) : IconArc(is, where) {
    readFrom(is, class_OrderedCltn, &labels_);
}

ClassArc::~ClassArc() noexcept(false) { labels_.deleteContents(); }

const String& ClassArc::label(int index) const { return *CAST(String, labels_.at(index)); }

void ClassArc::addLabel(const String& text) {
    if (text.size() > 0) labels_.add(*new String(text));
}

void ClassArc::clearLabels() { labels_.deleteContents(); }

void ClassArc::buildIcon() {
    buildArc(0.2f, 0.4f);
    defaultComment();
}

void ClassArc::getParameters(OrderedCltn& labels, OrderedCltn& values) {
    String name;
    linkName(name);
    labels.add(*new String(name.size() ? "Labels of " + name + " link" : String("Labels of generic link")));
    values.add(*new String(name));
    for (unsigned i = 0; i < labels_.size(); ++i) values.add(*new String(label(i)));
}

void ClassArc::setParameters(OrderedCltn& labels, OrderedCltn& values) {
    labels_.deleteContents();
    while (!values.isEmpty()) {
        String* value = CAST(String, values.removeFirst());
        *value = value->stripBoth();
        if (value->size() > 0)
            labels_.add(*value);
        else
            delete value;
    }
    labels.deleteContents();
}

String& ClassArc::iconDescription(String& result) {
    result = "Generic Link";
    return result;
}

bool ClassArc::hasComment() { return true; }

// The name, when there is one, and the labels, a line each.
void ClassArc::defaultComment() {
    commentIcon()->deleteIcons();
    String name;
    float y = 0;
    if (linkName(name).size() > 0) addCommentLine(name, y);
    for (unsigned i = 0; i < labels_.size(); ++i) addCommentLine(label(i), y);
}

namespace {

const float LINE_HEIGHT = 0.8f;  // a comment line's text, in a line 1.05 cells apart

}  // namespace

void ClassArc::addCommentLine(const String& text, float& y) {
    String shown = " " + text + " ";
    DrawImageString* line =
        new DrawImageString(0, y, shown.size() * 0.4f, shown.asCharPointer(), stringColour);
    line->height = LINE_HEIGHT;
    commentIcon()->add(*line);
    y += 1.05f;
}

String& ClassArc::linkName(String& result) {
    result = "";
    return result;
}

void ClassArc::storer(std::ostream& os) const {
    IconArc::storer(os);
    labels_.storeOn(os);
}

void ClassArc::storer(BinOstream& os) const {
    IconArc::storer(os);
    labels_.storeOn(os);
}

void ClassArc::clearCopiedState() {
    IconArc::clearCopiedState();
    labels_.clearCopiedState();
}

void ClassArc::deepenShallowCopy() {
    IconArc::deepenShallowCopy();
    labels_.deepenShallowCopy();
}
