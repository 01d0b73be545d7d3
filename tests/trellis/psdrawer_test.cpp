// PostScript output: the prologue's marked lines, the definitions, the colour table, the page, each
// primitive.
#include "trellis/psdrawer.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "../quill/testutil.h"
#include "quill/orderedc.h"
#include "trellis/cppgc.h"
#include "trellis/drawprim.h"
#include "trellis/polyline.h"
#include "trltest.h"

namespace {

// A prologue of our own in a directory that TARN_HEADER_PS names.
class PostscriptTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory = "/tmp/tarn_ps_testXXXXXX";
        directory = mkdtemp(&directory[0]);
        std::ofstream(directory + "/header.ps") << "%!PS\n%%Title:\n%%CreationDate:\n%%ConversionToCm 20\n"
                                                   "%%LatexConversionToCm 30\n%%BoundingBox: 10 20 100 200\n"
                                                   "%%cm\n/proc { } def\n";
        former = getenv("TARN_HEADER_PS") ? getenv("TARN_HEADER_PS") : "";
        setenv("TARN_HEADER_PS", directory.c_str(), 1);
    }
    void TearDown() override {
        setenv("TARN_HEADER_PS", former.c_str(), 1);
        std::system(("rm -rf " + directory).c_str());
    }
    // The body: what follows the page placement.
    std::string body(PostscriptDrawer& ps) const {
        std::string text = ps.output().asCharPointer();
        return text.substr(text.find(" translate\n") + 11);
    }

    std::string directory;
    std::string former;
};

TEST_F(PostscriptTest, prologueLinesAreReplacedAndDefinitionsWritten) {
    PostscriptDrawer ps;
    std::string name = directory + "/out(1).ps";
    ps.open(name.c_str(), FloatRect(0, 0, 100, 50), FloatRect(0, 0, 10, 5), false, false);
    ps.paint(OrderedCltn(), false);
    ASSERT_TRUE(ps.close());
    std::string text = fileText(name);
    EXPECT_EQ(0u, text.find("%!PS\n%%Title: " + directory + "/out\\0501\\051.ps\n%%CreationDate: "));
    EXPECT_EQ(20.0, ps.conversion());
    EXPECT_EQ(30.0, ps.latexConversion());
    std::string rest = text.substr(text.find("%%BoundingBox"));
    EXPECT_EQ(
        "%%BoundingBox: 10 20 110 220\n"
        "/cm { 20 mul } def\n/pageX 10 cm def\n/pageY 5 cm def\n"
        "/coffX pageX 100 div def\n/coffY pageY 50 div neg def\n"
        "/xx { 0 sub coffX mul } def\n/yy { 0 sub coffY mul pageY add} def\n"
        "/ww { coffX mul } def\n/hh { coffY mul } def\n"
        "\n%% Color definition\n/background { 1.000000 1.000000 1.000000 } def\n"
        "/proc { } def\n"
        "110 247 translate\n"
        "\nshowpage\n%%Trailer\n",
        rest);
}

TEST_F(PostscriptTest, landscapeExchangesThePageAndTurnsIt) {
    PostscriptDrawer ps;
    ps.open((directory + "/l.ps").c_str(), FloatRect(5, 6, 100, 50), FloatRect(0, 0, 10, 5), true, false);
    std::string text = ps.output().asCharPointer();
    EXPECT_NE(std::string::npos, text.find("/pageX 5 cm def\n/pageY 10 cm def\n"));
    EXPECT_NE(std::string::npos,
              text.find("/xx { 5 sub coffX mul } def\n/yy { 6 sub coffY mul pageY add} def\n"));
    EXPECT_NE(std::string::npos, text.find("420 0 translate\n90 rotate\n271.7 -110 translate\n"));
}

TEST_F(PostscriptTest, eachPrimitiveIsOneLine) {
    PostscriptDrawer ps;
    ps.open((directory + "/p.ps").c_str(), FloatRect(0, 0, 100, 100), FloatRect(0, 0, 10, 10), false, false);
    CppGC dashed;
    dashed.dashed = true;
    PolyLine* path = new Polygon(1, 2, "blue");
    path->addPoint(3, 4);
    path->addPoint(5, 6);
    OrderedCltn icons;
    icons.add(*new DrawLine(1, 2, 3, 4, "red", &dashed));
    icons.add(*new DrawRect(1, 2, 3, 4, "red"));
    icons.add(*new FillRect(1, 2, 3, 4, "green"));
    icons.add(*new DrawArc(10, 20, -4, 6, 64 * 90, -64 * 45, "red"));
    icons.add(*new FillArc(10, 20, 4, 6, 0, 64 * 180, "red"));
    icons.add(*path);
    icons.add(*new DrawString(7, 8, 20, "f(x)", DrawString::LEFT, "black"));
    icons.add(*new DrawString(7, 8, 20, "mid", DrawString::CENTER, "black"));
    icons.add(*new DrawImageString(7, 8, 20, "on", "black"));
    ps.paint(icons, true);
    ps.drawThickArc(dashed, 10, 10, 4, 4, 0, 64 * 90, 2);
    EXPECT_EQ(
        "0 xx 0 yy 100 ww 100 hh background fillRect\n"
        "1 xx 2 yy 3 ww 4 hh red true line\n"
        "1 xx 2 yy 3 ww 4 hh red false rect\n"
        "1 xx 2 yy 3 ww 4 hh green fillRect\n"
        "6 xx 20 yy 4 ww 6 hh 45 90 red false ellipseArc\n"
        "10 xx 20 yy 4 ww 6 hh 0 180 red fillArc\n"
        "1 xx 2 yy 3 ww 4 hh blue PolyStart \n5 ww 6 hh PolyNext\nfalse PolygonEnd\n"
        "7 xx 8 yy 20 ww (f\\050x\\051) black text\n"
        "7 xx 8 yy 20 ww (mid) black centerText\n"
        "7 xx 8 yy 20 ww (on) black white imageText\n"
        "9 xx 9 yy 6 ww 6 hh 0 90 red fillArc\n",
        body(ps));
    icons.deleteContents();
}

// Black and white: a colour turns white when it is on the same side of
// one half as the print background, black otherwise; the background
// itself prints white.
TEST_F(PostscriptTest, blackAndWhiteByTheBackgroundsBrightness) {
    struct Row {
        const char* background;
        bool blackAndWhite;
        const char* table;
    };
    const Row rows[] = {
        {0, false,
         "/background { 1.000000 1.000000 1.000000 } def\n/navy { 0.000000 0.000000 0.501961 } def\n"
         "/yellow { 1.000000 1.000000 0.000000 } def\n"},
        {0, true,
         "/background { 1.000000 1.000000 1.000000 } def\n/navy { 0.000000 0.000000 0.000000 } def\n"
         "/yellow { 1.000000 1.000000 1.000000 } def\n"},
        {"grey10", true,
         "/background { 1.000000 1.000000 1.000000 } def\n/navy { 1.000000 1.000000 1.000000 } def\n"
         "/yellow { 0.000000 0.000000 0.000000 } def\n"},
        {"grey10", false,
         "/background { 0.100000 0.100000 0.100000 } def\n/navy { 0.000000 0.000000 0.501961 } def\n"
         "/yellow { 1.000000 1.000000 0.000000 } def\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.background ? row.background : "white") +
                     (row.blackAndWhite ? " b&w" : ""));
        if (row.background) setColorResource("printBackground", row.background);
        PostscriptDrawer ps;
        std::string name = directory + "/c.ps";
        ps.open(name.c_str(), FloatRect(0, 0, 10, 10), FloatRect(0, 0, 5, 5), false, row.blackAndWhite);
        OrderedCltn icons;
        icons.add(*new DrawLine(0, 0, 1, 1, "yellow"));
        icons.add(*new DrawLine(0, 0, 1, 1, "navy"));
        ps.paint(icons, false);
        ps.close();
        icons.deleteContents();
        removeColorResource("printBackground");
        std::string text = fileText(name);
        std::string::size_type at = text.find("\n%% Color definition\n");
        ASSERT_NE(std::string::npos, at);
        EXPECT_EQ(row.table, text.substr(at + 21, std::strlen(row.table)));
    }
}

TEST_F(PostscriptTest, missingPrologueIsReportedAndThePageStillWritten) {
    setenv("TARN_HEADER_PS", "/nonexistent", 1);
    CerrCapture cerr;
    PostscriptDrawer ps;
    ps.open((directory + "/n.ps").c_str(), FloatRect(0, 0, 10, 10), FloatRect(0, 0, 5, 5), false, false);
    EXPECT_EQ("PostScript header file does not exist\nheader.ps\n", cerr.str());
    EXPECT_EQ(0u, std::string(ps.output().asCharPointer()).find("200 308.75 translate\n"));
}

TEST_F(PostscriptTest, fileThatCantBeWrittenIsReported) {
    Answers answers;
    PostscriptDrawer ps;
    ps.open("/nonexistent/dir/x.ps", FloatRect(0, 0, 10, 10), FloatRect(0, 0, 5, 5), false, false);
    EXPECT_FALSE(ps.close());
    ASSERT_EQ(1u, answers.messages.size());
    EXPECT_EQ("Error: Write error on file /nonexistent/dir/x.ps, No such file or directory",
              answers.messages[0]);
}

// The shipped prologue defines every procedure that the output calls.
TEST(PrologueTest, shippedHeaderDefinesEveryProcedure) {
    std::string text = fileText(TARN_DATA_DIR "/header.ps");
    for (const char* name : {"line", "rect", "fillRect", "fillArc", "ellipseArc", "PolyStart", "PolyNext",
                             "PolylineEnd", "PolygonEnd", "FillPolyEnd", "text", "centerText", "imageText"})
        EXPECT_NE(std::string::npos, text.find(std::string("\n/") + name + " {")) << name;
    for (const char* mark : {"\n%%Title:", "\n%%CreationDate:", "\n%%BoundingBox:", "\n%%cm\n"})
        EXPECT_NE(std::string::npos, text.find(mark)) << mark;
}

}  // namespace
