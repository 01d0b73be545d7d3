// The evaluator's own paths for scalars: wrap-around, conversions at the edges of
// int, char and float, variables read when an operator takes them, returned
// scalars named after their type, shadowed names, reference parameters, arguments bound to the values of
// finished calls, a loop's scope emptied between passes, places of variables kept across passes and calls,
// parameters bound again in place, numbers answered by methods, calls inside expressions, elements and
// members in place, failures, and a listener that appears while a loop runs.
#include <gtest/gtest.h>

#include <string>

#include "interpreter/all.h"
#include "numtext.h"
#include "quill/cback.h"

namespace {

struct Case {
    const char* program;
    const char* out;
};

const Case SCALAR_CASES[] = {
    {"int main() {\n"
     "    int a = 2147483647;\n"
     "    a = a + 1;\n"
     "    int b = -2147483647 - 1;\n"
     "    b--;\n"
     "    int m = 65536;\n"
     "    char c = 127;\n"
     "    c++;\n"
     "    char d = 'a';\n"
     "    d = d * d;\n"
     "    int n = -(-2147483647 - 1);\n"
     "    a += 2147483647;\n"
     "    cout << a << \" \" << b << \" \" << m * m << \" \" << c + 0 << \" \" << d + 0 << \" \" << n << \" "
     "\" "
     "<< 7 / -2 << \" \" << -7 % 3;\n"
     "    return 0;\n"
     "}\n",
     "-1 2147483647 0 -128 -63 -2147483648 -3 -1"},
    {"int same(int x) { return x; }\n"
     "int twice(float x) { return x * 2; }\n"
     "float third(int x) { return x / 3; }\n"
     "int code(char c) { return c; }\n"
     "int main() {\n"
     "    int i = 3.99;\n"
     "    int j = -3.99;\n"
     "    int big = 3000000000.0;\n"
     "    float f = 7;\n"
     "    f = f / 2;\n"
     "    f += 1;\n"
     "    char c = 200;\n"
     "    cout << i << \" \" << j << \" \" << big << \" \" << f << \" \" << same(3.7) << \" \" << same(-0.5) "
     "<< \" \" << twice(1.75) << \" \" << third(7) << \" \" << code(200) << \" \" << c + 1 << \" \" << 1 / "
     "2.0;\n"
     "    return 0;\n"
     "}\n",
     "3 -3 -1294967296 4.5 3 0 3 2 -56 -55 0.5"},
    {"int x = 1;\n"
     "void bump(int& n) { n = n + 1; n++; }\n"
     "int main() {\n"
     "    cout << x << \" \";\n"
     "    int x = 2;\n"
     "    {\n"
     "        int x = 3;\n"
     "        x = x + 10;\n"
     "        cout << x << \" \";\n"
     "    }\n"
     "    for (int k = 0; k < 2; k++) {\n"
     "        int x = k * 100;\n"
     "        x++;\n"
     "        cout << x << \" \";\n"
     "    }\n"
     "    bump(x);\n"
     "    cout << x;\n"
     "    return 0;\n"
     "}\n",
     "1 13 1 101 4"},
    {"int main() {\n"
     "    for (int i = 0; i < 4; i++) {\n"
     "        int x;\n"
     "        x = x + i;\n"
     "        if (i == 1) continue;\n"
     "        if (i == 3) break;\n"
     "        cout << x << \" \";\n"
     "    }\n"
     "    int k = 0;\n"
     "    for (; k < 3; k++) if (k == 2) break;\n"
     "    cout << k;\n"
     "    return 0;\n"
     "}\n",
     "0 2 2"},
    {"int main() {\n"
     "    int x = 1;\n"
     "    int y = x + (x = 5);\n"
     "    float f = 0;\n"
     "    int i = 7;\n"
     "    f = i / 2 + 0.25;\n"
     "    char c = 'A';\n"
     "    c += 200;\n"
     "    int k = 3;\n"
     "    k *= k++ + ++k;\n"
     "    float g = 2;\n"
     "    g = -g * 2.5 + (i > 3) + !c;\n"
     "    cout << y << \" \" << x << \" \" << f << \" \" << c + 0 << \" \" << k << \" \" << g;\n"
     "    return 0;\n"
     "}\n",
     "10 5 3.25 9 40 -4"},
    {"int one() { return 1; }\n"
     "char letter() { return 'z'; }\n"
     "int main() {\n"
     "    Matrix K = one();\n"
     "    Matrix L = letter();\n"
     "    cout << K.rowNumber() << L.rowNumber() << one() + letter();\n"
     "    return 0;\n"
     "}\n",
     "Var char of level 21 cannot be converted in a Matrix\n10123"},
    // Arguments bound to values of finished calls: an element's alias is never one of them.
    {"void set(float& r, float v) { r = v; }\n"
     "float half(float x) { x = x / 2; return x; }\n"
     "int down(int n, char c) { if (n == 0) return c; c++; return down(n - 1, c); }\n"
     "int main() {\n"
     "    Matrix A(1, 2);\n"
     "    float a = 0;\n"
     "    set(a, 3);\n"
     "    A(0, 0) = a;\n"
     "    float h = half(A(0, 0));\n"
     "    A(0, 1) = half(5);\n"
     "    cout << A(0, 0) << \" \" << A(0, 1) << \" \" << h << \" \" << down(130, 'a') << \" \" << half(7) "
     "<< \" \" "
     "<< A(0, 0);\n"
     "    return 0;\n"
     "}\n",
     "3 2.5 1.5 -29 3.5 3"},
    // Elements of a matrix of a scope read, written, boxed for an operation and returned.
    {"float first(Matrix M) { return M(0, 0); }\n"
     "int main() {\n"
     "    Matrix A(2, 2);\n"
     "    A(0, 0) = 1.5;\n"
     "    A(0, 1) = A(0, 0) * 2;\n"
     "    A(1, 0) += 4;\n"
     "    A(1, 0)++;\n"
     "    A(1, 1) = A(0, 1);\n"
     "    float x = A(1, 0);\n"
     "    int k = A(0, 1);\n"
     "    Matrix B = A(0, 0) * A;\n"
     "    cout << A(0, 0) << \" \" << A(0, 1) << \" \" << A(1, 0) << \" \" << A(1, 1) << \" \" << x << \" \" "
     "<< k "
     "<< \" \" << first(A) << \" \" << B(1, 1) << \" \" << A(1.7, 0);\n"
     "    return 0;\n"
     "}\n",
     "1.5 3 5 3 5 3 1.5 4.5 5"},
    // Places kept by the plans between passes: a name shadowed by a block of one pass, a call
    // made inside the loop, a reference bound to another variable at each call.
    {"int g = 1;\n"
     "void add(int& r, int n) { for (int i = 0; i < n; i++) r = r + 1; }\n"
     "int sum(int n) {\n"
     "    int s = 0;\n"
     "    for (int i = 1; i <= n; i++) { s = s + i; if (i == n && n > 1) s = s + sum(n - 1); }\n"
     "    return s;\n"
     "}\n"
     "int main() {\n"
     "    int x = 1, s = 0, l = 10;\n"
     "    for (int i = 0; i < 3; i++) {\n"
     "        s = s + x;\n"
     "        if (i == 1) { int x = 100; s = s + x; }\n"
     "        s = s + x;\n"
     "        int y = i * 1000;\n"
     "        s += y;\n"
     "    }\n"
     "    add(g, 2);\n"
     "    add(l, 3);\n"
     "    add(g, 1);\n"
     "    cout << s << \" \" << sum(4) << \" \" << g << \" \" << l;\n"
     "    return 0;\n"
     "}\n",
     "3106 20 4 13"},
    // Parameters bound again in the scalars of the function's last call: a call in an argument,
    // conversions, and an argument that only the values convert.
    {"int add(int a, int b) { return a + b; }\n"
     "int code(int n, char c) { return c + n; }\n"
     "int main() {\n"
     "    int s = 0;\n"
     "    for (int i = 0; i < 3; i++) s = s + add(i, add(i, 1));\n"
     "    int v = 66;\n"
     "    cout << s << \" \" << add(2.9, -1.5) << \" \" << code(1, 'a') << \" \" << code(2, v) << \" \" << "
     "code(3, 'b');\n"
     "    return 0;\n"
     "}\n",
     "9 1 98 68 101"},
    // Numbers of methods of numeric values, and elements whose indices are floats or have effects.
    {"int rows(Matrix& M) { return M.rowNumber() * 10 + M.columnNumber(); }\n"
     "float at(Matrix& M, int i) { return M(i, i); }\n"
     "int main() {\n"
     "    Matrix A(3, 2);\n"
     "    A(1.9, 0.2) = 5;\n"
     "    A(2, 1) = A(1, 0) + 1;\n"
     "    float f = A(2, 1) * A.norminf();\n"
     "    int r = A.rowNumber();\n"
     "    Matrix B = A * 2;\n"
     "    int k = 0;\n"
     "    A(k++, k++) = 7;\n"
     "    cout << A(1, 0) << \" \" << f << \" \" << r << \" \" << rows(A) << \" \" << at(B, 0) << \" \" << k "
     "<< \" \" "
     "<< A(0, 1) << \" \" << B.columnNumber() + 0.5;\n"
     "    return 0;\n"
     "}\n",
     "5 36 3 32 0 2 7 2.5"},
    // Loops that go on as plans after their first pass, and ones that cannot: an int test, nested loops.
    {"int g = 0;\n"
     "int main() {\n"
     "    int s = 0, k = 0, n, m = 0, z = 0;\n"
     "    for (int i = 0; i < 10; i++) s = s + i;\n"
     "    char c;\n"
     "    for (c = 0; c < 100; c += 30) k++;\n"
     "    for (n = 5; n; n--) g = g + n;\n"
     "    float f = 1;\n"
     "    for (int j = 0; j < 3; j++) f = f * 1.5 + j / 2;\n"
     "    for (int a = 0; a < 4; a++) for (int b = 0; b < a; b++) m = m + a * b;\n"
     "    for (int q = 10; q > 0; q = q - 3) z += q;\n"
     "    cout << s << \" \" << c + 0 << \" \" << k << \" \" << g << \" \" << n << \" \" << f << \" \" << m "
     "<< \" \" << z;\n"
     "    return 0;\n"
     "}\n",
     "45 120 4 15 0 4.375 11 22"},
    // Elements in plans: a reference and a copy of a matrix, compound assignments, an element read
    // again after a store, float and element indices, and an increment that the plans leave alone.
    {"void fill(Matrix& M, int n) { for (int i = 0; i < n; i++) M(i, i) = i * 1.5; }\n"
     "float total(Matrix M) { float s = 0; for (int i = 0; i < 3; i++) s = s + M(i, i) + M(i, 0); return s; "
     "}\n"
     "int main() {\n"
     "    Matrix A(3, 3), B(2, 2);\n"
     "    B(0, 0) = 2;\n"
     "    fill(A, 3);\n"
     "    for (int i = 0; i < 3; i++) A(i, 0) += 2;\n"
     "    float x = A(0, 0) + (A(0, 0) = 5);\n"
     "    A(1.7, 0.2) = A(B(0, 0), 2) + 1;\n"
     "    int k = 0;\n"
     "    for (int j = 0; j < 3; j++) A(j, 1) = A(j, 0) * k++;\n"
     "    A(2, 2)++;\n"
     "    cout << x << \" \" << A(1, 0) << \" \" << total(A) << \" \" << k << \" \" << A(2, 2) << \" \" << "
     "-A(1, 1) "
     "<< \" \" << A(2, 1);\n"
     "    return 0;\n"
     "}\n",
     "10 4 24 3 4 -4 4"},
    // Numbers answered by methods inside plans, of a matrix and of a reference to one.
    {"int rows(Matrix& M) {\n"
     "    int s = 0;\n"
     "    for (int i = 0; i < 3; i++) s = s + M.rowNumber() * 10 + M.columnNumber();\n"
     "    return s;\n"
     "}\n"
     "int main() {\n"
     "    Matrix A(3, 2), E(0, 0);\n"
     "    A(1, 1) = -2.5;\n"
     "    float r = 0;\n"
     "    for (int i = 0; i < 4; i++) r = r + A.rowNumber() * A.norminf() - A.norm2();\n"
     "    cout << r << \" \" << rows(A) << \" \" << E.norminf();\n"
     "    return 0;\n"
     "}\n",
     "20 96 0"},
    // Calls whose arguments, tests and returns are plans: a void function that ends without return,
    // parameters bound again in place down a recursion, a float returned by an int function.
    {"void show(int n) { if (n > 0) cout << n << \" \"; }\n"
     "int down(int n) { if (n < 1) return n; return down(n - 1) + 1; }\n"
     "float half(int n) { return n / 2.0; }\n"
     "int thrice(float x) { if (x > 0) return x * 3; return -1; }\n"
     "int main() {\n"
     "    show(0);\n"
     "    show(down(2));\n"
     "    cout << down(5) << \" \" << half(7) << \" \" << thrice(1.9) << \" \" << thrice(0);\n"
     "    return 0;\n"
     "}\n",
     "2 5 3.5 5 -1"},
    // Locals of a function's outermost block read after a recursion gave each call a frame of its own,
    // and a local of an inner block that shadows one of them.
    {"int walk(int n) {\n"
     "    int k = n * 10;\n"
     "    int r = 0;\n"
     "    if (n > 0) r = walk(n - 1);\n"
     "    if (n > 1) { int k = 1; r = r + k; }\n"
     "    return k + r + n;\n"
     "}\n"
     "int main() {\n"
     "    cout << walk(3) << \" \" << walk(0);\n"
     "    return 0;\n"
     "}\n",
     "68 0"},
    // Calls inside plans: a global read after a call that stores into it, a caller's local read after a
    // recursion that ran the same plan, nested calls, and an exit in a call, which ends the expression.
    {"int g = 1;\n"
     "int bump() { g = 10; return 1; }\n"
     "int fact(int n) { if (n < 2) return 1; return fact(n - 1) * n; }\n"
     "int twice(int n) { return n + n; }\n"
     "int quit(int n) { if (n > 2) exit; return n; }\n"
     "int main() {\n"
     "    int a = g + bump();\n"
     "    g = 1;\n"
     "    int b = bump() + g;\n"
     "    int k = 3;\n"
     "    float x = twice(k) * 0.5 + twice(twice(k)) - k;\n"
     "    cout << a << \" \" << b << \" \" << fact(5) << \" \" << x;\n"
     "    k = quit(1) + quit(3) + 100;\n"
     "    cout << k;\n"
     "    return 0;\n"
     "}\n",
     "11 11 120 12"},
    // Elements of arrays and scalar members of structs, read and stored in place: compound and increment,
    // a float index, an element bound to a reference parameter, arrays of arrays, structs copied whole
    // from elements and members, and members of members.
    {"struct Point {\n"
     "    float x;\n"
     "    int n = 2;\n"
     "};\n"
     "struct Pair {\n"
     "    Point a;\n"
     "    Point b;\n"
     "};\n"
     "void set(int& r) { r = 7; }\n"
     "void push(Point& p) { p.x = p.x + 1.5; p.n++; }\n"
     "int main() {\n"
     "    int a[4];\n"
     "    for (int i = 0; i < 4; i++) a[i] = i * 10;\n"
     "    a[1.9] += 5;\n"
     "    a[2]++;\n"
     "    set(a[3]);\n"
     "    int m[3][2];\n"
     "    m[1][2] = 8;\n"
     "    m[0][1] = m[1][2] * 2;\n"
     "    Point ps[2];\n"
     "    push(ps[1]);\n"
     "    ps[0] = ps[1];\n"
     "    ps[1].x = ps[0].x * 2;\n"
     "    Pair q;\n"
     "    q.b.x = 3.25;\n"
     "    q.a = q.b;\n"
     "    Pair qs[2];\n"
     "    qs[1].a.n = qs[0].b.n + 40;\n"
     "    cout << a[1] << \" \" << a[2] << \" \" << a[3] << \" \" << m[0][1] << \" \" << ps[0].x << \" \" << "
     "ps[0].n << \" \" << ps[1].x << \" \" << q.a.x << \" \" << qs[1].a.n;\n"
     "    return 0;\n"
     "}\n",
     "15 21 7 16 1.5 3 3 3.25 42"},
    // Loops whose body is a block of expressions, ifs with and without else, an inner block and an empty
    // statement go on as one plan; the tests hold on some passes only.
    {"int main() {\n"
     "    int a[6];\n"
     "    int odd = 0, big = 0, s = 0;\n"
     "    for (int i = 0; i < 6; i++) {\n"
     "        a[i] = i * i;\n"
     "        if (i % 2 == 1) odd = odd + 1;\n"
     "        if (a[i] > 8) big += a[i];\n"
     "        { s = s + a[i]; }\n"
     "        ;\n"
     "    }\n"
     "    int lo = 0, hi = 0;\n"
     "    float u = 0;\n"
     "    for (int j = 0; j < 8; j++) {\n"
     "        if (j < 4) lo = lo + j; else hi = hi + j;\n"
     "        u = u + 0.75;\n"
     "        if (u > 2.0) u = 2.0; else u = u * 1.0;\n"
     "    }\n"
     "    cout << odd << \" \" << big << \" \" << s << \" \" << lo << \" \" << hi << \" \" << u;\n"
     "    return 0;\n"
     "}\n",
     "3 50 55 6 22 2"},
    // Functions whose body is a chain of returns run as one plan: else-if chains, a char result, a float
    // value returned by an int function, recursions of one and of two calls.
    {"int sign(float x) { if (x > 0) return 1; else if (x < 0) return -1; return 0; }\n"
     "float clip(float x, float m) { if (x > m) return m; else if (x < -m) return -m; else return x; }\n"
     "char grade(int s) { if (s > 90) return 'A'; if (s > 50) return 'B'; return 'C'; }\n"
     "int gcd(int a, int b) { if (b == 0) return a; return gcd(b, a % b); }\n"
     "int thrice(float x) { return x * 3; }\n"
     "int ack(int m, int n) { if (m == 0) return n + 1; if (n == 0) return ack(m - 1, 1); return ack(m - 1, "
     "ack(m, n - 1)); }\n"
     "int main() {\n"
     "    cout << sign(-2.5) << sign(0) << sign(3) << \" \" << clip(5, 2) << \" \" << clip(-7, 2) << \" \" "
     "<< "
     "clip(0.5, 2);\n"
     "    cout << \" \" << grade(95) << grade(60) << grade(10) << \" \" << gcd(84, 36) << \" \" << "
     "thrice(1.9) "
     "<< \" \" << ack(2, 3);\n"
     "    return 0;\n"
     "}\n",
     "-101 2 -2 0.5 ABC 12 5 9"},
    // Loops of plans left by a break, and passes cut short by a continue, on later passes.
    {"int main() {\n"
     "    int s = 0, n = 0;\n"
     "    for (int i = 0; i < 100000; i++) {\n"
     "        s = s + i % 7;\n"
     "        if (s > 1000) break;\n"
     "        n++;\n"
     "    }\n"
     "    int odd = 0, t = 0;\n"
     "    for (int j = 0; j < 20; j++) {\n"
     "        if (j % 2 == 0) continue;\n"
     "        odd = odd + j;\n"
     "        if (odd > 50) break;\n"
     "        t++;\n"
     "    }\n"
     "    cout << s << \" \" << n << \" \" << odd << \" \" << t;\n"
     "    return 0;\n"
     "}\n",
     "1002 334 64 7"},
    // A struct or an array assigned whole while an expression holds one of its members or elements: the
    // copy goes into the members in place, and the expression reads the new value.
    {"struct P { int n = 1; int v[3]; };\n"
     "struct Q { P b[2]; };\n"
     "Q gq, gr;\n"
     "int reset() { gq = gr; return 5; }\n"
     "int first(P p) { return p.n; }\n"
     "int main() {\n"
     "    gq.b[1].n = 40;\n"
     "    gr.b[1].n = 7;\n"
     "    int x = gq.b[1].n + reset();\n"
     "    P s, t;\n"
     "    s.v[1] = 3;\n"
     "    t.v[1] = 4;\n"
     "    t.n = 20;\n"
     "    int y = s.v[1] + first(s = t);\n"
     "    cout << x << \" \" << gq.b[1].n << \" \" << y << \" \" << s.v[1];\n"
     "    return 0;\n"
     "}\n",
     "12 7 24 4"},
};

TEST(FastPathTest, scalarsComeOutAsTheValuesComputeThem) {
    for (const Case& c : SCALAR_CASES) {
        ProgramRun run = runText(c.program);
        EXPECT_EQ(run.message, "") << c.program;
        EXPECT_EQ(run.out, c.out) << c.program;
    }
}

// Recursions as deep as the interpreter took them before its plans, of a body that runs as a plan and of
// one that does not: a level of either must not take more of the stack. The sanitizers' frames are larger.
TEST(FastPathTest, deepRecursionsKeepTheirRoom) {
#if TARN_SANITIZED
    const char* depth = "5000";
#else
    const char* depth = "50000";
#endif
    ProgramRun run = runText(std::string("int down(int n) { if (n < 1) return 0; return down(n - 1) + 1; }\n"
                                         "int walk(int n) {\n    int k = n * 2;\n    if (n < 1) return 0;\n"
                                         "    return walk(n - 1) + 1;\n}\n"
                                         "int main() {\n    cout << down(") +
                             depth + ") << \" \" << walk(" + depth + ");\n    return 0;\n}\n");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, std::string(depth) + " " + depth);
}

TEST(FastPathTest, failuresOfScalarsKeepTheirMessages) {
    ProgramRun cast = runText(
        "int code(char c) { return c; }\n"
        "int main() {\n"
        "    int v = 300;\n"
        "    cout << code(v);\n"
        "    return 0;\n"
        "}\n");
    EXPECT_TRUE(failsWith(cast, "[PARSE ERROR] Cannot implicit cast int to char At line 4 on statement"))
        << cast.message;
    ProgramRun beyond = runMain("Matrix A(2, 2);\ncout << A(2, 0);");
    EXPECT_TRUE(
        failsWith(beyond, "[PARSE ERROR] [INDEXRANGE] Index out of range: Matrix::operator()(2) At line"))
        << beyond.message;
    ProgramRun outside = runMain("int a[4];\nint i = -1;\ncout << a[i];");
    EXPECT_TRUE(
        failsWith(outside, "[PARSE ERROR] Run time error, index -1 out of range At line 4 on statement"))
        << outside.message;
    ProgramRun negative = runMain("Matrix A(2, 2);\nint i = -1;\ncout << A(0, i);");
    EXPECT_TRUE(failsWith(negative, "[PARSE ERROR] Run time error, column index -1 out of range At line"))
        << negative.message;
    ProgramRun division = runMain("int z = 0;\nint q = 5 / z;\ncout << q;");
    EXPECT_TRUE(failsWith(division, "[SYSERR] System Signal")) << division.message;
    EXPECT_EQ(division.out, "");
    ProgramRun inLoop = runMain("int d = 1;\nfor (int w = 3; w > -1; w--) d = 6 / w;\ncout << d;");
    EXPECT_TRUE(failsWith(inLoop, "[SYSERR] System Signal")) << inLoop.message;
    EXPECT_EQ(inLoop.out, "");
    // A plan that fails in a call's argument, in a test or in a return, after a first call that worked.
    const char* bodies[] = {"return n / z;", "if (n / z > 1) return 3; return 4;",
                            "if (n < 1) return 0; return f(n / z - 1, z) + 1;"};
    for (const char* body : bodies) {
        ProgramRun run =
            runText(std::string("int f(int n, int z) {\n    ") + body +
                    "\n}\nint main() {\n    cout << f(3, 1);\n    cout << f(4, 0);\n    return 0;\n}\n");
        EXPECT_TRUE(failsWith(run, "[SYSERR] System Signal")) << run.message;
        EXPECT_EQ(run.out, "3") << body;
    }
    // A body that runs as a plan names the statement that failed: the if of a test, the return of a value.
    ProgramRun inTest = runText(
        "int g[3];\nint at(int i) { if (g[i] > 5) return 0; return g[i + 1]; }\n"
        "int main() {\n    cout << at(0);\n    cout << at(3);\n    return 0;\n}\n");
    EXPECT_TRUE(failsWith(inTest,
                          "[PARSE ERROR] Run time error, index 3 out of range At line 2 on statement "
                          "IfStatement IfStatement 2"))
        << inTest.message;
    ProgramRun inValue = runText(
        "int g[3];\nint at(int i) { if (i > 1) return g[i + 1]; return g[i]; }\n"
        "int main() {\n    cout << at(1);\n    cout << at(2);\n    return 0;\n}\n");
    EXPECT_TRUE(failsWith(inValue,
                          "[PARSE ERROR] Run time error, index 3 out of range At line 2 on statement "
                          "ReturnStatement Return 2 [g i 1 + []]"))
        << inValue.message;
    // A loop that goes on as a plan names the statement that failed, or itself for its test.
    struct Failure {
        const char* loop;
        const char* message;
    };
    const Failure loops[] = {
        {"for (int c = 0; c < 5; c++) A(0, c) = c;",
         "[PARSE ERROR] [INDEXRANGE] Index out of range: Matrix::operator()(3) At line 4 on statement "
         "ExprElement A"},
        {"for (int r = 0; r < 5; A(r, 0) = r++) s = s + 1;",
         "[PARSE ERROR] [INDEXRANGE] Index out of range: Matrix::operator()(3) At line 4 on statement "
         "ExprElement A 4 [A (() () r p++ =]"},
        {"for (int c = 0; c < 5; c++) v[c] = c;",
         "[PARSE ERROR] Run time error, index 3 out of range At line 4 on statement ExprElement v 4 [v c [] "
         "c =]"},
        {"for (int c = 0; c < 5; c++) { s = s + 1; if (c > 1) v[c] = c; }",
         "[PARSE ERROR] Run time error, index 3 out of range At line 4 on statement ExprElement v 4 [v c [] "
         "c =]"},
        {"for (int c = 0; c < 5; c++) { if (c == 1) continue; v[c] = c; }",
         "[PARSE ERROR] Run time error, index 3 out of range At line 4 on statement ExprElement v 4 [v c [] "
         "c =]"},
        {"for (int c = 0; c < 5; c++) { if (c < 2) s = s + 1; else v[c] = c; }",
         "[PARSE ERROR] Run time error, index 3 out of range At line 4 on statement ExprElement v 4 [v c [] "
         "c =]"},
        {"for (int c = 0; c < 5; c++) { s = s + 1; if (v[c] > -1) s = s + 2; }",
         "[PARSE ERROR] Run time error, index 3 out of range At line 4 on statement IfStatement IfStatement "
         "4"},
        {"for (int r = 0; A(r, 0) < 100; r++) s = s + 1;",
         "[PARSE ERROR] [INDEXRANGE] Index out of range: Matrix::operator()(3) At line 4 on statement "
         "ForStatement"},
    };
    for (const Failure& failure : loops) {
        ProgramRun run = runMain(std::string("Matrix A(3, 3);\nint s = 0, v[3];\n") + failure.loop);
        EXPECT_TRUE(failsWith(run, failure.message)) << run.message;
    }
}

// A resident line that declares a global anew gives it another class under the plans of the source.
TEST(FastPathTest, aGlobalOfAnotherClassIsReadThroughItsValue) {
    CodeParser parser;
    Executer executer(&parser);
    CapturedStreams streams;
    const char* source = "int base = 10;\nint twice() { return base * 2; }\n";
    for (const char* line : {"cout << twice() << \" \"", "float base = 2.75", "cout << twice()"})
        EXPECT_STREQ(executer.evaluate(source, line).asCharPointer(), "") << line;
    EXPECT_EQ(streams.out.str(), "20 5");
}

// A watcher of the loop's body adds the stopper at its third pass; the stopper
// stops at the first statement it hears of.
Executer* running = 0;
int bodyPasses = 0;

void stopAtOnce(Cback&) { running->stop(); }

void watchBody(Cback& cb) {
    if (static_cast<Statement*>(cb.callData->asObject())->getLine() == 4 && ++bodyPasses == 3)
        running->addCback(TRACE_EXEC, stopAtOnce);
}

TEST(FastPathTest, aListenerThatAppearsDuringALoopStopsIt) {
    CodeParser parser;
    Executer executer(&parser);
    ASSERT_STREQ(parser
                     .parseText("int total = 0;\n"
                                "int main() {\n"
                                "    for (int i = 0; i < 1000; i++)\n"
                                "        total = total + 1;\n"
                                "    return 0;\n"
                                "}\n",
                                1)
                     .asCharPointer(),
                 "");
    running = &executer;
    bodyPasses = 0;
    executer.addCback(TRACE_EXEC, watchBody);
    String message;
    int stopped = 0;
    executer.run(message, stopped);
    EXPECT_STREQ(message.asCharPointer(), "");
    EXPECT_EQ(stopped, 1);
    EXPECT_STREQ(executer.printVariable("total").asCharPointer(), "total = \"3\"");
    running = 0;
}

}  // namespace
