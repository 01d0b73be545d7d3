// Date: calendar arithmetic on day serials, names of days and months, printing and the Date errors.
#include "quill/date.h"

#include <cctype>
#include <cstring>
#include <ctime>
#include <istream>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"

int BADDAY = 0, BADDAYNAM = 0, BADMODAY = 0, BADMONAM = 0, BADMONTH = 0;

static void initDate(Class*) {
    BADDAY = newQUILLerror("[BADDAY] Invalid day of week: %d");
    BADDAYNAM = newQUILLerror("[BADDAYNAM] Invalid day of week name: %s");
    BADMODAY = newQUILLerror("[BADMODAY] Invalid day of month: Date::Date(%d,%s,%d)");
    BADMONAM = newQUILLerror("[BADMONAM] Invalid month name: %s");
    BADMONTH = newQUILLerror("[BADMONTH] Invalid month: %d");
}

DEFINE_CLASS(Date, Object, 1, initDate)

namespace {

const char* const DAY_NAMES[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                 "Friday", "Saturday", "Sunday"};
const char* const MONTH_NAMES[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
const int MONTH_DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
const size_t SHORTEST_NAME = 3;

long floorDiv(long a, long b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Days of the years before year, counted from the start of year 1.
long daysBefore(int year) {
    long y = long(year) - 1;
    return 365 * y + floorDiv(y, 4) - floorDiv(y, 100) + floorDiv(y, 400);
}

// Index of name in names, matched without case by a prefix of at least three
// letters; -1 when none.
int findName(const char* name, const char* const names[], int count) {
    size_t length = name ? std::strlen(name) : 0;
    if (length < SHORTEST_NAME) return -1;
    for (int i = 0; i < count; i++) {
        if (length > std::strlen(names[i])) continue;
        bool same = true;
        for (size_t k = 0; k < length && same; k++)
            same = std::tolower(static_cast<unsigned char>(name[k])) ==
                   std::tolower(static_cast<unsigned char>(names[i][k]));
        if (same) return i;
    }
    return -1;
}

// Days of the year before the first of month.
int daysBeforeMonth(int month, int year) {
    int days = 0;
    for (int m = 1; m < month; m++) days += Date::daysInMonth(m, year);
    return days;
}

}  // namespace

Date::Date() : day(1), yr(1) {
    Date now = today();
    day = now.day;
    yr = now.yr;
}

Date::Date(int dayOfYear, int year) : day(1), yr(year) {
    Date d = fromSerial(daysBefore(year) + dayOfYear);
    day = d.day;
    yr = d.yr;
}

Date::Date(int dayOfMonth, const char* monthName, int year) : day(1), yr(year) {
    int m = numberOfMonth(monthName);
    if (dayOfMonth < 1 || dayOfMonth > daysInMonth(m, year))
        setError(BADMODAY, SEV_ERROR, dayOfMonth, monthName, year);
    day = daysBeforeMonth(m, year) + dayOfMonth;
}

Date::Date(int dayOfMonth, int month, int year) : day(1), yr(year) {
    if (dayOfMonth < 1 || dayOfMonth > daysInMonth(month, year))
        setError(BADMODAY, SEV_ERROR, dayOfMonth, nameOfMonth(month), year);
    day = daysBeforeMonth(month, year) + dayOfMonth;
}

Date Date::today() {
    std::time_t now = std::time(0);
    std::tm local;
    localtime_r(&now, &local);
    return Date(local.tm_yday + 1, local.tm_year + 1900);
}

const char* Date::nameOfDay(int weekDay) {
    if (weekDay < 1 || weekDay > 7) setError(BADDAY, SEV_ERROR, weekDay);
    return DAY_NAMES[weekDay - 1];
}

int Date::dayOfWeek(const char* dayName) {
    int i = findName(dayName, DAY_NAMES, 7);
    if (i < 0) setError(BADDAYNAM, SEV_ERROR, dayName ? dayName : "");
    return i + 1;
}

const char* Date::nameOfMonth(int month) {
    if (month < 1 || month > 12) setError(BADMONTH, SEV_ERROR, month);
    return MONTH_NAMES[month - 1];
}

int Date::numberOfMonth(const char* monthName) {
    int i = findName(monthName, MONTH_NAMES, 12);
    if (i < 0) setError(BADMONAM, SEV_ERROR, monthName ? monthName : "");
    return i + 1;
}

bool Date::leapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int Date::daysInYear(int year) { return leapYear(year) ? 366 : 365; }

int Date::daysInMonth(int month, int year) {
    if (month < 1 || month > 12) setError(BADMONTH, SEV_ERROR, month);
    return month == 2 && leapYear(year) ? 29 : MONTH_DAYS[month - 1];
}

int Date::month() const {
    int m = 1;
    int left = day;
    while (m < 12 && left > daysInMonth(m, yr)) left -= daysInMonth(m++, yr);
    return m;
}

int Date::dayOfMonth() const { return day - daysBeforeMonth(month(), yr); }

// Day 1 of year 1 was a Monday.
int Date::weekDay() const {
    long n = (serial() - 1) % 7;
    return int(n < 0 ? n + 7 : n) + 1;
}

long Date::serial() const { return daysBefore(yr) + day; }

Date Date::fromSerial(long n) {
    // A first guess from the mean year, then corrected by whole years.
    long guess = floorDiv(n * 400, 146097) + 1;
    int year = int(guess);
    while (daysBefore(year) >= n) year--;
    while (daysBefore(year + 1) < n) year++;
    Date d(1, 1, year);
    d.day = int(n - daysBefore(year));
    return d;
}

Date Date::operator+(int days) const { return fromSerial(serial() + days); }

int Date::operator-(const Date& d) const { return int(serial() - d.serial()); }

bool Date::isEqual(const Object& ob) const {
    if (!ob.isSpecies(class_Date)) return false;
    const Date& d = static_cast<const Date&>(ob);
    return day == d.day && yr == d.yr;
}

int Date::compare(const Object& ob) const {
    assertArgSpecies(ob, class_Date, "compare");
    long a = serial(), b = static_cast<const Date&>(ob).serial();
    return a < b ? -1 : a > b ? 1 : 0;
}

unsigned Date::hash() const { return unsigned(serial()); }

void Date::printOn(std::ostream& os) const {
    os << formatText("%s, %2d-%.3s-%.2d", dayName(), dayOfMonth(), monthName(), (yr % 100 + 100) % 100);
}

const char* Date::shortText() const {
    return formatText("%2d-%.3s-%.2d", dayOfMonth(), monthName(), (yr % 100 + 100) % 100);
}

// Stream form: day of the year and year, each followed by one blank in the text form.

Date::Date(std::istream& is, Object* where) : Object(is, where), day(1), yr(1) { is >> day >> yr; }
Date::Date(BinIstream& is, Object* where) : Object(is, where), day(1), yr(1) { is >> day >> yr; }

void Date::storer(std::ostream& os) const {
    Object::storer(os);
    os << day << ' ' << yr << ' ';
}

void Date::storer(BinOstream& os) const {
    Object::storer(os);
    os << day << yr;
}
