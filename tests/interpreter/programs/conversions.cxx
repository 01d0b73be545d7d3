// Conversions and ranks: who handles a mixed operation, and the constructors.
int main() {
    int i = 3.7;
    int n = -3.7;
    float f = 7 / 2;
    float g = 7 / 2.0;
    cout << i << " " << n << " " << f << " " << g << endl;
    cout << 1 + 2.5 << " " << 2.5 + 1 << " " << 'a' + 1 << " " << 10 / 4 * 1.0 << endl;
    char c = 'a';
    char d = c;
    d += 1;
    cout << d << " " << int(c) << " " << int('\65') << " " << int('\n') << endl;
    char e = 90;
    e += 1;
    cout << e << endl;
    float h = 1;
    h += 2;
    h = h / 4;
    cout << h << " " << 2.0 ^ 0.5 << " " << int(2.9) << " " << float(1) / 3 << endl;
    int big = 2147483647;
    big = big + 1;
    cout << big << " " << 4294967297 << endl;
    string s = "con";
    s = s + "cat";
    cout << s << " " << int(s == "concat") << int("abc" < "abd") << int("b" > "abc") << endl;
    cout << "tab\tand \"quotes\" \\ \65" << endl;
    if (c) cout << "a char condition" << endl;
    int k = 2;
    if (k) cout << "an int variable condition" << endl;
    if (1) cout << "a small literal" << endl;
    return 0;
}
