// A negative index is out of range too, also inside a called function.
int get(int i) {
    int a[2];
    return a[i];
}
int main() {
    cout << get(1) << endl;
    cout << get(-1) << endl;
    return 0;
}
