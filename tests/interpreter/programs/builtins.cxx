// The mathematical built-ins, and the numeric settings that answer 0.
int main() {
    cout << sin(0) << " " << cos(0) << " " << sqrt(16) << " " << pow(2, 8) << " " << abs(-2.5) << endl;
    cout << exp(0) << " " << log(1) << " " << log10(1000) << " " << atan(0) << " " << tan(0) << endl;
    cout << asin(1) * 2 << " " << acos(1) << endl;
    cout << tollZeros(0.001) << " " << tollPoles(0.01) << " " << wMin(0.1) << endl;
    return 0;
}
