// Vector and VectorCursor: arithmetic, orientation rules, failures, sub-vectors, printing and streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "quill/all.h"

namespace {

using ObjectPtr = std::unique_ptr<Object>;

Vector column(std::vector<double> values) { return Vector(values.data(), unsigned(values.size())); }

Vector row(std::vector<double> values) {
    Vector v = column(values);
    v.setAsRow();
    return v;
}

void expectVector(std::vector<double> expected, const Vector& actual) {
    ASSERT_EQ(expected.size(), actual.size());
    for (unsigned i = 0; i < actual.size(); ++i) EXPECT_EQ(expected[i], actual[i]) << "at " << i;
}

std::string printed(const Vector& v) {
    std::ostringstream os;
    os << v;
    return os.str();
}

const std::string SIZE = "[DIFFVECTSIZE] Different vector size in Vector::";
const std::string RANGE = "[INDEXRANGE] Index out of range: Vector::";

struct ErrorCase {
    const char* name;
    std::function<void()> action;
    std::string message;
};

void expectErrors(const std::vector<ErrorCase>& cases) {
    for (const ErrorCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.message, raisedText(c.action));
    }
}

TEST(VectorTest, Construction) {
    ObjectPtr created(class_Vector.create());
    expectVector({0, 0, 0}, *CAST(Vector, created.get()));
    EXPECT_TRUE(Vector().isColumn());
    EXPECT_EQ(0.0, Vector(0u).norm());
    EXPECT_TRUE(Vector(0u).isEqual(Vector(0u)));
    EXPECT_FALSE(Vector(row({1, 2})).isColumn());
}

TEST(VectorTest, Arithmetic) {
    Vector a = column({1, 2, 3}), b = column({4, 5, 6});
    expectVector({5, 7, 9}, a + b);
    expectVector({-3, -3, -3}, a - b);
    expectVector({2, 4, 6}, 2.0 * a);
    EXPECT_EQ(32.0, a.transpose() * b);
    EXPECT_EQ(6.0, a.sum());
    EXPECT_EQ(std::sqrt(14.0), a.norm());
    EXPECT_EQ(std::sqrt(27.0), a.dist(b));

    Vector c(a);
    c += b;
    c -= a;
    c += 1.0;
    c -= 6.0;
    c *= -1.0;
    expectVector({1, 0, -1}, c);

    // Orientation: a sum keeps the left one, unary minus gives a column.
    Vector r = a.transpose();
    EXPECT_FALSE((r + b).isColumn());
    EXPECT_TRUE((b + r).isColumn());
    EXPECT_TRUE((-r).isColumn());
    EXPECT_FALSE((r * 2.0).isColumn());
    EXPECT_FALSE(r.subVector(1).isColumn());
}

TEST(VectorTest, CyclicCrossProduct) {
    expectVector({0, 0, 1}, column({1, 0, 0}) ^ column({0, 1, 0}));
    expectVector({-3, 6, -3}, column({1, 2, 3}) ^ column({4, 5, 6}));
    expectVector({-8, 8, 8, -8}, column({1, 2, 3, 4}) ^ column({5, 6, 7, 8}));
    expectVector({0, 0}, column({1, 2}) ^ column({3, 4}));
    expectVector({}, Vector(0u) ^ Vector(0u));
}

TEST(VectorTest, ProductWithMatrix) {
    Matrix m(2, 2);
    m << 1, 2, 3, 4;
    expectVector({7, 10}, row({1, 2}) * m);
    Matrix tall(3, 2);
    tall << 1, 2, 3, 4, 5, 6;
    expectVector({22, 28, 0}, row({1, 2, 3}) * tall);  // the size of the left vector
    Matrix wide(2, 3);
    Vector r2 = row({1, 2}), c2 = column({1, 2}), r3 = row({1, 2, 3});
    expectErrors({
        {"more columns than rows", [&] { r2* wide; }, RANGE + "operator[](2)"},
        {"column", [&] { c2* m; }, SIZE + "operator*, 2 2"},
        {"size", [&] { r3* m; }, SIZE + "operator*, 3 2"},
    });
}

TEST(VectorTest, Failures) {
    Vector a = column({1, 2, 3}), b = column({1, 2}), r = row({1, 2, 3});
    const Vector& constant = a;
    expectErrors({
        {"[] past the end", [&] { a[3]; }, RANGE + "operator[](3)"},
        {"[] negative", [&] { a[-1]; }, RANGE + "operator[](-1)"},
        {"const []", [&] { constant[3u]; }, RANGE + "operator[](3)"},
        {"[] of nothing", [&] { Vector(0u)[0]; }, RANGE + "operator[](0)"},
        {"+", [&] { a + b; }, SIZE + "operator+, 3 2"},
        {"-", [&] { a - b; }, SIZE + "operator-, 3 2"},
        {"+=", [&] { a += b; }, SIZE + "operator+=, 3 2"},
        {"-=", [&] { a -= b; }, SIZE + "operator-=, 3 2"},
        {"^", [&] { a ^ b; }, SIZE + "operator^, 3 2"},
        {"dist", [&] { a.dist(b); }, SIZE + "dist, 3 2"},
        {"max", [&] { a.max(b); }, SIZE + "max, 3 2"},
        {"min", [&] { a.min(b); }, SIZE + "min, 3 2"},
        {"set", [&] { a.set(b); }, SIZE + "set, 3 2"},
        {"compare", [&] { a.compare(b); }, SIZE + "compare, 3 2"},
        {"column * column", [&] { a* a; }, SIZE + "operator*, 3 3"},
        {"row * row", [&] { r* r; }, SIZE + "operator*, 3 3"},
        {"column * row", [&] { a* r; }, SIZE + "operator*, 3 3"},
        {"row * short column", [&] { r* b; }, SIZE + "operator*, 3 2"},
    });
    expectVector({1, 2, 3}, a);
    EXPECT_NE("no error", raisedText([&] { a.compare(Matrix()); }));
}

TEST(VectorTest, SubVectors) {
    Vector v = column({1, 2, 3, 4, 5});
    expectVector({3, 4, 5}, v.subVector(2));
    expectVector({4, 5}, v.subVector(-2));
    expectVector({2, 3}, v.subVector(1, 2));
    expectVector({2, 3, 4}, v.subVector(1, -1));

    Vector w(v);
    w.setSubVector(column({-1, -2}), -2);
    expectVector({1, 2, 3, -1, -2}, w);
    w.setSubVector(column({9}), 0, 1);
    expectVector({9, 2, 3, -1, -2}, w);

    struct Case {
        const char* name;
        std::function<void()> action;
        const char* condition;
    };
    const Case cases[] = {
        {"start before the beginning", [&] { v.subVector(-5); }, "-start < sz"},
        {"start past the end", [&] { v.subVector(5); }, "start < sz"},
        {"nothing left", [&] { v.subVector(1, -4); }, "start - length < sz"},
        {"too long", [&] { v.subVector(3, 3); }, "start + length <= sz"},
        {"empty vector", [&] { Vector(0u).subVector(0); }, "start < sz"},
        {"wrong source size",
         [&] {
             w.setSubVector(column({1, 2}), 0, 3);
         },
         "length == vector.size()"},
    };
    for (const Case& c : cases) {
        std::string start =
            std::string("[ASSERTFLD] Assertion failed \"") + c.condition + "\" in File Vector: Line ";
        EXPECT_EQ(start, raisedText(c.action).substr(0, start.size())) << c.name;
    }
}

TEST(VectorTest, ValueSemanticsAndOrientation) {
    Vector r = row({1, 2, 3});
    Vector assigned(7);
    assigned = r;
    EXPECT_FALSE(assigned.isColumn());
    assigned[0] = 9;
    EXPECT_EQ(1.0, r[0]);

    Vector kept = column({0, 0, 0});
    kept.set(r);  // the orientation stays
    EXPECT_TRUE(kept.isColumn());
    expectVector({1, 2, 3}, kept);
    kept.set(column({5}), 1);
    expectVector({5}, kept);

    Vector grown = column({1, 2});
    grown.reSize(4);
    expectVector({1, 2, 0, 0}, grown);
    grown.reSize(1);
    expectVector({1}, grown);

    ObjectPtr deep(r.deepCopy());
    r[1] = -5;
    EXPECT_EQ(2.0, (*CAST(Vector, deep.get()))[1]);

    Vector filled(3);
    filled << 7, 8, 9;
    expectVector({7, 8, 9}, filled);
    EXPECT_EQ(RANGE + "operator[](3)", raisedText([&] { filled << 1, 2, 3, 4; }));
}

TEST(VectorTest, EqualityOrderAndHash) {
    // The orientation is not compared.
    EXPECT_TRUE(row({1, 2}).isEqual(column({1, 2})));
    EXPECT_EQ(row({1, 2}).hash(), column({1, 2}).hash());
    EXPECT_FALSE(column({0.0}).isEqual(column({-0.0})));
    EXPECT_FALSE(column({1}).isEqual(column({1, 0})));
    // By bytes: 1.0 ranks above 2.0.
    expectVector({1}, column({1}).max(column({2})));
    expectVector({2}, column({1}).min(column({2})));
    EXPECT_EQ(1, column({1}).compare(column({2})));
    EXPECT_EQ(0, column({1}).compare(row({1})));
}

TEST(VectorTest, PrintFormats) {
    EXPECT_EQ(" [\n          1;\n        0.5;\n          0\n]", printed(column({1, 0.5, 1e-11})));
    EXPECT_EQ(" [\n          1         0.5           0\n]", printed(row({1, 0.5, -1e-11})));
    Vector third = row({1.0 / 3});
    EXPECT_EQ(" [\n    0.33333\n]", printed(third.precision(5)));
    EXPECT_EQ(" [\n      0.333\n]", printed(third));
    EXPECT_EQ(" [\n]", printed(Vector(0u)));
    EXPECT_STREQ(" [          1;          2]", column({1, 2}).toString().asCharPointer());
    EXPECT_STREQ(" [     0.3333]", third.toString(4).asCharPointer());
    Vector::setLineSeparator("|");
    EXPECT_EQ(" [|          1|]", printed(column({1})));
    EXPECT_EQ(" [\n          1\n]", printed(column({1})));
}

// The elements go out as the stream prints doubles; the object store prints
// them with all the digits a double needs, so they come back exactly.
TEST(VectorStreamTest, TextForm) {
    resetReadEnvironment();
    Vector v = column({1, 1.0 / 3, -2});
    EXPECT_EQ(":Vector." + sig(class_Vector) + "{3 1 0.33333333333333331 -2 1 }\n", storedText(v));

    Vector r = row({0.5, 1e-20});
    std::vector<Vector> originals = {v, r, Vector(0u)};
    for (Vector& original : originals) {
        SCOPED_TRACE(original.size());
        std::string error;
        ObjectPtr back(readText(storedText(original), &error));
        ASSERT_TRUE(back) << error;
        Vector& read = *CAST(Vector, back.get());
        EXPECT_EQ(original.isColumn(), read.isColumn());
        ASSERT_EQ(original.size(), read.size());
        EXPECT_TRUE(original.isEqual(read));
    }

    std::string text = storedText(Vector(41));
    EXPECT_EQ(1, std::count(text.begin(), text.end(), '\n') - 1);
    EXPECT_NE(std::string::npos, text.find(" 0\n 0 1 }"));
}

TEST(VectorStreamTest, DamagedSizesEndAtTheEndOfTheStream) {
    resetReadEnvironment();
    // In binary, the size comes just before the elements and the flag.
    std::string bytes = storedBinary(column({1, 2, 3}));
    expectDamagedBinaryCountFails(bytes, bytes.size() - 3 * sizeof(double) - 8, 4);

    std::string error;
    std::string head = ":Vector." + sig(class_Vector) + "{";
    for (std::string body : {"4000000000 1 2 3", "2 1 2", "2 1 x 1 }"}) {
        SCOPED_TRACE(body);
        resetReadEnvironment();
        ObjectPtr damaged(readText(head + body, &error));
        EXPECT_FALSE(damaged);
        EXPECT_NE("", error);
    }
    resetReadEnvironment();
}

}  // namespace
