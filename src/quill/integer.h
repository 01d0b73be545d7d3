// Integer and Float, the small number objects that collections and strings hold.
#ifndef QUILL_INTEGER_H
#define QUILL_INTEGER_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Integer;
extern Class class_Float;

class Integer : public Object {
    DECLARE_MEMBERS(Integer)
public:
    Integer(int v = 0) : val(v) {}
    Integer(std::istream& is, Object* where);
    Integer(BinIstream& is, Object* where);
    int value() const { return val; }
    int value(int v) {
        int old = val;
        val = v;
        return old;
    }

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    const char* asCharPointer() const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    int val;
};

class Float : public Object {
    DECLARE_MEMBERS(Float)
public:
    Float(double v = 0.0) : val(v) {}
    Float(std::istream& is, Object* where);
    Float(BinIstream& is, Object* where);
    double value() const { return val; }
    double value(double v) {
        double old = val;
        val = v;
        return old;
    }

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    const char* asCharPointer() const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double val;
};

#endif
