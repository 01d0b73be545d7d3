// A void function may return a void call, but "return;" gives the void value, which no return may pass on.
void nothing() { return; }
void relay() { return nothing(); }
int main() {
    nothing();
    cout << "one" << endl;
    relay();
    cout << "two" << endl;
    return 0;
}
