// A million float updates of a first-order filter.
int main() {
    float y = 0.0;
    float a = 0.999;
    for (int i = 0; i < 1000000; i++) y = a * y + 0.5 * i;
    cout << y << endl;
    return 0;
}
