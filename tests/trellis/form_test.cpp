// Form layout: attachments, the first layout with its ordering rounds, and the re-layout at resize.
#include "trellis/form.h"

#include <gtest/gtest.h>

#include "quill/quillerr.h"
#include "trellis/label.h"
#include "trltest.h"

namespace {

struct Box {
    int x, y, width, height;
};

Box boxOf(CppWidget& w) {
    Box b;
    w.getGeometry(b.x, b.y, b.width, b.height);
    return b;
}

// A form of the size given with labels of a fixed size, so that the
// figures don't depend on fonts.
class FormTest : public ::testing::Test {
protected:
    void SetUp() override {
        form = new CppForm("Form", 0);
        form->resize(500, 300);
    }
    void TearDown() override { delete form; }

    CppLabel& child(const char* name, int width = 50, int height = 20) {
        CppLabel* label = new CppLabel(name, form, name);
        label->resize(width, height);
        return *label;
    }

    CppForm* form;
};

TEST_F(FormTest, emptyFormLaysOutWithoutTouchingItsSize) {
    form->doLayout();
    EXPECT_TRUE(form->layoutDone());
    EXPECT_EQ(500, form->width());
    EXPECT_EQ(300, form->height());
    form->setSize(200, 100);
    EXPECT_EQ(200, form->width());
}

TEST_F(FormTest, newChildStartsAttachedToTheFormOnLeftAndTop) {
    CppLabel& a = child("A");
    FormPosData& pos = form->positionOf(a);
    EXPECT_EQ(form, pos.leftAttach);
    EXPECT_EQ(form, pos.topAttach);
    EXPECT_EQ(nullptr, pos.rightAttach);
    EXPECT_EQ(nullptr, pos.bottomAttach);
    EXPECT_EQ(&a, form->childAt(0));
    std::string text = raisedText([&] { form->childAt(1); });
    EXPECT_NE(std::string::npos,
              text.find("\"index >= 0 && index < children->size()\" in File trellis/form.cpp"));
}

TEST_F(FormTest, siblingListedFirstIsOrderedBehindWhatItRefersTo) {
    CppLabel& b = child("B");
    CppLabel& a = child("A");
    form->attachAt(a, 5, 5);
    form->attachHorizontal(&a, &b, 10);
    form->doLayout();
    EXPECT_EQ(&a, form->childAt(0));
    EXPECT_EQ(&b, form->childAt(1));
    EXPECT_EQ(5 + 50 + 10, boxOf(b).x);
}

TEST_F(FormTest, leftFromRightFollowsTheRightEdge) {
    CppLabel& c = child("C");
    form->attachLeftFromRight(c, 100);
    form->doLayout();
    EXPECT_EQ(400, boxOf(c).x);
    form->resize(700, 300);
    EXPECT_EQ(600, boxOf(c).x);
}

TEST_F(FormTest, rightAtPinsTheRightEdgeWhateverTheWidth) {
    CppLabel& c = child("C");
    form->attachAt(c, 50, 0);
    form->attachRightAt(c, 300);
    form->doLayout();
    EXPECT_EQ(250, boxOf(c).width);
    form->resize(900, 300);
    EXPECT_EQ(300, boxOf(c).x + boxOf(c).width);
}

TEST_F(FormTest, percentagesTruncate) {
    form->resize(301, 300);
    CppLabel& c = child("C");
    form->attachLeftPercent(c, 50);
    form->attachRightPercent(c, 100);
    form->doLayout();
    EXPECT_EQ(150, boxOf(c).x);
    EXPECT_EQ(151, boxOf(c).width);
    form->resize(301, 300);
    EXPECT_EQ(150, boxOf(c).x);
    EXPECT_EQ(151, boxOf(c).width);
}

TEST_F(FormTest, firstLayoutLetsTheFormGrowAndResizeDoesNot) {
    CppLabel& wide = child("Wide", 600, 20);
    form->attachHorizontal(&wide, form, 10);
    form->attachVertical(&wide, form, 5);
    form->doLayout();
    EXPECT_EQ(610, form->width());
    EXPECT_EQ(300, form->height());
    EXPECT_EQ(600, boxOf(wide).width);
    form->resize(400, 300);
    EXPECT_EQ(390, boxOf(wide).width);
    EXPECT_EQ(400, form->width());
}

TEST_F(FormTest, negativeWidthIsFlooredAtResizeOnly) {
    CppLabel& a = child("A");
    CppLabel& b = child("B");
    form->attachAt(a, 300, 0);
    form->attachAt(b, 400, 40);
    // b's right edge is 20 ahead of a's left edge, left of b's own x.
    FormPosData& pos = form->positionOf(b);
    pos.rightAttach = &a;
    pos.rightOffset = 20;
    form->doLayout();
    EXPECT_EQ(0, boxOf(b).width);  // no floor: the window takes no negative size
    form->resize(500, 300);
    EXPECT_EQ(1, boxOf(b).width);
}

TEST_F(FormTest, circularAttachmentsStopAfterTheRoundsAndStillLayOut) {
    CppLabel& a = child("A");
    CppLabel& b = child("B");
    form->attachHorizontal(&a, &b, 5);
    form->attachHorizontal(&b, &a, 5);
    form->doLayout();
    EXPECT_TRUE(form->layoutDone());
    // 1000 swaps, an even number: the order is the one of the start.
    EXPECT_EQ(&a, form->childAt(0));
}

TEST_F(FormTest, unmanagedChildCountsInTheOrderButIsNotPlaced) {
    CppLabel& b = child("B");
    CppLabel& a = child("A");
    a.unmanage();
    a.move(7, 9);
    form->attachVertical(&a, &b, 3);
    form->positionOf(a).leftOffset = 100;
    form->doLayout();
    EXPECT_EQ(&a, form->childAt(0));
    EXPECT_EQ(7, boxOf(a).x);
    EXPECT_EQ(9 + 20 + 3, boxOf(b).y);
}

TEST_F(FormTest, resizeTakesTheSiblingBranchOfYByTheLeftAttachment) {
    CppLabel& a = child("A");
    CppLabel& b = child("B");
    form->attachAt(a, 0, 10);
    form->attachVertical(&a, &b, 5);
    form->doLayout();
    EXPECT_EQ(35, boxOf(b).y);
    // A free left edge keeps y, whatever the top refers to.
    form->positionOf(b).leftAttach = 0;
    b.move(0, 77);
    form->resize(500, 300);
    EXPECT_EQ(77, boxOf(b).y);
    // A free top edge with a left edge set takes the sibling branch, and
    // the free word fails its checked cast.
    FormPosData& pos = form->positionOf(b);
    pos.leftAttach = form;
    pos.topAttach = 0;
    EXPECT_EQ("[CASTBADOB]", raisedText([&] { form->resize(500, 300); }).substr(0, 11));
}

TEST_F(FormTest, attachmentToSomethingDeadFailsItsCheckedCast) {
    CppLabel& a = child("A");
    form->positionOf(a).leftAttach = reinterpret_cast<Object*>(16);
    EXPECT_EQ("[CASTBADOB]", raisedText([&] { form->doLayout(); }).substr(0, 11));
}

TEST_F(FormTest, removedChildLeavesTheList) {
    CppLabel* a = &child("A");
    CppLabel& b = child("B");
    delete a;
    EXPECT_EQ(1, form->childCount());
    EXPECT_EQ(&b, form->childAt(0));
}

TEST_F(FormTest, nestedFormTakesItsNaturalSizeBeforeTheOuterLayout) {
    CppForm* inner = new CppForm("Inner", form);
    CppLabel* deep = new CppLabel("Deep", inner, "Deep");
    deep->resize(120, 30);
    inner->attachAt(*deep, 10, 10);
    inner->attachHorizontal(deep, inner, 10);
    inner->attachVertical(deep, inner, 10);
    CppLabel& after = child("After");
    form->attachHorizontal(inner, &after, 4);
    form->doLayout();
    EXPECT_EQ(140, boxOf(*inner).width);
    EXPECT_EQ(144, boxOf(after).x);
}

}  // namespace
