// Globals are made in source order before main; their initialisers may call functions.
int square(int x) { return x * x; }
int counter = 0;
int next() {
    counter++;
    return counter;
}
int first = next();
int second = next() * 10;
int area = square(first + second);
string label = "g";
void show() { cout << label << " " << first << " " << second << " " << area << " " << counter << endl; }
int main() {
    show();
    label = label + "!";
    counter = 100;
    show();
    return 0;
}
