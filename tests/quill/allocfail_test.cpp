// Reads in which one allocation fails: each ends with the object read or with
// the allocator's error, whichever allocation it was.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "fuzz/fuzzsupport.h"
#include "iotest.h"
#include "quill/all.h"
#include "quill/objio.h"

namespace {

// Reads the stream once for every allocation the read makes, that allocation
// failing; a failure ends in the allocator's error, a read untouched by one
// gives back the text of a normal read, and frees all it made when deleted.
void readFailingEachAllocation(const std::string& stream, bool binary) {
    String error("", 200);  // room for the message, so that only the read allocates
    auto read = [&]() {
        std::istringstream is(stream);
        BinIstream bis(is);
        return binary ? readFromChecked(error, bis) : readFromString(error, stream.data(), stream.size());
    };
    Object* normal = read();
    ASSERT_NE(normal, nullptr) << error.asCharPointer();
    std::string expected = textOf(*normal);
    deepDelete(normal);
    unsigned long before = 0;
    Object* ob = 0;
    int failures = failEachAllocation(
        [&] {
            before = bytesInUse();
            ob = read();
        },
        [&](bool failed) {
            if (failed) {
                EXPECT_EQ(ob, nullptr);
                EXPECT_EQ(std::string(error.asCharPointer()).rfind("[BADPTR]", 0), 0u)
                    << error.asCharPointer();
                return;
            }
            ASSERT_NE(ob, nullptr) << error.asCharPointer();
            EXPECT_EQ(textOf(*ob), expected);
            deepDelete(ob);
            EXPECT_EQ(bytesInUse(), before);
        });
    EXPECT_GT(failures, 2);
}

TEST(AllocationFailureTest, everyAllocationOfAReadMayFail) {
    OrderedCltn* numbers = new OrderedCltn;
    for (int i = 0; i < 40; ++i) numbers->add(*new Float(i / 3.0));
    for (Object* ob : {richGraph(), static_cast<Object*>(numbers)}) {
        readFailingEachAllocation(textOf(*ob), false);
        readFailingEachAllocation(binaryOf(*ob), true);
        deepDelete(ob);
    }
}

}  // namespace
