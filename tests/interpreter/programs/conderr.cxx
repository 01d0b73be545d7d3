// A condition that holds an int beyond a char fails at run time.
int main() {
    int i = 3;
    if (i) cout << "three" << endl;
    i = 300;
    if (i) cout << "never" << endl;
    return 0;
}
