// A method of a numeric value called in a loop: the row count of a matrix.
int main() {
    Matrix A(3, 4);
    int sum = 0;
    for (int i = 0; i < 200000; i++) sum = sum + A.rowNumber();
    cout << sum << endl;
    return 0;
}
