// A million int additions with a remainder: the cost of a loop pass.
int main() {
    int sum = 0;
    for (int i = 0; i < 1000000; i++) sum = sum + i % 7;
    cout << sum << endl;
    return 0;
}
