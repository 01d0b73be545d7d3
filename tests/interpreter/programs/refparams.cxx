// Reference and value parameters: swaps, aliasing of the caller's variable, copies left alone.
void swap(int& a, int& b) {
    int t = a;
    a = b;
    b = t;
}
int twice(int& x) {
    x = x * 2;
    return x;
}
void untouched(int x) { x = 99; }
void grow(float& f, float by) { f += by; }
int main() {
    int a = 1;
    int b = 2;
    swap(a, b);
    cout << a << " " << b << endl;
    int x = 5;
    x = twice(x) + 1;
    cout << x << endl;
    untouched(x);
    cout << x << endl;
    int v[3];
    v[1] = 4;
    swap(v[1], v[2]);
    cout << v[1] << v[2] << endl;
    float f = 1.5;
    grow(f, 2);
    cout << f << endl;
    return 0;
}
