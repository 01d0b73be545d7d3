// Drawing objects: stream forms, DrawString's first version, bounding boxes, and painting on a window.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <sstream>

#include "quill/objio.h"
#include "quill/orderedc.h"
#include "trellis/cppgc.h"
#include "trellis/drawarea.h"
#include "trellis/drawer.h"
#include "trellis/drawprim.h"
#include "trellis/polyline.h"
#include "trltest.h"

namespace {

std::string stored(const Object& ob) {
    std::ostringstream out;
    storeObject(out, ob);
    return out.str();
}

Object* readBack(const std::string& text) {
    std::istringstream in(text);
    return readFrom(in);
}

// Each shape comes back from its stream form as it went in.
TEST(DrawIconTest, everyShapeReadsBackAsStored) {
    CompositeIcon composite;
    composite.add(*new DrawLine(1, 2, 3, -4, "red"));
    composite.add(*new DrawRect(5, 6, 7, 8, "blue"));
    composite.add(*new FillRect(1, 1, 2, 2, "grey50"));
    composite.add(*new DrawArc(0, 0, 10, 10, 64 * 30, -64 * 90, "green"));
    composite.add(*new FillArc(0, 0, 10, 10, 0, 64 * 45));
    composite.add(*new DrawString(3, 4, 50, "a (text)", DrawString::CENTER, "black"));
    composite.add(*new DrawImageString(3, 4, 50, "image"));
    PolyLine* path = new FillPoly(10, 10, "yellow");
    path->addPoint(5, 0);
    path->addPoint(0, 5);
    composite.add(*path);
    std::string text = stored(composite);
    Object* back = readBack(text);
    ASSERT_TRUE(back && back->isMemberOf(class_CompositeIcon));
    EXPECT_EQ(text, stored(*back));
    const OrderedCltn& icons = static_cast<CompositeIcon*>(back)->icons();
    ASSERT_EQ(8u, icons.size());
    DrawString* string = CAST(DrawString, icons.at(5));
    EXPECT_EQ("a (text)", std::string(string->text.asCharPointer()));
    EXPECT_EQ(DrawString::CENTER, string->alignment);
    EXPECT_EQ("yellow", std::string(CAST(FillPoly, icons.at(7))->colorName().asCharPointer()));
    EXPECT_EQ(2u, CAST(FillPoly, icons.at(7))->points().size());
    delete back;
}

// The signature DrawString had at version 1, as the class descriptors compute it.
unsigned firstSignature(const Class& c) {
    unsigned s = 0;
    for (const Class* p = &c; p; p = p->base())
        s = (s << 4 | s >> 28) ^ (p == &class_DrawString ? 1 : p->version());
    return s;
}

TEST(DrawIconTest, drawStringOfVersionOneReadsWithoutItsAlignment) {
    DrawString current(1, 2, 30, "old", DrawString::CENTER);
    std::string text = stored(current);
    // The first version: the old signature, and no alignment behind the font.
    std::string signature = std::to_string(class_DrawString.signature());
    std::string::size_type at = text.find(signature);
    ASSERT_NE(std::string::npos, at);
    text.replace(at, signature.size(), std::to_string(firstSignature(class_DrawString)));
    std::string::size_type alignment = text.rfind("\n1 }");
    ASSERT_NE(std::string::npos, alignment) << text;
    text.erase(alignment + 1, 2);
    Object* back = readBack(text);
    ASSERT_TRUE(back);
    EXPECT_EQ(DrawString::LEFT, CAST(DrawString, back)->alignment);
    EXPECT_EQ("old", std::string(CAST(DrawString, back)->text.asCharPointer()));
    delete back;
    // The current version still reads its alignment.
    back = readBack(stored(current));
    EXPECT_EQ(DrawString::CENTER, CAST(DrawString, back)->alignment);
    delete back;
}

TEST(DrawIconTest, boundingBoxes) {
    CompositeIcon empty;
    EXPECT_TRUE(empty.getBoundingBox().isEmpty());
    DrawLine back(10, 10, -4, -6);
    EXPECT_EQ(FloatRect(6, 4, 4, 6), back.getBoundingBox());
    PolyLine path(0, 0);
    path.addPoint(5, -2);
    path.addPoint(-8, 7);
    EXPECT_EQ(FloatRect(-3, -2, 8, 7), path.getBoundingBox());
    CompositeIcon both;
    both.add(*new DrawRect(0, 0, 2, 2));
    both.add(*new DrawRect(5, 5, 1, 1));
    EXPECT_EQ(FloatRect(0, 0, 6, 6), both.getBoundingBox());
    both.setBoundingBox(FloatRect(10, 10, 12, 12));
    EXPECT_EQ(FloatRect(10, 10, 12, 12), both.getBoundingBox());
    back.setBoundingBox(FloatRect(0, 0, 2, 3));
    EXPECT_EQ(-2.0f, back.width);
    EXPECT_EQ(FloatRect(0, 0, 2, 3), back.getBoundingBox());
}

TEST(DrawIconTest, baseOperationsAreTheSubclassesResponsibility) {
    struct Bare : public Drawer {
    } drawer;
    EXPECT_NE(std::string::npos, raisedText([&] {
                                     drawer.drawThickArc(CppGC::defaultGC(), 0, 0, 1, 1, 0, 1, 1);
                                 }).find("drawThickArc"));
    DrawLine line;
    EXPECT_NE(std::string::npos, raisedText([&] { line.print(drawer); }).find("drawLine"));
}

// The window drawer puts world shapes where the map says, in their colours;
// an arc with no extent paints nothing.
TEST(DrawIconTest, windowDrawerPaintsInWorldCoordinates) {
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        TranslCoord map(FloatRect(0, 0, 100, 100), FloatRect(0, 0, 50, 50));
        WindowDrawer drawer(painter, map);
        FillRect(10, 10, 10, 10, "red").print(drawer);
        FillArc(30, 30, 10, 10, 0, 0, "blue").print(drawer);
    }
    EXPECT_EQ(qRgb(255, 0, 0), image.pixel(30, 30));
    EXPECT_EQ(qRgb(255, 255, 255), image.pixel(15, 15));
    EXPECT_EQ(qRgb(255, 255, 255), image.pixel(70, 70));
}

// A highlight lasts over repaints until it is cleared; an element taken out
// of a composite is no longer painted with it.
TEST(DrawIconTest, highlightLastsUntilCleared) {
    QImage image(10, 10, QImage::Format_RGB32);
    QPainter painter(&image);
    WindowDrawer drawer(painter, TranslCoord(FloatRect(0, 0, 10, 10), FloatRect(0, 0, 10, 10)));
    CompositeIcon composite;
    FillRect* square = new FillRect(0, 0, 10, 10, "red");
    composite.add(*square);
    composite.setHighlight("blue");
    composite.print(drawer);
    EXPECT_EQ(qRgb(0, 0, 255), image.pixel(5, 5));
    composite.setHighlight(0);
    composite.print(drawer);
    EXPECT_EQ(qRgb(255, 0, 0), image.pixel(5, 5));
    composite.remove(*square);
    EXPECT_TRUE(composite.icons().isEmpty());
    delete square;
}

TEST(DrawIconTest, colourNames) {
    double r, g, b;
    EXPECT_TRUE(colorOf("grey50", r, g, b));
    EXPECT_DOUBLE_EQ(0.5, g);
    EXPECT_TRUE(colorOf("navy", r, g, b));
    EXPECT_DOUBLE_EQ(0.0, r);
    EXPECT_FALSE(colorOf("no such colour", r, g, b));
    EXPECT_FALSE(colorOf("printBackground", r, g, b));
    setColorResource("printBackground", "black");
    EXPECT_TRUE(colorOf("printBackground", r, g, b));
    removeColorResource("printBackground");
}

TEST(DrawIconTest, drawAreaMapsItsWindowToTheWorld) {
    DrawArea area("Area", 0, 200, 100);
    area.setOrigin(FloatPoint(10, 20));
    area.setZoom(2);
    FloatPoint corner = area.transl().toWorld(FloatPoint(200, 100));
    EXPECT_DOUBLE_EQ(110, corner.x());
    EXPECT_DOUBLE_EQ(70, corner.y());
    area.list().add(*new FillRect(10, 20, 5, 5, "red"));
    QImage image(200, 100, QImage::Format_RGB32);
    QPainter painter(&image);
    area.paint(painter);
    painter.end();
    EXPECT_EQ(qRgb(255, 0, 0), image.pixel(4, 4));
    EXPECT_EQ(qRgb(255, 255, 255), image.pixel(50, 50));
}

}  // namespace
