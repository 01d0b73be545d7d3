// += on strings passes the parser and fails when it runs.
int main() {
    string s = "a";
    cout << s << endl;
    s += "b";
    return 0;
}
