// Tests of the small values: Date, Random, Clock, the plane values and the file-name helpers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "quill/clock.h"
#include "quill/date.h"
#include "quill/filename.h"
#include "quill/point.h"
#include "quill/quillerr.h"
#include "quill/random.h"
#include "testutil.h"

namespace {

TEST(DateTest, CalendarFieldsOfKnownDays) {
    struct Row {
        int day, month, year;
        const char* dayName;
        int dayOfYear;
        const char* longText;
        const char* shortText;
    };
    const Row rows[] = {
        {21, 8, 2006, "Monday", 233, "Monday, 21-Aug-06", "21-Aug-06"},
        {1, 1, 2000, "Saturday", 1, "Saturday,  1-Jan-00", " 1-Jan-00"},
        {29, 2, 2000, "Tuesday", 60, "Tuesday, 29-Feb-00", "29-Feb-00"},
        {31, 12, 2004, "Friday", 366, "Friday, 31-Dec-04", "31-Dec-04"},
        {1, 3, 1900, "Thursday", 60, "Thursday,  1-Mar-00", " 1-Mar-00"},
        {1, 1, 1, "Monday", 1, "Monday,  1-Jan-01", " 1-Jan-01"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.longText);
        Date d(row.day, row.month, row.year);
        EXPECT_EQ(d.dayOfYear(), row.dayOfYear);
        EXPECT_EQ(d.year(), row.year);
        EXPECT_EQ(d.month(), row.month);
        EXPECT_EQ(d.dayOfMonth(), row.day);
        EXPECT_STREQ(d.dayName(), row.dayName);
        EXPECT_EQ(printedText(d), row.longText);
        EXPECT_STREQ(d.shortText(), row.shortText);
        EXPECT_TRUE(d.isEqual(Date(row.day, Date::nameOfMonth(row.month), row.year)));
        EXPECT_TRUE(d.isEqual(Date(row.dayOfYear, row.year)));
    }
}

TEST(DateTest, ErrorsCarryTheirTexts) {
    struct Row {
        const char* label;
        std::function<void()> f;
        const int* code;
        const char* text;
    };
    const Row rows[] = {
        {"day of week 0", [] { Date::nameOfDay(0); }, &BADDAY, "[BADDAY] Invalid day of week: 0"},
        {"unknown day name", [] { Date::dayOfWeek("Funday"); }, &BADDAYNAM,
         "[BADDAYNAM] Invalid day of week name: Funday"},
        {"day name too short", [] { Date::dayOfWeek("Sa"); }, &BADDAYNAM,
         "[BADDAYNAM] Invalid day of week name: Sa"},
        {"day name too long", [] { Date::dayOfWeek("Mondays"); }, &BADDAYNAM,
         "[BADDAYNAM] Invalid day of week name: Mondays"},
        {"unknown month name", [] { Date(1, "Smarch", 2000); }, &BADMONAM,
         "[BADMONAM] Invalid month name: Smarch"},
        {"month 13", [] { Date(1, 13, 2000); }, &BADMONTH, "[BADMONTH] Invalid month: 13"},
        {"month 0 by name look-up", [] { Date::nameOfMonth(0); }, &BADMONTH, "[BADMONTH] Invalid month: 0"},
        {"32 January", [] { Date(32, "Jan", 2000); }, &BADMODAY,
         "[BADMODAY] Invalid day of month: Date::Date(32,Jan,2000)"},
        {"29 February of a common year", [] { Date(29, 2, 1900); }, &BADMODAY,
         "[BADMODAY] Invalid day of month: Date::Date(29,February,1900)"},
        {"day 0", [] { Date(0, 3, 2001); }, &BADMODAY,
         "[BADMODAY] Invalid day of month: Date::Date(0,March,2001)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        int code = -1, severity = 0;
        EXPECT_EQ(raisedText(row.f, &code, &severity), row.text);
        EXPECT_EQ(code, *row.code);
        EXPECT_EQ(severity, SEV_ERROR);
    }
}

TEST(DateTest, NamesMatchByThreeLettersOrMoreWithoutCase) {
    EXPECT_EQ(Date::dayOfWeek("mon"), 1);
    EXPECT_EQ(Date::dayOfWeek("SUNDAY"), 7);
    EXPECT_EQ(Date::dayOfWeek("Wednes"), 3);
    EXPECT_EQ(Date::numberOfMonth("aug"), 8);
    EXPECT_EQ(Date::numberOfMonth("may"), 5);
    for (int w = 1; w <= 7; w++) EXPECT_EQ(Date::dayOfWeek(Date::nameOfDay(w)), w);
    for (int m = 1; m <= 12; m++) EXPECT_EQ(Date::numberOfMonth(Date::nameOfMonth(m)), m);
}

TEST(DateTest, DayNumbersRunAcrossYears) {
    EXPECT_TRUE(Date(0, 2006).isEqual(Date(31, 12, 2005)));
    EXPECT_TRUE(Date(367, 2004).isEqual(Date(1, 1, 2005)));
    EXPECT_TRUE(Date(-364, 2006).isEqual(Date(1, 1, 2005)));
    EXPECT_TRUE((Date(1, 1, 2006) - 1).isEqual(Date(31, 12, 2005)));
    EXPECT_TRUE((Date(28, 2, 2000) + 2).isEqual(Date(1, 3, 2000)));
    EXPECT_EQ(Date(1, 3, 2000) - Date(28, 2, 2000), 2);
    EXPECT_EQ(Date(1, 1, 2001) - Date(1, 1, 2000), 366);
    // The century rules: 2100 is a common year, 2400 a leap year.
    EXPECT_EQ(Date(1, 3, 2100) - Date(28, 2, 2100), 1);
    EXPECT_EQ(Date(1, 3, 2400) - Date(28, 2, 2400), 2);
}

// Every day from 1899 to 2101 goes through its month and back, and the week
// days follow each other.
TEST(DateTest, EveryDayRoundTripsThroughItsMonth) {
    Date d(1, 1, 1899);
    int weekDay = d.weekDay();
    for (Date next = d; next.year() <= 2101; next = next + 1) {
        Date again(next.dayOfMonth(), next.month(), next.year());
        ASSERT_TRUE(again.isEqual(next)) << next.dayOfYear() << " " << next.year();
        ASSERT_EQ(next.weekDay(), weekDay);
        weekDay = weekDay % 7 + 1;
    }
}

TEST(DateTest, OrderEqualityAndHash) {
    Date a(31, 12, 2005), b(1, 1, 2006), c(1, 1, 2006);
    EXPECT_LT(a.compare(b), 0);
    EXPECT_GT(b.compare(a), 0);
    EXPECT_EQ(b.compare(c), 0);
    EXPECT_EQ(b.hash(), c.hash());
    EXPECT_NE(raisedText([&] { a.compare(Point(1, 2)); }), "no error");
}

TEST(DateTest, TodayIsTheLocalDate) {
    std::time_t now = std::time(0);
    std::tm local;
    localtime_r(&now, &local);
    Date today;
    EXPECT_EQ(today.year(), local.tm_year + 1900);
    EXPECT_EQ(today.dayOfYear(), local.tm_yday + 1);
    EXPECT_TRUE(Date::today().isEqual(today));
}

TEST(RandomTest, BoundsAreAsserted) {
    struct Row {
        const char* label;
        std::function<void()> f;
        const char* assertion;
    };
    const Row rows[] = {
        {"linear with min above max", [] { RandomLinear(2.0, 1.0, 5); }, "\"min <= max\""},
        {"linear with zero quantum", [] { RandomLinear(0.0, 1.0, 0.0, 5); }, "\"quantum > 0.0\""},
        {"exponential with negative quantum", [] { RandomExp(1.0, -1.0, 5); }, "\"quantum > 0.0\""},
        {"gauss with zero quantum", [] { RandomGauss(0.0, 1.0, 0.0, 5); }, "\"quantum > 0.0\""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        int code = -1;
        std::string text = raisedText(row.f, &code);
        EXPECT_EQ(code, ASSERTFLD);
        EXPECT_NE(text.find(row.assertion), std::string::npos) << text;
        EXPECT_NE(text.find("quill/random.cpp"), std::string::npos) << text;
    }
    EXPECT_EQ(raisedText([] { RandomLinear(3.0, 3.0, 5); }), "no error");
}

struct Moments {
    double mean, deviation, low, high;
};

Moments sample(Random& r, int n) {
    double sum = 0.0, squares = 0.0, low = HUGE_VAL, high = -HUGE_VAL;
    for (int i = 0; i < n; i++) {
        double x = r.next();
        sum += x;
        squares += x * x;
        low = std::fmin(low, x);
        high = std::fmax(high, x);
    }
    double mean = sum / n;
    return {mean, std::sqrt(squares / n - mean * mean), low, high};
}

TEST(RandomTest, DistributionsHaveTheirRangesAndMoments) {
    const int n = 40000;
    Random uniform(3);
    Moments u = sample(uniform, n);
    EXPECT_GE(u.low, 0.0);
    EXPECT_LT(u.high, 1.0);
    EXPECT_NEAR(u.mean, 0.5, 0.01);

    RandomLinear linear(50, 100, 9676722);
    Moments l = sample(linear, n);
    EXPECT_GE(l.low, 50.0);
    EXPECT_LT(l.high, 100.0);
    EXPECT_NEAR(l.mean, 75.0, 0.5);

    RandomExp exponential(2.0, 11);
    Moments e = sample(exponential, n);
    EXPECT_GE(e.low, 0.0);
    EXPECT_NEAR(e.mean, 2.0, 0.05);
    EXPECT_NEAR(e.deviation, 2.0, 0.1);

    RandomGauss gauss(1.0, 2.0, 17);
    Moments g = sample(gauss, n);
    EXPECT_NEAR(g.mean, 1.0, 0.05);
    EXPECT_NEAR(g.deviation, 2.0, 0.05);
}

TEST(RandomTest, QuantizedGeneratorsAnswerMultiples) {
    RandomLinear linear(1.0, 2.0, 0.25, 7);
    std::set<double> seen;
    for (int i = 0; i < 2000; i++) seen.insert(linear.next());
    EXPECT_EQ(seen, (std::set<double>{1.0, 1.25, 1.5, 1.75, 2.0}));

    RandomGauss gauss(0.0, 3.0, 0.5, 9);
    RandomExp exponential(4.0, 2.0, 9);
    for (int i = 0; i < 1000; i++) {
        double x = gauss.next(), y = exponential.next();
        ASSERT_EQ(std::fmod(x, 0.5), 0.0) << x;
        ASSERT_EQ(std::fmod(y, 2.0), 0.0) << y;
        ASSERT_GE(y, 0.0);
    }
}

TEST(RandomTest, SeedsDecideTheSequence) {
    RandomLinear a(0, 20000, 9231), b(0, 20000, 9231), c(0, 20000, 9232);
    std::vector<double> first, second, other;
    for (int i = 0; i < 20; i++) {
        first.push_back(a());
        second.push_back(b());
        other.push_back(c());
    }
    EXPECT_EQ(first, second);
    EXPECT_NE(first, other);
    a.reseed(9231);
    EXPECT_EQ(a(), first[0]);
}

TEST(ClockTest, CountsMillisecondsFromItsStart) {
    Clock clock;
    EXPECT_GE(clock.elapsed(), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    long waited = clock.elapsed();
    EXPECT_GE(waited, 30);
    EXPECT_LT(waited, 5000);
    clock.reset();
    EXPECT_LT(clock.elapsed(), waited);
}

TEST(PointTest, PrintingEqualityAndOrder) {
    EXPECT_EQ(printedText(Point(3, -4)), "3 @ -4");
    EXPECT_STREQ(FloatPoint(1.5, -2).asCharPointer(), "(1.5 @ -2)");
    EXPECT_EQ(printedText(FloatPoint(0.1, 1e10)), "(0.1 @ 1e+10)");

    EXPECT_TRUE(Point(1, 2).isEqual(Point(1, 2)));
    EXPECT_FALSE(Point(1, 2).isEqual(Point(2, 1)));
    EXPECT_FALSE(Point(1, 2).isEqual(FloatPoint(1, 2)));
    EXPECT_LT(Point(1, 9).compare(Point(2, 0)), 0);
    EXPECT_EQ(FloatPoint(0.0, 1).hash(), FloatPoint(-0.0, 1).hash());
    EXPECT_TRUE(((FloatPoint(0, 0) + FloatPoint(4, 2)) * 0.5) == FloatPoint(2, 1));
    EXPECT_DOUBLE_EQ(FloatPoint(0, 0).distance(FloatPoint(3, 4)), 5.0);
}

TEST(FloatRectTest, NormalizingUnionAndContainment) {
    FloatRect r(4, 5, -2, -3);
    EXPECT_TRUE(r.normalized() == FloatRect(2, 2, 2, 3));
    EXPECT_TRUE(FloatRect(FloatPoint(1, 1), FloatPoint(3, 4)) == FloatRect(1, 1, 2, 3));

    FloatRect both = FloatRect(0, 0, 1, 1).unionWith(FloatRect(2, -1, 1, 1));
    EXPECT_TRUE(both == FloatRect(0, -1, 3, 2)) << printedText(both);
    FloatRect empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(empty.unionWith(FloatRect(1, 1, 2, 2)) == FloatRect(1, 1, 2, 2));
    EXPECT_TRUE(FloatRect(1, 1, 2, 2).unionWith(empty) == FloatRect(1, 1, 2, 2));

    EXPECT_TRUE(r.contains(FloatPoint(2, 5)));
    EXPECT_FALSE(r.contains(FloatPoint(1.9, 3)));
    EXPECT_EQ(printedText(FloatRect(1, 2, 3, 4)), "(1 @ 2) extent (3 @ 4)");
}

TEST(TranslCoordTest, MapsTheWorldOntoTheWindowAndBack) {
    TranslCoord t(FloatRect(10, 20, 400, 300), FloatRect(0, 0, 40, 30));
    EXPECT_TRUE(t.toAbsolute(FloatPoint(0, 0)) == FloatPoint(10, 20));
    EXPECT_TRUE(t.toAbsolute(FloatPoint(40, 30)) == FloatPoint(410, 320));
    EXPECT_TRUE(t.toWorld(FloatPoint(210, 170)) == FloatPoint(20, 15));
    EXPECT_DOUBLE_EQ(t.widthToAbsolute(2.5), 25.0);
    EXPECT_EQ(printedText(t),
              "ABSOLUTE:  (10 @ 20) extent (400 @ 300)\n"
              "   WORLD:  (0 @ 0) extent (40 @ 30)\n"
              "  MATRIX ax:10 bx:10 ay:10 by:20");

    t.setWorld(FloatRect(5, 5, 0, 0));  // no extent: scale 1 keeps it invertible
    EXPECT_TRUE(t.toWorld(t.toAbsolute(FloatPoint(7, 8))) == FloatPoint(7, 8));
    EXPECT_TRUE(TranslCoord().toAbsolute(FloatPoint(3, 4)) == FloatPoint(3, 4));
}

// Runs a test in a fresh temporary directory.
class FileNameTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = std::filesystem::current_path();
        char pattern[] = "/tmp/values_testXXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        std::filesystem::current_path(pattern);
        directory_ = std::filesystem::current_path().string();
    }
    void TearDown() override {
        std::filesystem::current_path(saved_);
        std::filesystem::remove_all(directory_);
    }
    std::string directory_;

private:
    std::filesystem::path saved_;
};

TEST(FileNamePartsTest, DirectoryBaseNameAndExtension) {
    struct Row {
        const char* name;
        const char* directory;
        const char* base;
        const char* fileName;
        const char* extension;
    };
    const Row rows[] = {
        {"/a/b/model.dyn", "/a/b", "model", "model.dyn", ".dyn"},
        {"model.dyn", ".", "model", "model.dyn", ".dyn"},
        {"/model", "/", "model", "model", ""},
        {"dir.d/file", "dir.d", "file", "file", ""},
        {"a/b.tar.gz", "a", "b.tar", "b.tar.gz", ".gz"},
        {".profile", ".", ".profile", ".profile", ""},
        {"x/.profile.bak", "x", ".profile", ".profile.bak", ".bak"},
        {"name.", ".", "name", "name.", "."},
        {"a/b/", "a/b", "", "", ""},
        {"", ".", "", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_STREQ(directoryPart(row.name).asCharPointer(), row.directory);
        EXPECT_STREQ(baseName(row.name).asCharPointer(), row.base);
        EXPECT_STREQ(fileNamePart(row.name).asCharPointer(), row.fileName);
        EXPECT_STREQ(extensionPart(row.name).asCharPointer(), row.extension);
    }
}

TEST_F(FileNameTest, AbsolutePathResolvesInTheText) {
    struct Row {
        const char* name;
        std::string path;
    };
    const Row rows[] = {
        {"f", directory_ + "/f"},
        {"./a/../b", directory_ + "/b"},
        {"", directory_},
        {"/x//y/./z/..", "/x/y"},
        {"/..", "/"},
        {"/", "/"},
        {"/a/b/", "/a/b"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(absolutePath(row.name).asCharPointer(), row.path);
    }
    EXPECT_EQ(directoryPart(absolutePath("prog").asCharPointer()).asCharPointer(), directory_);
}

TEST_F(FileNameTest, FileCopyCopiesEveryByte) {
    std::string data;
    for (int i = 0; i < 20000; i++) data += char(i * 7 % 256);
    std::ofstream("from.bin", std::ios::binary) << data;
    std::ofstream("to.bin") << "longer old contents that must go away" << data;
    fileCopy("from.bin", "to.bin");
    EXPECT_EQ(fileText("to.bin"), data);

    std::ofstream("empty.txt");
    fileCopy("empty.txt", "copy.txt");
    EXPECT_EQ(fileText("copy.txt"), "");
}

TEST_F(FileNameTest, FileCopyFailuresName) {
    std::ofstream("from.txt") << "text\n";
    int code = -1;
    EXPECT_EQ(raisedText([] { fileCopy("missing.txt", "to.txt"); }, &code),
              "[CANNOT_OPEN] cannot open file missing.txt in fileCopy function");
    EXPECT_EQ(code, GENERICERR);
    EXPECT_FALSE(std::filesystem::exists("to.txt"));
    EXPECT_EQ(raisedText([] { fileCopy("from.txt", "no/such/dir/to.txt"); }),
              "[CANNOT_OPEN] cannot open file no/such/dir/to.txt in fileCopy function");
    if (std::filesystem::exists("/dev/full")) {
        EXPECT_EQ(raisedText([] { fileCopy("from.txt", "/dev/full"); }, &code),
                  "[FILECOPY_ERROR] error coping file from.txt on file /dev/full");
        EXPECT_EQ(code, GENERICERR);
    }
}

}  // namespace
