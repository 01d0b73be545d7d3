// Structs: defaults, initialisers, nesting, copies, members through references and in arrays.
struct Point {
    int x;
    float y = 2.5;
};
struct Segment {
    Point from, to;
    string name = "seg";
};
Point moved(Point p, int dx) {
    p.x = p.x + dx;
    return p;
}
void shift(Point& p) { p.y = p.y * 2; }
int main() {
    Point p;
    cout << p.x << " " << p.y << endl;
    Point q = p;
    q.x = 5;
    cout << p.x << " " << q.x << endl;
    Segment s;
    s.to.x = 3;
    s.from = q;
    cout << s.from.x << " " << s.to.x << " " << s.name << endl;
    Point r = moved(q, 10);
    cout << q.x << " " << r.x << endl;
    shift(r);
    shift(s.to);
    cout << r.y << " " << s.to.y << endl;
    Point all[3];
    all[1].x = 7;
    all[2] = all[1];
    all[2].y = 0.5;
    cout << all[0].x << all[1].x << all[2].x << " " << all[1].y << " " << all[2].y << endl;
    cout << s << endl;
    return 0;
}
