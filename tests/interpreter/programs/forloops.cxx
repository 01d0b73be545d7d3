// for with break and continue: the markers stop at the innermost for, a return passes through.
int firstOver(int limit) {
    for (int i = 0;; i++)
        if (i * i > limit) return i;
    return -1;
}
int main() {
    for (int i = 0; i < 10; i++) {
        if (i % 2 == 1) continue;
        if (i > 6) break;
        cout << i;
    }
    cout << endl;
    for (int r = 0; r < 3; r++) {
        for (int c = 0; c < 3; c++) {
            if (c > r) break;
            cout << r << c << " ";
        }
    }
    cout << endl;
    int n = 0;
    for (;;) {
        n++;
        if (n == 5) break;
    }
    cout << n << " " << firstOver(50) << endl;
    int total = 0;
    for (int k = 10; k > 0; k = k - 3) total += k;
    cout << total << endl;
    for (int e = 0; e < 3; e++);
    int sum = 0;
    for (int a = 0; a < 4; a++) for (int b = 0; b < 4; b++) { if (b == a) continue; sum += 1; }
    cout << sum << endl;
    return 0;
}
