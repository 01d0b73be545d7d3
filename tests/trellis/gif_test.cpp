// GIF output: the file that libgd reads back has the size asked for and the colours painted.
#include <gd.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "../quill/killwrit.h"
#include "quill/orderedc.h"
#include "trellis/cppgc.h"
#include "trellis/drawprim.h"
#include "trellis/gifdrawr.h"
#include "trellis/printdlg.h"

namespace {

struct Rgb {
    int r, g, b;
    bool operator==(const Rgb& o) const { return r == o.r && g == o.g && b == o.b; }
};

Rgb pixel(gdImagePtr image, int x, int y) {
    int c = gdImageGetPixel(image, x, y);
    return Rgb{gdImageRed(image, c), gdImageGreen(image, c), gdImageBlue(image, c)};
}

gdImagePtr readGif(const char* name) {
    FILE* in = std::fopen(name, "rb");
    if (!in) return 0;
    gdImagePtr image = gdImageCreateFromGif(in);
    std::fclose(in);
    return image;
}

TEST(GifTest, fileReadsBackWithItsSizeAndColours) {
    const char* name = "/tmp/tarn_gif_test.gif";
    OrderedCltn icons;
    icons.add(*new FillRect(0, 0, 50, 25, "red"));
    icons.add(*new DrawLine(0, 40, 100, 0, "blue"));
    setColorResource("printBackground", "yellow");
    PrintOptions options;
    options.kind = PrintOptions::GIF;
    options.width = 20;  // tens of pixels
    options.height = 10;
    options.fileName = name;
    ASSERT_TRUE(printDrawing(icons, FloatRect(0, 0, 100, 50), options));
    removeColorResource("printBackground");
    icons.deleteContents();
    gdImagePtr image = readGif(name);
    ASSERT_TRUE(image);
    EXPECT_EQ(200, gdImageSX(image));
    EXPECT_EQ(100, gdImageSY(image));
    EXPECT_EQ((Rgb{255, 0, 0}), pixel(image, 20, 20));
    EXPECT_EQ((Rgb{255, 255, 0}), pixel(image, 150, 20));
    EXPECT_EQ((Rgb{0, 0, 255}), pixel(image, 150, 80));
    // The background takes the first entry of the palette.
    EXPECT_EQ((Rgb{255, 255, 0}), (Rgb{gdImageRed(image, 0), gdImageGreen(image, 0), gdImageBlue(image, 0)}));
    gdImageDestroy(image);
    std::remove(name);
}

// A print written in place was lost with the process that wrote it.
TEST(GifTest, aKilledPrintLeavesTheOldFile) {
    OrderedCltn icons;
    icons.add(*new DrawLine(0, 40, 100, 0, "blue"));
    for (PrintOptions::Kind kind : {PrintOptions::GIF, PrintOptions::POSTSCRIPT}) {
        PrintOptions options;
        options.kind = kind;
        options.fileName = kind == PrintOptions::GIF ? "/tmp/tarn_gif_killed.gif" : "/tmp/tarn_gif_killed.ps";
        testing::internal::CaptureStderr();
        EXPECT_EQ(oldFileSurvives(options.fileName.asCharPointer(),
                                  [&] { printDrawing(icons, FloatRect(0, 0, 100, 50), options); }),
                  "");
        EXPECT_NE(testing::internal::GetCapturedStderr(), "");
        std::remove(options.fileName.asCharPointer());
    }
    icons.deleteContents();
}

TEST(GifTest, moreThanTheImagesColoursIsReported) {
    GifDrawer gif;
    gif.open("/tmp/tarn_gif_many.gif", FloatRect(0, 0, 300, 1), 300, 1);
    testing::internal::CaptureStderr();
    for (int i = 0; i < 300; ++i) {
        CppGC gc;
        gc.foreground = formatText("#%02x%02x%02x", i % 256, i / 256, 7);
        gif.drawRect(gc, i, 0, 1, 1, true);
    }
    EXPECT_EQ("Too colors\n", testing::internal::GetCapturedStderr());
}

}  // namespace
