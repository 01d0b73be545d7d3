// A returned value that its type cannot take: the int 300 is no char.
char code(int i) { return i; }
int main() {
    cout << code(66) << endl;
    cout << code(300) << endl;
    return 0;
}
