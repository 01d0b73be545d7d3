// Tests of String and SubString: growth, windows, hashing, comparison, scanning, formatting.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "quill/integer.h"
#include "quill/objalloc.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/substrng.h"
#include "testutil.h"

namespace {

// The text, its size and the size of the buffer that holds it.
std::string buffer(const String& s) {
    return std::string(s.asCharPointer()) + "|" + std::to_string(s.size()) + "|" +
           std::to_string(s.allocated());
}

// The buffer holds the text, its NUL and the room asked for. Assignment
// reallocates only when the buffer is too small; a full buffer grows by
// exactly what is appended, so that char by char it reallocates at every
// step; a concatenation takes the exact sum; reSize never drops text.
TEST(StringTest, BufferSizes) {
    EXPECT_EQ(buffer(String(static_cast<const char*>(0))), "|0|1");
    String extra("abc", 5);
    EXPECT_EQ(buffer(extra), "abc|3|9");
    EXPECT_EQ(extra.capacity(), 8u);
    EXPECT_EQ(buffer(String(extra, 2)), "abc|3|6");
    EXPECT_EQ(buffer(String(4, '*', 3)), "****|4|8");

    String s(10, 'a');
    EXPECT_EQ(buffer(s), "aaaaaaaaaa|10|11");
    EXPECT_EQ(buffer(s += 'b'), "aaaaaaaaaab|11|12");
    EXPECT_EQ(buffer(s += 'c'), "aaaaaaaaaabc|12|13");
    String chunk("abc");
    EXPECT_EQ(buffer(chunk += "de"), "abcde|5|6");
    String roomy("abc", 10);
    roomy += "de";
    EXPECT_EQ(buffer(roomy += ""), "abcde|5|14");

    String a("abcdef");
    EXPECT_EQ(buffer(a = "xy"), "xy|2|7");
    EXPECT_EQ(buffer(a = "1234567"), "1234567|7|8");
    EXPECT_EQ(buffer(a = String("a, b, c, d")), "a, b, c, d|10|11");
    EXPECT_EQ(buffer(a = static_cast<const char*>(0)), "|0|11");

    String b("de");
    EXPECT_EQ(buffer(String("abc", 10) + b), "abcde|5|6");
    EXPECT_EQ(buffer("<" + b), "<de|3|4");
    EXPECT_STREQ((String("abc") + b(1, 1)).asCharPointer(), "abce");

    String r("abcdef");
    EXPECT_EQ(r.reSize(20), 20u);
    EXPECT_EQ(buffer(r), "abcdef|6|21");
    EXPECT_EQ(r.reSize(2), 6u);
    EXPECT_EQ(buffer(r), "abcdef|6|7");
}

TEST(StringTest, NegativeFillCountIsAnAssertion) {
    std::string text = raisedText([] { String s(-1, 'x'); });
    EXPECT_EQ(text.rfind("[ASSERTFLD] Assertion failed \"String::String(int,char,size_t) must be "
                         "called with 'int' >= 0\" in File quill/quillstr.cpp: Line ",
                         0),
              0u)
        << text;
}

TEST(StringTest, NumbersAsText) {
    EXPECT_STREQ(String(Integer(-42)).asCharPointer(), "-42");
    EXPECT_STREQ(String(Float(1.0 / 3)).asCharPointer(), "0.3333333333333333");
    String s;
    s = Float(2.5);
    EXPECT_STREQ(s.asCharPointer(), "2.5");
    s = Integer(12);
    s += ' ';
    s += 4000000000u;
    s += ' ';
    s += -9000000000L;
    s += ' ';
    s += 18000000000000000000UL;
    s += ' ';
    s += 0.25;
    s += ' ';
    s += 2.0 / 3;
    EXPECT_STREQ(s.asCharPointer(), "12 4000000000 -9000000000 18000000000000000000 0.25 0.6666666666666666");
}

TEST(StringTest, AppendingItselfCopiesTheOldText) {
    String s("abc");
    s += s;
    EXPECT_STREQ(s.asCharPointer(), "abcabc");

    String t("hello");
    t += t(1, 3);  // needs a larger buffer: the window lies in the old one
    EXPECT_STREQ(t.asCharPointer(), "helloell");

    String u("hello", 20);
    u += u(3);  // fits: no reallocation
    EXPECT_STREQ(u.asCharPointer(), "hellolo");
    EXPECT_EQ(u.allocated(), 26u);
}

TEST(StringTest, AssignmentFromItself) {
    String s("hello world");
    const char* buffer = s.asCharPointer();
    s = s;
    EXPECT_EQ(s.asCharPointer(), buffer);
    EXPECT_STREQ(s.asCharPointer(), "hello world");

    s = s(6, 5);
    EXPECT_STREQ(s.asCharPointer(), "world");
    s = s.asCharPointer() + 2;
    EXPECT_STREQ(s.asCharPointer(), "rld");
    EXPECT_EQ(s.asCharPointer(), buffer);
}

TEST(StringTest, WindowsAreClipped) {
    struct Case {
        int position, length;
        unsigned start, count;
    };
    const Case cases[] = {
        {1, 3, 1, 3},  {0, 5, 0, 5},  {5, 0, 5, 0},  {100, 5, 5, 0}, {5, 2, 5, 0},
        {-1, 2, 5, 0}, {3, -2, 1, 2}, {2, -5, 0, 2}, {4, 0, 4, 0},
    };
    String s("hello");
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "s(" << c.position << "," << c.length << ")");
        SubString w = s(c.position, c.length);
        EXPECT_EQ(w.position(), c.start);
        EXPECT_EQ(w.length(), c.count);
    }
    EXPECT_EQ(s(9).position(), 5u);
    EXPECT_EQ(s(9).length(), 0u);
}

TEST(StringTest, IndexOrWindowPastTheEndIsAnError) {
    String s("hello");
    EXPECT_EQ(raisedText([&] { s[5]; }), "[INDEXRANGE] Index out of range: String::operator[](5)");
    const String& c = s;
    EXPECT_EQ(raisedText([&] { c.at(99); }), "[INDEXRANGE] Index out of range: String::operator[](99)");
    EXPECT_EQ(raisedText([&] { s(3, 5); }),
              "[SUBSTRERR] SubString position/length out of range: "
              "String::operator()(3,5)for string hello");
    EXPECT_EQ(raisedText([&] { SubString w(s, 6, 1); }),
              "[SUBSTRERR] SubString position/length out of range: "
              "String::operator()(6,1)for string hello");
    SubString end(s, 40, 0);  // an empty window past the end is the end
    EXPECT_EQ(end.position(), 5u);
    EXPECT_EQ(raisedText([] { SubString w; }),
              "[ILLEGALMETHOD] Should not implement method SubString::creator()");
}

TEST(StringTest, AssignmentThroughAWindowMovesTheTail) {
    String s("hello world");
    SubString w = s(0, 5);
    w = "goodbye";
    EXPECT_STREQ(s.asCharPointer(), "goodbye world");
    EXPECT_EQ(w.length(), 7u);
    w = "";
    EXPECT_STREQ(s.asCharPointer(), " world");
    s(6, 0) = String("!");
    EXPECT_STREQ(s.asCharPointer(), " world!");
    s(0, 1) = s(1, 5);  // the source lies in the buffer being changed
    EXPECT_STREQ(s.asCharPointer(), "worldworld!");
}

TEST(StringTest, HashIsTheXorOfLittleEndianWords) {
    struct Case {
        const char* text;
        unsigned hash;
    };
    const Case cases[] = {
        {"", 0},
        {"abc", 44374},       // 0x636261 = 6513249, the tail alone
        {"abcd", 50305},      // 0x64636261, the four-byte path
        {"abcde", 50212},     // 0x64636261 ^ 0x65
        {"abcdefgh", 19619},  // 0x64636261 ^ 0x68676665 = 0x0c040404
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(String(c.text).hash(), c.hash);
    }
    String s("xxabcdxx");
    EXPECT_EQ(s(2, 4).hash(), 50305u);
}

TEST(StringTest, CompareAndEqualityTakeStringsAndWindows) {
    String abc("abc"), abd("abd"), ab("ab"), big("xabcx");
    EXPECT_LT(abc.compare(abd), 0);
    EXPECT_GT(abc.compare(ab), 0);
    EXPECT_EQ(abc.compare(big(1, 3)), 0);
    EXPECT_LT(big(1, 2).compare(big(1, 3)), 0);
    EXPECT_EQ(big(1, 3).compare("abc"), 0);
    EXPECT_TRUE(abc.isEqual(big(1, 3)));
    EXPECT_FALSE(abc.isEqual(big(1, 2)));
    EXPECT_FALSE(String("1").isEqual(Integer(1)));
    Integer one(1);
    EXPECT_EQ(raisedText([&] { abc.compare(one); }),
              "[BADARGS] Invalid argument class: expected SubString OR String, was Integer");
}

TEST(StringTest, ScanReadsLinesOfEveryEnding) {
    std::string longLine(2500, 'q');
    longLine[999] = '1';
    longLine[1000] = '2';
    std::istringstream in("one\rtwo\nthree\r\nfour\n\n" + longLine + "\r\rlast");
    const std::vector<std::string> expected = {"one", "two", "three", "four", "", longLine, "", "last"};
    String s;
    for (const std::string& line : expected) {
        SCOPED_TRACE(line.substr(0, 10));
        s.scanFrom(in);
        EXPECT_EQ(std::string(s.asCharPointer()), line);
        EXPECT_EQ(s.size(), line.size());
    }
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.fail());
    s.scanFrom(in);
    EXPECT_TRUE(in.fail());
    EXPECT_STREQ(s.asCharPointer(), "");
}

TEST(StringTest, ScanIntoAWindow) {
    String s("[.....]");
    std::istringstream in("abc\nabcdefgh\n");
    s(1, 5).scanFrom(in);
    EXPECT_STREQ(s.asCharPointer(), "[abc]");
    EXPECT_EQ(raisedText([&] { s(1, 3).scanFrom(in); }),
              "[SCANERR] SubString scan error: fail on read abcdefgh");
    EXPECT_STREQ(s.asCharPointer(), "[abc]");
}

TEST(StringTest, YesNoAndTruth) {
    String s;
    s.setYesNo(false);
    EXPECT_STREQ(s.asCharPointer(), "NO ");
    EXPECT_TRUE(s.isTrue());  // the blank makes it another word
    s.setYesNo(true);
    EXPECT_STREQ(s.asCharPointer(), "YES");

    const struct {
        const char* text;
        bool truth;
    } cases[] = {{"no", false}, {"No", false}, {"N", false}, {"0", false},
                 {"", true},    {"yes", true}, {"00", true}, {"nope", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(String(c.text).isTrue(), c.truth);
    }
}

TEST(StringTest, CaseStripAndParts) {
    String s("Mixed 42 \xC1z");
    EXPECT_STREQ(s.toUpper().asCharPointer(), "MIXED 42 \xC1Z");
    EXPECT_STREQ(s.toAscii().asCharPointer(), "Mixed 42 Az");

    String padded(" \t x y \n");
    EXPECT_STREQ(padded.stripLeft().asCharPointer(), "x y \n");
    EXPECT_STREQ(padded.stripBoth().asCharPointer(), "x y");
    EXPECT_STREQ(String("--a-b--").stripBoth("-").asCharPointer(), "a-b");
    EXPECT_STREQ(String("   ").stripBoth().asCharPointer(), "");

    EXPECT_STREQ(s.left(3).asCharPointer(), "Mix");
    EXPECT_STREQ(s.right(2).asCharPointer(), "\xC1z");
    EXPECT_STREQ(s.left(50).asCharPointer(), s.asCharPointer());

    EXPECT_EQ(s.index("42"), 6);
    EXPECT_EQ(s.index(""), 0);

    EXPECT_DOUBLE_EQ(String(" 3.5e2xyz").asDouble(), 350.0);
    EXPECT_DOUBLE_EQ(String("xyz").asDouble(), 0.0);
}

TEST(StringTest, ShallowCopyHasItsOwnBuffer) {
    String s("shared?", 4);
    String* copy = CAST(String, s.shallowCopy());
    EXPECT_NE(copy->asCharPointer(), s.asCharPointer());
    (*copy)[0] = 'S';
    EXPECT_STREQ(s.asCharPointer(), "shared?");
    EXPECT_STREQ(copy->asCharPointer(), "Shared?");
    delete copy;
}

// Every path that replaces a buffer frees the old one.
TEST(StringTest, BuffersAreReleased) {
    unsigned long before = bytesInUse();
    {
        String s("abc");
        for (int i = 0; i < 20; ++i) s += 'x';
        s += s;
        s += s(2, 5);
        s = "a longer text than the buffer held before, by far, by far, by far";
        s(0, 2) = s(10, 30);
        String t = s + "tail" + s;
        t.reSize(500);
        t.reSize(0);
        String* copy = CAST(String, t.shallowCopy());
        delete copy;
    }
    EXPECT_EQ(bytesInUse(), before);
}

TEST(StringTest, PrintOnWritesTheTextRaw) {
    std::ostringstream out;
    String("a\"b").printOn(out);
    String big("xyz");
    big(1, 1).printOn(out);
    EXPECT_EQ(out.str(), "a\"by");
}

// The ring of formatText holds ten texts: each stays valid for nine further calls.
TEST(StringTest, FormatStringAndTextRing) {
    String result("old");
    formatString(result, "%s-%04d-%.2f", "id", 7, 1.5);
    EXPECT_STREQ(result.asCharPointer(), "id-0007-1.50");
    std::string wide(12000, 'w');
    formatString(result, "%s", wide.c_str());
    EXPECT_EQ(result.size(), 9999u);

    const char* first = formatText("%lu bytes", 12ul);
    for (int i = 0; i < 9; ++i) formatText("%d", i);
    EXPECT_STREQ(first, "12 bytes");
    EXPECT_EQ(formatText("%#8.08lx", 0xbeefUL), first);
    EXPECT_STREQ(first, "0x0000beef");
}

}  // namespace
