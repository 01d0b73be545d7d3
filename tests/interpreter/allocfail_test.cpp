// Parses in which one allocation fails: each ends with the program parsed or
// with the allocator's error as the parse message, and either way frees all
// it made.
#include <gtest/gtest.h>

#include <string>

#include "fuzz/fuzzsupport.h"
#include "interpreter/codepars.h"
#include "quill/all.h"

namespace {

// The parse message, or the message of an error raised outside the parse.
std::string parsed(const std::string& text) {
    try {
        CodeParser parser;
        return parser.parseText(text.c_str(), 1).asCharPointer();
    } catch (TarnException* e) {
        std::string message = e->what();
        delete e;
        return message;
    }
}

TEST(AllocationFailureTest, everyAllocationOfAParseMayFail) {
    for (const char* file : {TARN_EXAMPLES "/hello.cxx", TARN_PROGRAMS "/structs.cxx"}) {
        SCOPED_TRACE(file);
        std::string source = readFile(file);
        ASSERT_EQ(parsed(source), "");  // and the tables made on first use
        unsigned long before = 0;
        std::string message;
        int failures = failEachAllocation(
            [&] {
                before = bytesInUse();
                message = parsed(source);
            },
            [&](bool failed) {
                if (failed)
                    EXPECT_EQ(message.rfind("[BADPTR]", 0), 0u) << message;
                else
                    EXPECT_EQ(message, "");
                EXPECT_EQ(bytesInUse(), before) << message;
            });
        EXPECT_GT(failures, 100);
    }
}

}  // namespace
