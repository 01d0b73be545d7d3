// Icons and links: stream forms old and new, attachment points, the cells and the picture of a link.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "../quill/iotest.h"
#include "editor/iconarc.h"
#include "trellis/drawprim.h"

extern Class class_OldLayout;

// What an older program wrote: no link arrays, the label and the comment
// picture as objects in place of the markers.
class OldLayout : public Object {
    DECLARE_MEMBERS(OldLayout)
public:
    OldLayout() {}
    OldLayout(std::istream& is, Object* where) : Object(is, where) {}
    OldLayout(BinIstream& is, Object* where) : Object(is, where) {}
    // Every part lives through the store, so that none is taken for another.
    void storer(std::ostream& os) const override {
        Object::storer(os);
        String name("old"), comment("remark"), help("help");
        DrawString label(0, 0, 0, "old label");
        CompositeIcon picture;
        picture.add(*new DrawString(0, 0, 0, "note"));
        name.storeOn(os);
        os << "@0 @0 ";
        label.storeOn(os);
        os << "4 6 ";
        comment.storeOn(os);
        help.storeOn(os);
        picture.storeOn(os);
        os << "0 1 ";
    }
};

DEFINE_CLASS(OldLayout, Object, 1, 0)

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

// Two nodes and the link from the first to the second, wired as the editor does.
struct Linked {
    IconNode from, to;
    IconArc link;
    Linked() {
        from.setName("A");
        to.setName("B");
        link.setName("L");
        from.setPosition(Point(2, 3));
        to.setPosition(Point(9, 3));
        from.addToLink(link);
        to.addFromLink(link);
        link.setFrom(&from);
        link.setTo(&to);
        OrderedCltn points;
        points.add(*new FloatPoint(3.01, 3.5));
        points.add(*new FloatPoint(8.99, 3.5));
        link.setPoints(points);
    }
};

IconNode& member(Object* cltn, int i) { return *CAST(IconNode, (*CAST(OrderedCltn, cltn))[i]); }

// A drawing of two nodes and a link comes back wired as it went, from both
// forms; the links' slots keep no trailing room beyond two.
TEST(IconNodeTest, drawingRoundTripsThroughBothForms) {
    Linked d;
    d.from.comment() = "first {node}";
    d.from.iconWidth(2.5f);
    d.from.canScale(1);
    d.to.setMovable(false);
    OrderedCltn drawing;
    drawing.add(d.from);
    drawing.add(d.to);
    drawing.add(d.link);
    std::string text = storedText(drawing);
    for (Object* back : {readText(text), readBinary(storedBinary(drawing))}) {
        ASSERT_TRUE(back);
        IconNode& from = member(back, 0);
        IconNode& to = member(back, 1);
        IconArc& link = *CAST(IconArc, &member(back, 2));
        EXPECT_EQ("A", str(from.name()));
        EXPECT_EQ(&from, link.from());
        EXPECT_EQ(&to, link.to());
        EXPECT_EQ(&link, (*from.toIcons())[0]);
        EXPECT_EQ(&link, (*to.fromIcons())[0]);
        EXPECT_EQ(2u, from.toIcons()->size());
        EXPECT_EQ(Point(2, 3), from.position());
        EXPECT_EQ(2.5f, from.iconWidth());
        EXPECT_EQ(1, from.canScale());
        EXPECT_FALSE(to.isMovable());
        EXPECT_EQ(FloatPoint(8.99, 3.5), link.lastPoint());
        EXPECT_EQ(text, storedText(*back));
        CAST(OrderedCltn, back)->deleteContents();
        delete back;
    }
    for (int i = 0; i < 3; ++i) d.from.addToLink(*new IconArc);  // the slots double to 4
    for (int i = 1; i < 4; ++i) {
        Object* extra = (*d.from.toIcons())[i];
        d.from.removeToLink(*CAST(IconArc, extra));
        delete extra;
    }
    IconNode* from = CAST(IconNode, readText(storedText(d.from)));
    EXPECT_EQ(2u, from->toIcons()->size());
    IconArc* link = CAST(IconArc, (*from->toIcons())[0]);
    delete link->to();
    delete link;
    delete from;
}

TEST(IconNodeTest, readsTheOlderLayout) {
    std::string text = storedText(OldLayout());
    text.replace(0, text.find('.'), ":IconNode");
    text.replace(text.find('.') + 1, sig(class_OldLayout).size(), sig(class_IconNode));
    std::string error;
    Object* read = readText(text, &error);
    ASSERT_TRUE(read) << error << "\n" << text;
    IconNode* node = CAST(IconNode, read);
    EXPECT_EQ("old label", str(node->iconLabel()->text));
    EXPECT_EQ("note", str(CAST(DrawString, node->commentIcon()->icons().first())->text));
    EXPECT_EQ(Point(4, 6), node->position());
    EXPECT_EQ("remark", str(node->comment()));
    EXPECT_EQ(1.0f, node->iconWidth());
    EXPECT_EQ(1u, node->fromIcons()->size());
    EXPECT_FALSE(node->isDeletable());
    EXPECT_TRUE(node->isMovable());
    delete node;
}

// A link leaves and enters 0.01 outside the middle of the facing sides; a
// diagonal counts as horizontal.
TEST(IconNodeTest, attachmentPoints) {
    IconNode node;
    node.setPosition(Point(5, 5));
    EXPECT_EQ(FloatPoint(4.99, 5.5), node.linkToPoint(FloatPoint(0, 5.5), FloatPoint(5.5, 5.5)));
    EXPECT_EQ(FloatPoint(6.01, 5.5), node.linkToPoint(FloatPoint(9, 9), FloatPoint(5.5, 5.5)));
    EXPECT_EQ(FloatPoint(5.5, 6.01), node.linkFromPoint(FloatPoint(5.5, 5.5), FloatPoint(5.5, 20)));
    EXPECT_EQ(FloatPoint(5.5, 4.99), node.linkFromPoint(FloatPoint(5.5, 5.5), FloatPoint(6, 0)));
}

std::vector<Point> cells(IconNode& icon) {
    std::vector<Point> result;
    for (unsigned i = 0; i < icon.geoIcon()->size(); ++i)
        result.push_back(*CAST(Point, icon.geoIcon()->at(i)));
    return result;
}

OrderedCltn& pointList(OrderedCltn& list, std::initializer_list<FloatPoint> points) {
    for (const FloatPoint& p : points) list.add(*new FloatPoint(p));
    return list;
}

TEST(IconArcTest, cellsUnderThePolyline) {
    IconArc link;
    OrderedCltn points;
    link.setPoints(pointList(points, {{0.5, 0.5}, {4.5, 2.5}, {4.5, 2.5}, {4.5, 5.5}}));
    link.fillGeoIcon();
    std::vector<Point> expected = {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}, {4, 3}, {4, 4}, {4, 5}};
    EXPECT_EQ(expected, cells(link));

    IconArc still;
    OrderedCltn same;
    still.setPoints(pointList(same, {{3.5, 3.5}, {3.5, 3.5}}));
    still.update();
    EXPECT_EQ(std::vector<Point>{Point(3, 3)}, cells(still));
    EXPECT_EQ(2u, still.compositeIcon()->icons().size());  // label and comment only
    still.release();
}

// The head's strokes go back 0.3 along the link and 0.15 to each side; the
// comment keeps its place relative to the middle when the link moves.
TEST(IconArcTest, arrowHeadAndCommentFollowTheLink) {
    IconArc link;
    OrderedCltn points;
    link.setPoints(pointList(points, {{0, 0}, {4, 0}}));
    link.buildIcon();
    const OrderedCltn& picture = link.compositeIcon()->icons();
    ASSERT_EQ(5u, picture.size());
    for (int i : {1, 2}) {
        DrawLine& stroke = *CAST(DrawLine, picture.at(i));
        EXPECT_EQ(4.0f, stroke.x);
        EXPECT_FLOAT_EQ(-0.3f, stroke.width);
        EXPECT_FLOAT_EQ(i == 1 ? -0.15f : 0.15f, stroke.height);
    }
    link.unbuildIcon();
    link.commentIcon()->x = 2;
    link.commentIcon()->y = 1;
    OrderedCltn moved;
    link.setPoints(pointList(moved, {{10, 10}, {14, 10}}));
    moved.deleteContents();
    EXPECT_EQ(12.0f, link.commentIcon()->x);
    EXPECT_EQ(11.0f, link.commentIcon()->y);
}

TEST(IconArcTest, linksRefuseLinksAndClassArcShowsItsLabels) {
    IconArc link;
    EXPECT_STREQ("Link icon cannot be the to icon for another link",
                 link.canBeLinkTo(FloatPoint(), class_IconArc));
    ClassArc labelled;
    labelled.defaultComment();
    EXPECT_TRUE(labelled.commentIcon()->icons().isEmpty());
    OrderedCltn labels, values;
    values.add(*new String("  first "));
    values.add(*new String("   "));
    values.add(*new String("second"));
    labelled.setParameters(labels, values);
    EXPECT_TRUE(values.isEmpty());
    labelled.defaultComment();
    const OrderedCltn& lines = labelled.commentIcon()->icons();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ(" first ", str(CAST(DrawImageString, lines.at(0))->text));
    EXPECT_FLOAT_EQ(1.05f, CAST(DrawImageString, lines.at(1))->y);
    Object* back = readText(storedText(labelled));
    ASSERT_TRUE(back);
    EXPECT_EQ("second", str(CAST(ClassArc, back)->label(1)));
    delete back;
}

}  // namespace
