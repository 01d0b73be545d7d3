// Recursive calls: fib(25) makes 242785 calls.
int fib(int n) {
    if (n < 2) return n;
    else return fib(n - 1) + fib(n - 2);
}

int main() {
    cout << fib(25) << endl;
    return 0;
}
