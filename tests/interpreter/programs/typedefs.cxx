// Typedefs: aliases of types, of arrays and of structs, and conversions written with them.
typedef float Real;
typedef int Triple[3], Pair[2];
struct Cell { int value = 1; };
typedef Cell Box;
Real half(Real x) { return x / 2; }
int main() {
    Real r = 3;
    Triple t;
    Pair p;
    t[2] = 9;
    p[1] = t[2] + 1;
    Box b;
    cout << r << " " << half(r) << " " << t[2] << " " << p[1] << " " << t.size() << p.size() << endl;
    cout << Real(7) / 2 << " " << b.value << endl;
    return 0;
}
