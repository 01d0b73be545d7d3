// Multiplexing texts read against 6 source and 5 destination indices, distinct to catch swapped limits.
#include "control/muxparse.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

const char* const Format = "inconsistent format to select I/O variables";
const char* const Terminal = "Unconsistent format, a terminal input index must be assigned";

Multiplexing parse(const char* text, MuxMode mode = MuxMode::Ranges) {
    return parseMultiplexing(text, MuxWording::Link, mode, 6, 5);
}

std::vector<int> indices(const Multiplexing& m) {
    return {m.destFirst, m.destLast, m.sourceFirst, m.sourceLast};
}

struct Accepted {
    const char* text;
    int destFirst, destLast, sourceFirst, sourceLast;
};

TEST(MuxParse, RangesAsWrittenAndOpenOnesClosed) {
    const Accepted cases[] = {
        {":,1:3", 1, 3, 1, 3},            // the open destination takes the source's width
        {"2,5", 2, 2, 5, 5},              // single indices
        {" 1 : 2 , 3 : 4 ", 1, 2, 3, 4},  // blanks around the pieces
        {"2:3,", 2, 3, 1, 2},             // the open source takes the destination's width
        {":,", 1, 5, 1, 6},               // both open: each to its own limit
        {"3:5,1:2", 3, 5, 1, 2},          // a last written equal to the limit is not open
    };
    for (const Accepted& c : cases) {
        Multiplexing m = parse(c.text);
        EXPECT_EQ(m.message, "") << c.text;
        EXPECT_EQ(indices(m), (std::vector<int>{c.destFirst, c.destLast, c.sourceFirst, c.sourceLast}))
            << c.text;
    }
}

TEST(MuxParse, RefusalsCarryTheirMessageAndNoIndex) {
    const std::pair<const char*, std::string> cases[] = {
        {"1:2", Terminal},
        {"1,2:", Terminal},
        {"6,1", "6 must not be greater than the number of outputs 5"},
        {"1:2,3:7", "7 must not be greater than the number of inputs 6"},
        {":,1:6", "6 must not be greater than the number of outputs 5"},  // closed past the limit
        {"2", Format},  // a single number is a free response only
        {":", Format},
        {":3,1", Format},
        {",1", Format},
        {"", Format},
        {"0,1", Format},
        {"a,1", Format},
        {"3:2,1", Format},
        {"1,3:2", Format},
        {"1:2:3,4", Format},
        {"2,5,7", Format},
    };
    for (const auto& c : cases) {
        Multiplexing m = parse(c.first);
        EXPECT_EQ(m.message, c.second) << c.first;
        EXPECT_FALSE(m.ok()) << c.first;
        EXPECT_EQ(indices(m), std::vector<int>(4, 0)) << c.first;
    }
}

TEST(MuxParse, ThePlotWordsTheFormatMessageItsOwnWay) {
    EXPECT_EQ(parseMultiplexing("x", MuxWording::Plot, MuxMode::Ranges, 1, 1).message,
              "inconsistent format to choose variables");
}

TEST(MuxParse, FreeResponseEndsAfterTheDestinationWithSourceOne) {
    EXPECT_EQ(indices(parse("2", MuxMode::FreeResponse)), (std::vector<int>{2, 2, 1, 1}));
    EXPECT_EQ(indices(parse("1:3", MuxMode::FreeResponse)), (std::vector<int>{1, 3, 1, 1}));
    EXPECT_EQ(parse("2,4", MuxMode::FreeResponse).sourceFirst, 4);
    EXPECT_EQ(parse("9", MuxMode::FreeResponse).message,
              "9 must not be greater than the number of outputs 5");
}

}  // namespace
