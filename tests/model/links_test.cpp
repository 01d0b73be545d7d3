// Signal links: old stream forms, the dimensions worked out by the dialogue, the sum advice, and routes that
// cross.
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>

#include "../quill/iotest.h"
#include "model/blockicon.h"
#include "model/signlink.h"
#include "model/termicon.h"
#include "texts.h"

namespace {

// Two nodes and the link between them, wired as the editor does.
struct Wired {
    ModelNode& from;
    ModelNode& to;
    SignalLink link;
    Wired(ModelNode& from, ModelNode& to) : from(from), to(to) {
        from.setPosition(Point(2, 2));
        to.setPosition(Point(20, 2));
        from.addToLink(link);
        to.addFromLink(link);
        link.setFrom(&from);
        link.setTo(&to);
        OrderedCltn points;
        points.add(*new FloatPoint(from.linkFromPoint(FloatPoint(10, 3), FloatPoint(20, 3))));
        points.add(*new FloatPoint(to.linkToPoint(FloatPoint(10, 3), FloatPoint(20, 3))));
        link.setPoints(points);
    }
    ~Wired() {
        from.removeToLink(link);
        to.removeFromLink(link);
    }
    // The dialogue's check and apply; answers the check's message and the error stream of the apply.
    std::string enter(const char* name, const char* sign, const char* mux, std::string* printed = 0) {
        OrderedCltn values, labels;
        for (const char* v : {name, sign, mux}) values.add(*new String(v));
        int status = 0, count = 0;
        std::string message = str(link.checkParameters(0, values, status));
        EXPECT_EQ(status, 1);
        values.deleteContents();
        testing::internal::CaptureStderr();
        EXPECT_EQ(link.iconParameters(1, labels, values, count), 0);
        std::string errors = testing::internal::GetCapturedStderr();
        if (printed) *printed = errors;
        return message;
    }
};

std::unique_ptr<BlockIcon> blockOf(const char* name, const char* d) {
    std::unique_ptr<BlockIcon> block(new BlockIcon);
    block->setFromGain(Matrix(d), name, 0);
    return block;
}

TEST(SignalLinkStream, OlderFormsReadWithoutMultiplexingOrDimensions) {
    InputSignalIcon in;
    OutputSignalIcon out;
    Wired wired(in, out);
    wired.enter(" u ", "-", " 1:2,3:4 ");
    std::string text = storedText(wired.link);

    std::string error;
    SignalLink* read = dynamic_cast<SignalLink*>(readText(text, &error));
    ASSERT_NE(read, nullptr) << error;
    EXPECT_EQ(str(read->signalName()), "u");
    EXPECT_EQ(read->signValue(), -1);
    EXPECT_EQ(str(read->multiplexing()), "1:2,3:4");
    int sf, sl, df, dl;
    read->allIndices(sf, sl, df, dl);
    EXPECT_EQ((std::vector<int>{sf, sl, df, dl}), (std::vector<int>{3, 4, 1, 2}));
    EXPECT_FALSE(read->isSettled());
    deepDelete(read);

    // Without the two dimensions, then also without the multiplexing.
    std::string noDimensions = std::regex_replace(text, std::regex("-?\\d+ -?\\d+ \\}\\n$"), "}\n");
    read = dynamic_cast<SignalLink*>(readText(noDimensions));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(str(read->multiplexing()), "1:2,3:4");
    EXPECT_EQ(read->inputDimension(), 0);
    EXPECT_EQ(read->outputDimension(), 0);
    deepDelete(read);
    std::string noMultiplexing =
        std::regex_replace(noDimensions, std::regex("\\S+\\{\\d+ \\d+ \"1:2,3:4\"\\}\\n\\}\\n$"), "}\n");
    read = dynamic_cast<SignalLink*>(readText(noMultiplexing));
    ASSERT_NE(read, nullptr);
    EXPECT_FALSE(read->hasMultiplexing());
    EXPECT_EQ(read->signalDimension(), 2);
    deepDelete(read);
}

TEST(SignalLinkDialog, DimensionsPassFromBlockToTerminals) {
    std::unique_ptr<BlockIcon> block = blockOf("G", "[1 2;3 4;5 6]");
    OutputSignalIcon out;
    out.setNodeName("y");
    Wired wired(*block, out);
    EXPECT_EQ(wired.enter("s", "+", ""), "");
    EXPECT_EQ(wired.link.signalDimension(), 3);
    EXPECT_EQ(out.inputDimension(), 3);
    EXPECT_EQ(wired.link.signValue(), 1);
}

TEST(SignalLinkDialog, MismatchedDimensionsAreWarnedAbout) {
    std::unique_ptr<BlockIcon> first = blockOf("G1", "[1 2;3 4;5 6]");
    std::unique_ptr<BlockIcon> second = blockOf("G2", "[1 2]");
    Wired wired(*first, *second);
    std::string printed;
    wired.enter("s", "", "", &printed);
    EXPECT_EQ(printed,
              "Warning: output dimension (3) of previous block G1\n"
              "is not equal to input dimension (2) of next block G2\n"
              "when the network has been completed execute the command \"Check Model Consistency\"\n");

    wired.enter("s", "", "1:2,2:5", &printed);
    EXPECT_EQ(printed, "Warning: the input multiplexing indices are greater than the number of inputs 3\n");
    EXPECT_EQ(wired.link.signalDimension(), 4);
    EXPECT_EQ(wired.link.inputDimension(), 3);
    EXPECT_EQ(wired.link.outputDimension(), 2);
}

TEST(SignalLinkDialog, NarrowMultiplexingIntoABlockNeedsASum) {
    InputSignalIcon in;
    std::unique_ptr<BlockIcon> block = blockOf("G", "[1 2 3]");
    Wired wired(in, *block);
    EXPECT_EQ(wired.enter("s", "", "1:2,1:2"),
              "Error\n\nicon G cannot be directly connected to a multiplexer link\nuse a Sum icon\n\nIgnore "
              "error ?");
    EXPECT_EQ(wired.enter("s", "", ":,1:3"), "");
    int first, last;
    wired.link.destIndices(first, last);
    EXPECT_EQ(last, 3);
}

TEST(SignalLinkDialog, LinkWithOneModelEndComparesItsOwnDimension) {
    std::unique_ptr<BlockIcon> block = blockOf("G", "[1 2;3 4;5 6]");
    InputSignalIcon other;
    Wired wired(*block, other);
    wired.link.setSignalDimension(2);
    OrderedCltn labels, values;
    for (const char* v : {"s", "", ""}) values.add(*new String(v));
    int status, count;
    wired.link.checkParameters(0, values, status);
    values.deleteContents();
    testing::internal::CaptureStderr();
    wired.link.iconParametersTo(1, labels, values, count);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Warning: signal dimension (2) of this link\nis not equal to output dimension (3) of block G\n"
              "when the network has been completed execute the command \"Check Model Consistency\"\n");
    EXPECT_EQ(wired.link.signalDimension(), 3);
    OrderedCltn atStart;
    EXPECT_EQ(block->linksAt(atStart, wired.link.firstPoint()).size(), 1u);
    OrderedCltn elsewhere;
    EXPECT_EQ(block->linksAt(elsewhere, wired.link.lastPoint()).size(), 0u);
}

TEST(ModelNodeRoute, RouteReportsTheLinksItCrosses) {
    InputSignalIcon a, c;
    OutputSignalIcon b, d;
    Wired across(a, b);
    // A vertical link between the two, drawn by hand across the first.
    Wired other(c, d);
    OrderedCltn points;
    points.add(*new FloatPoint(10, -4));
    points.add(*new FloatPoint(10, 8));
    other.link.setPoints(points);  // copied: the link had its points
    points.deleteContents();

    OrderedCltn route;
    a.routeLink(route, b, across.link.firstPoint(), across.link.lastPoint(), class_SignalLink);
    ASSERT_FALSE(route.isEmpty());
    EXPECT_FALSE(
        route.last()->isKindOf(class_OrderedCltn));  // the other link is not reachable from these nodes
    route.deleteContents();

    b.addFromLink(other.link);  // now it is
    a.routeLink(route, b, across.link.firstPoint(), across.link.lastPoint(), class_SignalLink);
    OrderedCltn* crossed = CAST(OrderedCltn, route.removeLast());
    ASSERT_EQ(crossed->size(), 1u);
    EXPECT_EQ(crossed->first(), &other.link);
    delete crossed;
    route.deleteContents();
    b.removeFromLink(other.link);
}

}  // namespace
