// An index out of range stops the run with the statement's printed form.
int main() {
    int a[3];
    a[2] = 1;
    cout << "before" << endl;
    a[3] = 1;
    cout << "after" << endl;
    return 0;
}
