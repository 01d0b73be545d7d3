// The operator table: priorities, grouping, unary operators and the power.
int main() {
    int a = 2;
    int b = 3;
    int c = 4;
    cout << a + b * c << " " << (a + b) * c << " " << a * b - c << endl;
    cout << 20 - 6 - 4 << " " << 64 / 4 / 2 << " " << 17 % 5 * 2 << endl;
    cout << 2 ^ 3 ^ 2 << " " << 2 ^ 10 << " " << a * b ^ 2 << endl;
    cout << -2 ^ 2 << " " << -a * b << " " << a ^ -b << endl;
    cout << int(a < b == 1) << " " << int(a > b || b < c && c > a) << " " << int(!a == 0) << endl;
    cout << int(a <= 2) << int(a >= 3) << int(a != b) << int(a == 2) << endl;
    cout << (5 | 2 & 3) << " " << (12 & 10) << " " << ~a << endl;
    int x;
    int y;
    int z;
    x = y = z = 7;
    cout << x << y << z << endl;
    x += y -= 2;
    cout << x << " " << y << endl;
    x = 10;
    x *= 3;
    x /= 4;
    cout << x << endl;
    x <<= 3;
    cout << x << " ";
    x >>= 2;
    cout << x << " ";
    x = 1;
    x <<= 33;
    cout << x << endl;
    int i = 5;
    int j = i++ + ++i;
    cout << i << " " << j << " " << i-- << " " << --i << " " << -i << " " << +i << endl;
    cout << (a + b) * (c - a) / 2 << " " << 7 - -2 << endl;
    return 0;
}
