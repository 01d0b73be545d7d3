// An error in a global initialiser is caught like any run-time error; main never runs.
int table[2];
int bad = table[5];
int main() {
    cout << "main" << endl;
    return 0;
}
