// Arrays: the first written dimension is the innermost; copies, size(), references to elements.
void fill(int& cell, int value) { cell = value; }
int main() {
    int v[4];
    for (int i = 0; i < v.size(); i++) v[i] = i * i;
    cout << v[0] << v[1] << v[2] << v[3] << " " << v.size() << endl;
    int m[2][3];
    for (int r = 0; r < 3; r++)
        for (int c = 0; c < 2; c++) m[r][c] = 10 * r + c;
    cout << m.size() << " " << m[0].size() << " " << m[2][1] << " " << m[1][0] << endl;
    int w[4];
    w = v;
    v[0] = 100;
    cout << w[0] << " " << v[0] << endl;
    fill(w[3], 42);
    cout << w[3] << endl;
    float f[2];
    f[1] = 1.5;
    f[0] = f[1] * 2;
    cout << f[0] << " " << f[1] << endl;
    string names[2];
    names[0] = "a";
    names[1] = names[0] + "b";
    cout << names[1] << endl;
    int small[2];
    small[1] = 5;
    cout << small << endl;
    return 0;
}
