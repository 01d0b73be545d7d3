// Recursion: a prototype before its definition, mutual recursion, deep chains.
int isOdd(int n);
int isEven(int n) {
    if (n == 0) return 1;
    return isOdd(n - 1);
}
int isOdd(int n) {
    if (n == 0) return 0;
    return isEven(n - 1);
}
int fib(int n) {
    if (n < 2) return n;
    else return fib(n - 1) + fib(n - 2);
}
float factorial(int n) {
    if (n <= 1) return 1;
    return n * factorial(n - 1);
}
int ackermann(int m, int n) {
    if (m == 0) return n + 1;
    if (n == 0) return ackermann(m - 1, 1);
    return ackermann(m - 1, ackermann(m, n - 1));
}
int depth(int n) {
    if (n == 0) return 0;
    return 1 + depth(n - 1);
}
int main() {
    cout << fib(20) << " " << factorial(10) << " " << ackermann(2, 3) << endl;
    cout << isEven(10) << isOdd(7) << isEven(7) << " " << depth(2000) << endl;
    return 0;
}
