// Date, a calendar day held as its day of the year and its year.
#ifndef QUILL_DATE_H
#define QUILL_DATE_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Date;

// Error codes that Date's class initor adds to the table.
extern int BADDAY, BADDAYNAM, BADMODAY, BADMONAM, BADMONTH;

// A day of the Gregorian calendar, extended backwards. Days of the week run
// from 1 (Monday) to 7 (Sunday), months from 1 (January) to 12. Names are
// matched without regard to case, by three letters or more of the full name.
class Date : public Object {
    DECLARE_MEMBERS(Date)
public:
    Date();  // today
    // Any day number is accepted: 0 is the last day of the year before,
    // and days past the end run into the following years.
    Date(int dayOfYear, int year);
    // Raise BADMONAM, or BADMONTH, or BADMODAY when the day isn't in the month.
    Date(int dayOfMonth, const char* monthName, int year);
    Date(int dayOfMonth, int month, int year);
    // Stream form: day of the year, then year.
    Date(std::istream& is, Object* where);
    Date(BinIstream& is, Object* where);

    static Date today();

    static const char* nameOfDay(int weekDay);        // BADDAY unless 1..7
    static int dayOfWeek(const char* dayName);        // BADDAYNAM when unknown
    static const char* nameOfMonth(int month);        // BADMONTH unless 1..12
    static int numberOfMonth(const char* monthName);  // BADMONAM when unknown
    static bool leapYear(int year);
    static int daysInYear(int year);
    static int daysInMonth(int month, int year);  // BADMONTH unless 1..12

    int dayOfYear() const { return day; }
    int year() const { return yr; }
    int month() const;
    int dayOfMonth() const;
    const char* monthName() const { return nameOfMonth(month()); }
    int weekDay() const;
    const char* dayName() const { return nameOfDay(weekDay()); }
    bool leap() const { return leapYear(yr); }

    Date operator+(int days) const;
    Date operator-(int days) const { return *this + -days; }
    int operator-(const Date& d) const;  // days from d to this

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    // "Monday, 21-Aug-06"
    void printOn(std::ostream& os) const override;
    // "21-Aug-06"
    const char* shortText() const;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    long serial() const;  // days from the start of year 1; that day is 1
    static Date fromSerial(long n);

    int day;  // day of the year, from 1
    int yr;
};

#endif
