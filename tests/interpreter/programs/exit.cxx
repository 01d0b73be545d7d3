// exit inside a function called in an expression: the run stops there, without an error.
int stopHere() {
    cout << "stopping" << endl;
    exit;
    cout << "never" << endl;
    return 1;
}
int main() {
    int x = 1 + stopHere();
    cout << "after " << x << endl;
    return 0;
}
