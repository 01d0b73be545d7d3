// Matrix, SubMatrix and MatrixCursor: arithmetic, access rules, failures, printing, literals and streams.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "../quill/testutil.h"
#include "algebra/all.h"
#include "quill/all.h"
#include "quill/indent.h"

namespace {

using ObjectPtr = std::unique_ptr<Object>;

// A matrix from its rows, for expectations.
Matrix rowsOf(unsigned rows, unsigned cols, std::vector<double> values) {
    Matrix m(rows, cols);
    for (unsigned r = 0; r < rows; ++r)
        for (unsigned c = 0; c < cols; ++c) m(r, c) = values[r * cols + c];
    return m;
}

Vector vectorOf(std::vector<double> values) { return Vector(values.data(), unsigned(values.size())); }

std::string printed(const Matrix& m) {
    std::ostringstream os;
    os << m;
    return os.str();
}

void expectMatrix(const Matrix& expected, const Matrix& actual) {
    ASSERT_EQ(expected.rowNumber(), actual.rowNumber());
    ASSERT_EQ(expected.columnNumber(), actual.columnNumber());
    for (unsigned r = 0; r < expected.rowNumber(); ++r)
        for (unsigned c = 0; c < expected.columnNumber(); ++c)
            EXPECT_EQ(expected(r, c), actual(r, c)) << "at " << r << "," << c;
}

void expectVector(std::vector<double> expected, const Vector& actual) {
    ASSERT_EQ(expected.size(), actual.size());
    for (unsigned i = 0; i < actual.size(); ++i) EXPECT_EQ(expected[i], actual[i]) << "at " << i;
}

const std::string DIM = "[DIFFMTRXDIM] Different matrix dimension in ";
const std::string RANGE = "[INDEXRANGE] Index out of range: ";

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

TEST(MatrixTest, EmptyShapesAndStorageOrder) {
    expectMatrix(rowsOf(1, 1, {0}), Matrix());
    Matrix empty(0, 0), wide(0, 4), other(0, 4);
    EXPECT_EQ(0.0, empty.sum());
    EXPECT_EQ(0.0, wide.trace());
    EXPECT_TRUE(wide.isEqual(other));
    EXPECT_FALSE(wide.isEqual(empty));
    expectMatrix(Matrix(0, 2), wide * Matrix(4, 2));
    expectMatrix(Matrix(2, 2), Matrix(2, 0) * Matrix(0, 2));
    expectMatrix(Matrix(4, 0), wide.transpose());
    EXPECT_EQ(0u, (wide + other).rowNumber());

    // Column-major storage is part of the contract.
    Matrix m = rowsOf(2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ((std::vector<double>{1, 4, 2, 5, 3, 6}), std::vector<double>(m.elements(), m.elements() + 6));
}

TEST(MatrixTest, ProductsAndSums) {
    Matrix a = rowsOf(2, 2, {1, 2, 3, 4}), b = rowsOf(2, 2, {5, 6, 7, 8});
    expectMatrix(rowsOf(2, 2, {19, 22, 43, 50}), a * b);
    expectMatrix(rowsOf(2, 2, {-4, -4, -4, -4}), a - b);
    expectMatrix(rowsOf(2, 2, {-1, -2, -3, -4}), -a);
    expectMatrix(rowsOf(2, 2, {0.5, 1, 1.5, 2}), 2.0 * a / 4.0);
    expectMatrix(rowsOf(2, 2, {1, 3, 2, 4}), a.transpose());
    expectMatrix(rowsOf(3, 2, {1, 2, 2, 4, 3, 6}), rowsOf(3, 1, {1, 2, 3}) * rowsOf(1, 2, {1, 2}));
    Vector v = a * vectorOf({1, -1});
    EXPECT_TRUE(v.isColumn());
    expectVector({-1, -1}, v);

    Matrix c(a);
    c += b;
    c -= a;
    c *= 3.0;
    c *= a;
    expectMatrix(b * 3.0 * a, c);

    EXPECT_EQ(10.0, a.sum());
    EXPECT_EQ(5.0, a.trace());
    EXPECT_DOUBLE_EQ(1.0, a.normalized().sum());
    expectMatrix(rowsOf(2, 2, {1, -1, 1, -1}), rowsOf(2, 2, {1, -1, 1, -1}).normalized());  // sum 0
    expectMatrix(rowsOf(2, 2, {0, 0, 4, 0}), a.addClamped(rowsOf(2, 2, {-2, -2, 1, -5})));
    EXPECT_TRUE(a.allNotAbove(4) && !a.allNotAbove(3.5));
    EXPECT_TRUE((-a).allAbsNotAbove(4) && !(-a).allAbsNotAbove(3.9));
}

TEST(MatrixTest, Makers) {
    expectMatrix(Matrix(0, 0), Matrix::diagonal(0, 1.0));
    expectMatrix(rowsOf(2, 2, {3, 0, 0, -1}), Matrix::diagonal(vectorOf({3, -1})));
    expectMatrix(rowsOf(3, 3, {1, 2, 0, 3, 4, 0, 0, 0, 5}),
                 Matrix::blockDiagonal(rowsOf(2, 2, {1, 2, 3, 4}), rowsOf(1, 1, {5})));
    expectMatrix(rowsOf(1, 2, {0, 2}), Matrix::blockDiagonal(Matrix(0, 1), rowsOf(1, 1, {2})));

    // The first column when there are several rows, else the one row.
    expectVector({1, 3}, rowsOf(2, 2, {1, 2, 3, 4}).toVector());
    expectVector({1, 2, 3}, rowsOf(1, 3, {1, 2, 3}).toVector());

    Vector column = vectorOf({1, 2}), row = column.transpose();
    expectMatrix(rowsOf(2, 3, {0, 1, 0, 0, 2, 0}), Matrix(column, 3, 1));
    expectMatrix(rowsOf(3, 2, {0, 0, 0, 0, 1, 2}), Matrix(row, 3, 2));

    OrderedCltn lines, none;
    Vector first = vectorOf({1, 2, 3}), second = vectorOf({4, 5, 6});
    lines.add(first);
    lines.add(second);
    expectMatrix(rowsOf(2, 3, {1, 2, 3, 4, 5, 6}), Matrix(lines));
    expectMatrix(Matrix(0, 0), Matrix(none));
}

TEST(MatrixTest, DimensionFailures) {
    Matrix a(2, 2), b(2, 3), row(1, 2);
    expectErrors({
        {"+", [&] { a + b; }, DIM + "Matrix::operator+, 2 2, 2 3"},
        {"-", [&] { a - b; }, DIM + "Matrix::operator-, 2 2, 2 3"},
        {"*", [&] { b* b; }, DIM + "Matrix::operator*, 2 3, 2 3"},
        {"+=", [&] { a += b; }, DIM + "Matrix::operator+=, 2 2, 2 3"},
        {"-= keeps its old name", [&] { a -= b; }, DIM + "Matrix::operator=, 2 2, 2 3"},
        {"*= Matrix", [&] { a *= row; }, DIM + "Matrix::operator*, 2 2, 1 2"},
        {"addClamped", [&] { a.addClamped(b); }, DIM + "Matrix::operator-, 2 2, 2 3"},
        {"set", [&] { a.set(b); }, DIM + "Matrix::set, 2 2, 2 3"},
        {"compare", [&] { a.compare(b); }, DIM + "Matrix::compare, 2 2, 2 3"},
    });
    EXPECT_NO_THROW(a.set(b, 1));
    expectMatrix(b, a);
}

TEST(MatrixTest, MatrixTimesVectorFailurePrintsFirst) {
    Matrix a(2, 2);
    Vector row = vectorOf({1, 2});
    row.setAsRow();
    const std::pair<Vector, std::string> cases[] = {
        {vectorOf({1, 2, 3}), DIM + "Matrix::operator*, 2 2, 3 1"},
        {row, DIM + "Matrix::operator*, 2 2, 1 2"}};
    for (const auto& c : cases) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(c.second, raisedText([&] { a* c.first; }));
        EXPECT_EQ("vector dimension different from matrix column number\n",
                  testing::internal::GetCapturedStdout());
    }
}

// Rows 1 2 3 / 4 5 6 / 7 8 9.
Matrix nine() { return rowsOf(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}); }

TEST(MatrixTest, RowsColumnsAndBlocks) {
    Matrix m = nine();
    expectVector({7, 8, 9}, m.row(-1));
    expectVector({4, 5}, m.row(1, 0, -1));
    expectVector({6}, m.row(1, -1));
    EXPECT_TRUE(m.row(0).isColumn());
    expectVector({6, 9}, m.column(-1, 1));
    expectVector({2}, m.column(1, 0, 1));
    expectMatrix(rowsOf(1, 2, {5, 6}), m.subMatrix(1, 1, -1, 0));
    expectMatrix(rowsOf(2, 1, {8, 9}).transpose(), m.subMatrix(-1, 1));
    expectMatrix(rowsOf(2, 2, {1, 2, 4, 5}), m.subMatrix(0, 0, 2, 2));

    m.setRow(-1, vectorOf({0, 0}), 1);
    expectVector({7, 0, 0}, m.row(2));
    m.setColumn(0, vectorOf({10, 11, 12, 13}), 1);  // copies no more than fits
    expectVector({1, 10, 11}, m.column(0));
    m.setColumn(2, vectorOf({-3}));  // nor more than the vector holds
    expectVector({-3, 6, 0}, m.column(2));

    Matrix n = nine();
    n.setSubMatrix(0, 1, n, 1, 2);  // reads n's storage with a stride of 1 row
    expectMatrix(rowsOf(3, 3, {1, 1, 4, 4, 5, 6, 7, 8, 9}), n);

    Matrix r = nine();
    r.reSize(2, 4);
    expectMatrix(rowsOf(2, 4, {1, 2, 3, 0, 4, 5, 6, 0}), r);
    r.reSize(0, 4);
    EXPECT_EQ(0u, r.rowNumber());
}

TEST(MatrixTest, IndexFailures) {
    Matrix m = nine();
    Matrix flat(0, 3);
    expectErrors({
        {"() row", [&] { m(3, 0); }, RANGE + "Matrix::operator()(3)"},
        {"() column", [&] { m(0, 7); }, RANGE + "Matrix::operator()(7)"},
        {"const ()", [&] { static_cast<const Matrix&>(m)(0, 3); }, RANGE + "Matrix::operator()(3)"},
        {"[]", [&] { m[3]; }, RANGE + "Matrix::operator[](3)"},
        {"[][]", [&] { m[0][3]; }, RANGE + "Matrix::operator()(3)"},
        {"row", [&] { m.row(3); }, RANGE + "Matrix::row(3)"},
        {"row from the end", [&] { m.row(-4); }, RANGE + "Matrix::row(-4)"},
        {"row column", [&] { m.row(0, 3); }, RANGE + "Matrix::row(3)"},
        {"row length", [&] { m.row(0, 1, 3); }, RANGE + "Matrix::row(3)"},
        {"row of no rows", [&] { flat.row(0); }, RANGE + "Matrix::row(0)"},
        {"column", [&] { m.column(-4); }, RANGE + "Matrix::column(-4)"},
        {"setRow", [&] { m.setRow(5, Vector(3)); }, RANGE + "Matrix::setRow(5)"},
        {"setRow short vector", [&] { Matrix(3, 3).setRow(0, Vector(2)); }, RANGE + "Vector::operator[](2)"},
        {"setColumn row", [&] { m.setColumn(0, Vector(3), 3); }, RANGE + "Matrix::column(3)"},
        {"setColumn column", [&] { m.setColumn(3, Vector(3)); }, RANGE + "Matrix::column(3)"},
        {"subMatrix", [&] { m.subMatrix(0, 0, 4); }, RANGE + "Matrix::subMatrix(4)"},
        {"subMatrix less than nothing", [&] { m.subMatrix(1, 0, -3); }, RANGE + "Matrix::subMatrix(-3)"},
        {"setSubMatrix", [&] { m.setSubMatrix(3, 0, Matrix()); }, RANGE + "Matrix::setSubMatrix(3)"},
    });
    expectMatrix(nine(), m);
}

TEST(MatrixTest, CursorsAndCommaInitialiser) {
    Matrix m(2, 3);
    m << 1, 2, 3, 4, 5, 6;
    expectMatrix(rowsOf(2, 3, {1, 2, 3, 4, 5, 6}), m);
    EXPECT_EQ(6.0, m[1][2]);
    m[1][0] = -4;
    EXPECT_EQ(-4.0, m(1, 0));
    Vector tail = m[1];
    expectVector({-4, 5, 6}, tail);

    Matrix n(2, 4);
    n << 1, vectorOf({2, 3}), 4, vectorOf({5, 6, 7, 8});
    expectMatrix(rowsOf(2, 4, {1, 2, 3, 4, 5, 6, 7, 8}), n);

    Matrix full(1, 2);
    EXPECT_EQ(RANGE + "Matrix::operator()(1)", raisedText([&] { full << 1, 2, 3; }));
    EXPECT_EQ(RANGE + "Matrix::setRow(2)", raisedText([&] { full << 1, vectorOf({2, 3}); }));
}

TEST(MatrixTest, ValueSemantics) {
    Matrix a = rowsOf(2, 2, {1, 2, 3, 4});
    Matrix copy(a), assigned(5, 5);
    assigned = a;
    copy(0, 0) = assigned(1, 1) = 9;
    expectMatrix(rowsOf(2, 2, {1, 2, 3, 4}), a);
    EXPECT_EQ(2u, assigned.rowNumber());

    Matrix reshaped = rowsOf(1, 4, {1, 2, 3, 4});
    reshaped = a;  // same element count: storage kept, shape taken
    expectMatrix(a, reshaped);
    a = a;
    expectMatrix(reshaped, a);

    ObjectPtr deep(a.deepCopy()), shallow(a.shallowCopy());
    a(0, 0) = -1;
    EXPECT_EQ(1.0, (*CAST(Matrix, deep.get()))(0, 0));
    EXPECT_EQ(1.0, (*CAST(Matrix, shallow.get()))(0, 0));
}

TEST(MatrixTest, EqualityOrderAndHashAreBytewise) {
    Matrix zero(1, 1), negativeZero(1, 1);
    negativeZero(0, 0) = -0.0;
    EXPECT_FALSE(zero.isEqual(negativeZero));
    Matrix nan(1, 1);
    nan(0, 0) = std::numeric_limits<double>::quiet_NaN();
    Matrix nanCopy(nan);
    EXPECT_TRUE(nan.isEqual(nanCopy));
    EXPECT_EQ(nan.hash(), nanCopy.hash());
    EXPECT_FALSE(Matrix(1, 2).isEqual(Matrix(2, 1)));
    EXPECT_FALSE(Matrix(1, 1).isEqual(Vector(1)));

    // 1.0 ends in the bytes f0 3f, 2.0 in 00 40: the byte order puts 1.0 last.
    Matrix one(1, 1), two(1, 1);
    one(0, 0) = 1.0;
    two(0, 0) = 2.0;
    EXPECT_EQ(1, one.compare(two));
    EXPECT_EQ(-1, two.compare(one));
    EXPECT_EQ(0, one.compare(Matrix(one)));
    EXPECT_NE("no error", raisedText([&] { one.compare(Vector(1)); }));
}

TEST(MatrixTest, PrintFormats) {
    Matrix a = rowsOf(2, 2, {1, 2, 3, 4});
    EXPECT_EQ(" [\n          1           2;\n          3           4\n]", printed(a));

    Matrix third = rowsOf(1, 2, {1.0 / 3, -2.5e-7});
    EXPECT_EQ(" [\n      0.333    -2.5e-07\n]", printed(third));
    EXPECT_EQ(" [\n    0.33333    -2.5e-07\n]", printed(third.precision(5)));
    EXPECT_EQ(" [\n      0.333    -2.5e-07\n]", printed(third));  // one print only
    EXPECT_EQ(" [\n0.3333333333333333         -2.5e-07\n]", printed(third.precision(16)));
    Matrix half = rowsOf(1, 1, {0.5});
    EXPECT_EQ(" [\n             0.5\n]", printed(half.precision(16)));

    // Below 1e-10 prints as zero; the stored value is kept.
    Matrix tiny = rowsOf(1, 3, {5e-11, -5e-11, 1e-10});
    EXPECT_EQ(" [\n          0           0       1e-10\n]", printed(tiny));
    EXPECT_EQ(5e-11, tiny(0, 0));

    EXPECT_EQ(" [\n]", printed(Matrix(0, 0)));
    EXPECT_EQ(" [\n]", printed(Matrix(0, 3)));
    EXPECT_EQ(" [\n\n]", printed(Matrix(1, 0)));

    // Nested in an indented print, every line starts with the stream's indentation.
    std::ostringstream nested;
    {
        IndentScope scope(nested);
        a.printOn(nested);
    }
    EXPECT_EQ(" [\n            1           2;\n            3           4\n  ]", nested.str());
    EXPECT_EQ(indentLevel(nested), 0);

    Matrix::setLineSeparator(" |");
    EXPECT_EQ(" [ |          1           2; |          3           4 |]", printed(a));
    EXPECT_EQ(" [\n          1           2;\n          3           4\n]", printed(a));

    EXPECT_STREQ(" [          1           2;          3           4]", a.toString().asCharPointer());
    EXPECT_STREQ(" [ 0.33333333    -2.5e-07]", third.toString(8).asCharPointer());
    EXPECT_EQ(" [\n          1           2;\n          3           4\n]", printed(a));
}

TEST(MatrixTest, ReadsLiterals) {
    struct Case {
        const char* text;
        Matrix expected;
        const char* console;
    };
    std::vector<Case> cases = {
        {"", Matrix(), ""},
        {"[1 2;3 4]", rowsOf(2, 2, {1, 2, 3, 4}), ""},
        {"a = [1 , 2 ;  3,4]", rowsOf(2, 2, {1, 2, 3, 4}), ""},
        {"1 2", rowsOf(1, 2, {1, 2}), ""},
        {"[-1.5e-3 2e2]", rowsOf(1, 2, {-1.5e-3, 200}), ""},
        {"[1 2;3 4 5]", rowsOf(2, 2, {1, 2, 3, 4}), "different matrix row lengths\n"},
        {"[1;2 3;4]", rowsOf(2, 1, {1, 2}), "different matrix row lengths\n"},
        {"[1 2 3;4]", rowsOf(2, 3, {1, 2, 3, 4, 0, 0}), ""},
        {"[1 2] 3", rowsOf(1, 2, {1, 2}), ""},
        {"[1 x;3 4]", rowsOf(2, 2, {1, 0, 3, 4}), ""},
    };
    for (Case& c : cases) {
        SCOPED_TRACE(c.text);
        testing::internal::CaptureStdout();
        Matrix m(c.text);
        EXPECT_EQ(c.console, testing::internal::GetCapturedStdout());
        expectMatrix(c.expected, m);
    }
    Matrix again(3, 3);
    again.fromText("[5 6]");
    expectMatrix(rowsOf(1, 2, {5, 6}), again);
}

TEST(MatrixStreamTest, TextForm) {
    resetReadEnvironment();
    Matrix a = rowsOf(2, 2, {1, 2, 3, 4});
    EXPECT_EQ(":Matrix." + sig(class_Matrix) + "{2 2 1 3 2 4}\n", storedText(a));

    Matrix exact = rowsOf(2, 3, {0.1, -1.0 / 3, 1e300, 5e-11, -0.0, 123456789.125});
    std::vector<Matrix> originals = {exact, Matrix(0, 0), Matrix(0, 4), Matrix()};
    for (Matrix& m : originals) {
        SCOPED_TRACE(m.rowNumber() * 10 + m.columnNumber());
        std::string error;
        ObjectPtr back(readText(storedText(m), &error));
        ASSERT_TRUE(back) << error;
        EXPECT_TRUE(m.isEqual(*back));  // bytewise, so -0.0 came back as -0.0
    }

    // Sixteen digits: a value that needs seventeen comes back rounded.
    Matrix rounded = rowsOf(1, 1, {0.1 + 0.2});
    ObjectPtr back(readText(storedText(rounded)));
    ASSERT_TRUE(back);
    EXPECT_EQ(0.3, (*CAST(Matrix, back.get()))(0, 0));

    Matrix wide(1, 21);
    std::string text = storedText(wide);
    std::string twenty;
    for (int i = 0; i < 20; ++i) twenty += " 0";
    EXPECT_EQ(":Matrix." + sig(class_Matrix) + "{1 21" + twenty + "\n 0}\n", text);
}

TEST(MatrixStreamTest, DamagedCountsEndAtTheEndOfTheStream) {
    resetReadEnvironment();
    std::string head = ":Matrix." + sig(class_Matrix) + "{";
    for (std::string body : {"4000000000 4000000000 1 2 3", "65536 65536 1", "2 2 1 2 x 4}"}) {
        SCOPED_TRACE(body);
        std::string error;
        ObjectPtr back(readText(head + body, &error));
        EXPECT_FALSE(back);
        EXPECT_NE("", error);
        resetReadEnvironment();
    }
    // In binary, rows and columns come just before the elements.
    std::string bytes = storedBinary(rowsOf(2, 2, {1, 2, 3, 4}));
    expectDamagedBinaryCountFails(bytes, bytes.size() - 4 * sizeof(double) - 8, 8);
}

TEST(SubMatrixTest, ReadsAndWritesThroughTheWindow) {
    Matrix m = nine();
    SubMatrix centre = m.view(1, 1, 2, 2);
    expectMatrix(rowsOf(2, 2, {5, 6, 8, 9}), Matrix(centre));
    expectMatrix(rowsOf(2, 2, {5, 6, 8, 9}), Matrix(m.view(1, 1)));  // counts 0: to the end
    expectMatrix(rowsOf(1, 2, {5, 6}), Matrix(m.view(1, 1, -1, 0)));
    EXPECT_EQ(3u, m.view(0, 0).rowNumber);

    centre = rowsOf(2, 2, {-1, -2, -3, -4});
    expectMatrix(rowsOf(3, 3, {1, 2, 3, 4, -1, -2, 7, -3, -4}), m);

    Matrix ones = rowsOf(2, 2, {1, 1, 1, 1});
    expectMatrix(rowsOf(2, 2, {0, -1, -2, -3}), ones + centre);
    expectMatrix(rowsOf(2, 2, {-3, -3, -7, -7}), centre * ones);
    expectMatrix(rowsOf(2, 2, {7, 10, 15, 22}), centre * centre);

    std::ostringstream os;
    os << centre;
    EXPECT_EQ(" [\n         -1          -2;\n         -3          -4\n]", os.str());
}

TEST(SubMatrixTest, OverlappingAssignmentActsAsFromACopy) {
    struct Case {
        const char* name;
        std::function<void(Matrix&)> assign;
        Matrix expected;
    };
    const Case cases[] = {
        {"down right", [](Matrix& m) { m.view(1, 1, 2, 2) = m.view(0, 0, 2, 2); },
         rowsOf(3, 3, {1, 2, 3, 4, 1, 2, 7, 4, 5})},
        {"up left", [](Matrix& m) { m.view(0, 0, 2, 2) = m.view(1, 1, 2, 2); },
         rowsOf(3, 3, {5, 6, 3, 8, 9, 6, 7, 8, 9})},
        {"row down", [](Matrix& m) { m.view(1, 0, 2, 3) = m.view(0, 0, 2, 3); },
         rowsOf(3, 3, {1, 2, 3, 1, 2, 3, 4, 5, 6})},
        {"whole matrix", [](Matrix& m) { m.view(0, 0, 3, 3) = m; }, nine()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m = nine();
        c.assign(m);
        expectMatrix(c.expected, m);
    }
}

TEST(SubMatrixTest, Failures) {
    Matrix m = nine();
    SubMatrix block = m.view(0, 0, 2, 2);
    SubMatrix strip = m.view(0, 0, 1, 3);
    expectErrors({
        {"= Matrix", [&] { block = Matrix(1, 2); }, DIM + "SubMatrix::operator=, 2 2, 1 2"},
        {"= SubMatrix", [&] { block = strip; }, DIM + "SubMatrix::operator=, 2 2, 1 3"},
        {"+", [&] { block + strip; }, DIM + "SubMatrix::operator+, 2 2, 1 3"},
        {"Matrix +", [&] { Matrix(3, 3) + block; }, DIM + "SubMatrix::operator+, 2 2, 3 3"},
        {"*", [&] { strip* block; }, DIM + "SubMatrix::operator*, 1 3, 2 2"},
        {"* Matrix", [&] { block* Matrix(2, 2).transpose().subMatrix(0, 0, 1); },
         DIM + "SubMatrix::operator*, 2 2, 1 2"},
        {"Matrix *", [&] { Matrix(2, 3) * block; }, DIM + "SubMatrix::operator*, 2 2, 2 3"},
    });
    std::string outside = raisedText([&] { Matrix copy(m.view(2, 2, 2, 2)); });
    EXPECT_NE(std::string::npos, outside.find("[ASSERTFLD]")) << outside;
    expectMatrix(nine(), m);
}

}  // namespace
