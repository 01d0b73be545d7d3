// The error table, setError, the report sinks and the guarded allocator.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

#include "quill/all.h"
#include "testutil.h"

namespace {

TEST(ErrorTableTest, SetErrorFormatsAndThrows) {
    int code = 0, severity = 0;
    EXPECT_EQ(
        raisedText([] { setError(INDEXRANGE, SEV_ERROR, "String", "operator[]", 12); }, &code, &severity),
        "[INDEXRANGE] Index out of range: String::operator[](12)");
    EXPECT_EQ(code, INDEXRANGE);
    EXPECT_EQ(severity, SEV_ERROR);
    EXPECT_EQ(raisedText([] { setError(GENERICERR, SEV_ERROR, "WORD", "a", "b", "c"); }), "[WORD] abc");
    EXPECT_EQ(raisedText([] { setError(9999, SEV_ERROR); }, &code),
              "[BADERRNUM] Invalid error code: ExceptionAction(9999)");
    EXPECT_EQ(code, BADERRNUM);
    EXPECT_EQ(raisedText([] { setError(-1, SEV_ERROR); }),
              "[BADERRNUM] Invalid error code: ExceptionAction(-1)");
    EXPECT_STREQ(errorText(lastErrorCodeInUse() + 1), "UNKNOW ERROR");
}

TEST(ErrorTableTest, AssertionNamesExpressionFileAndLine) {
    int line = __LINE__ + 1;
    std::string text = raisedText([] { QASSERT(1 + 1 == 3); });
    EXPECT_EQ(text, "[ASSERTFLD] Assertion failed \"1 + 1 == 3\" in File quill/error_test.cpp: Line " +
                        std::to_string(line));
}

TEST(ErrorTableTest, NewErrorsGrowTheTable) {
    static std::string texts[150];
    int first = -1;
    for (int i = 0; i < 150; ++i) {
        texts[i] = "[GROWN" + std::to_string(i) + "] grown %s";
        int code = newQUILLerror(texts[i].c_str());
        if (i == 0) first = code;
        EXPECT_EQ(code, first + i);
    }
    EXPECT_EQ(raisedText([&] { setError(first + 149, SEV_ERROR, "x"); }), "[GROWN149] grown x");
    EXPECT_EQ(lastErrorCodeInUse(), first + 149);
}

TEST(ErrorTableTest, TarnExceptionEqualityAndPrinting) {
    TarnException a(5, "first", SEV_ERROR), b(5, "second", SEV_WARNING), c(6, "first", SEV_ERROR);
    EXPECT_TRUE(a.isEqual(b));
    EXPECT_FALSE(a.isEqual(c));
    std::ostringstream os;
    a.printOn(os);
    EXPECT_EQ(os.str(), "TarnException 5first");
    errorInProgress = 1;
    { TarnException gone(1, "", 1); }
    EXPECT_EQ(errorInProgress, 0);
}

TEST(ReportTest, SeverityWords) {
    const struct {
        int severity;
        const char* word;
    } rows[] = {
        {-4, "FATAL"},
        {-3, "ERROR"},
        {1, "ERROR"},
        {0, "SUCCESS"},
        {2, "UNKNOWN SEVERITY CODE"},
        {-5, "UNKNOWN SEVERITY CODE"},
    };
    for (const auto& row : rows) EXPECT_STREQ(severityWord(row.severity), row.word) << row.severity;
}

int hookCalls = 0;
int handlingHook(int, const char*) { return ++hookCalls; }
int decliningHook(int, const char*) {
    ++hookCalls;
    return 0;
}

TEST(ReportTest, StreamsAndHook) {
    std::ostringstream one, two;
    setReportStreams(&one, &two);
    reportError(SEV_WARNING, "disk almost full");
    EXPECT_EQ(one.str(), "\nWARNING disk almost full\n");
    EXPECT_EQ(two.str(), one.str());

    errorReportHook = handlingHook;
    reportError(SEV_INFO, "shown in a box");
    errorReportHook = decliningHook;
    reportError(SEV_INFO, "passed on");
    errorReportHook = 0;
    setReportStreams(0, &std::cerr);
    EXPECT_EQ(hookCalls, 2);
    EXPECT_EQ(two.str(), "\nWARNING disk almost full\n\nINFO passed on\n");
}

TEST(ReportTest, TooLongAMessageStopsTheProcess) {
    std::string huge(20000, 'x');
    EXPECT_EXIT(setError(GENERICERR, SEV_ERROR, "LONG", huge.c_str(), "", ""), ::testing::ExitedWithCode(0),
                "QUILL_NOCONTINUE");
}

// The allocator

TEST(AllocatorTest, AccountingAndSizes) {
    unsigned long before = bytesInUse();
    void* p = objectAlloc(100);
    EXPECT_EQ(objectSize(p), 100u);
    EXPECT_GT(bytesInUse(), before + 100);
    memset(p, 7, 100);
    p = objectRealloc(p, 5000);
    EXPECT_EQ(objectSize(p), 5000u);
    EXPECT_EQ(static_cast<unsigned char*>(p)[99], 7);
    checkPointer(p, "check", 5000);
    EXPECT_EQ(raisedText([&] { checkPointer(p, "check", 5001); }).find("[BADPTR] check(0x"), 0u);
    objectFree(p);
    EXPECT_EQ(bytesInUse(), before);

    char* zeroed = static_cast<char*>(objectCalloc(10, 3));
    for (int i = 0; i < 30; ++i) EXPECT_EQ(zeroed[i], 0);
    objectFree(zeroed);
}

TEST(AllocatorTest, ReportsBadFrees) {
    EXPECT_EQ(raisedText([] { objectFree(0); }), "[BADPTR] myfree(failed: NULL pointer): ");

    char* overrun = static_cast<char*>(objectAlloc(24));
    overrun[24] = 1;
    std::string text = raisedText([&] { objectFree(overrun); });
    EXPECT_NE(text.find("): failed: corrupted memory"), std::string::npos) << text;
    overrun[24] = 0;
    memcpy(overrun + 24, overrun - 4, 4);  // mend the guard so that the block can go
    objectFree(overrun);

#if !defined(__SANITIZE_ADDRESS__)
    void* twice = objectAlloc(40);
    objectFree(twice);
    text = raisedText([&] { objectFree(twice); });
    EXPECT_NE(text.find("): failed: deallocated pointer"), std::string::npos) << text;

    Integer onStack;
    text = raisedText([&] { objectFree(&onStack); });
    EXPECT_NE(text.find("failed: corrupted memory"), std::string::npos) << text;
#endif
}

// Sizes that overflowed their arithmetic gave small blocks written far beyond
// their end; sizes beyond the memory were touched until the system killed us.
TEST(AllocatorTest, RefusesOverflowsAndSizesBeyondTheLimit) {
    unsigned long before = bytesInUse();
    size_t limit = allocationLimit();
    EXPECT_GT(limit, 0u);
    EXPECT_EQ(raisedText([] { objectCalloc(SIZE_MAX / 2, 4); }).find("[ALLOCFAIL] Not enough memory"), 0u);
    EXPECT_EQ(raisedText([] { objectAlloc(size_t(1) << 33); }).find("[ALLOCFAIL]"), 0u);
    setAllocationLimit(1000);
    EXPECT_EQ(raisedText([] { objectAlloc(1001); }),
              "[ALLOCFAIL] Not enough memory -- NEW failed: requested 1001 bytes");
    void* p = objectAlloc(1000);
    EXPECT_EQ(raisedText([&] { p = objectRealloc(p, 2000); }).find("[ALLOCFAIL]"), 0u);
    EXPECT_EQ(raisedText([] { String(2000, 'x'); }).find("[ALLOCFAIL]"), 0u);
    {
        String grown("abc");
        std::string more(1500, 'y');
        EXPECT_EQ(raisedText([&] { grown += more.c_str(); }).find("[ALLOCFAIL]"), 0u);
        EXPECT_STREQ(grown.asCharPointer(), "abc");
    }
    setAllocationLimit(0);
    EXPECT_EQ(allocationLimit(), limit);
    objectFree(p);  // the refused realloc left the block whole
    EXPECT_EQ(bytesInUse(), before);
#if !defined(__SANITIZE_ADDRESS__)           // the sanitizer stops the process at such a request
    volatile size_t huge = size_t(1) << 62;  // kept, so that the request is really made
    EXPECT_EQ(raisedText([&] {
                  char* volatile block = new char[huge];
                  delete[] block;
              }),
              "[BADPTR] operator new(out of memory): ");
#endif
}

TEST(AllocatorTest, PointerTracking) {
    setTrackPointers(true);
    void* a = objectAlloc(8);
    Integer* i = new Integer(3);
    testing::internal::CaptureStdout();
    listTrackedPointers();
    std::string listing = testing::internal::GetCapturedStdout();
    EXPECT_NE(listing.find("Object 1 Integer"), std::string::npos) << listing;
    objectFree(a);
    delete i;
    setTrackPointers(false);

    testing::internal::CaptureStderr();
    setTrackPointers(true);
    std::vector<void*> blocks;
    for (int n = 0; n <= 20000; ++n) blocks.push_back(objectAlloc(1));
    EXPECT_TRUE(pointerOverflow());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Allocated Pointer Buffer overflow\n");
    for (void* b : blocks) objectFree(b);
    setTrackPointers(false);
}

}  // namespace
