// Struct and array elements in a loop: a hundred particles moved a thousand times.
struct Particle {
    float x;
    float v = 1.0;
};

int main() {
    Particle cloud[100];
    for (int i = 0; i < 100; i++) cloud[i].v = 0.01 * i;
    for (int step = 0; step < 1000; step++)
        for (int k = 0; k < 100; k++) {
            cloud[k].x = cloud[k].x + cloud[k].v;
            if (cloud[k].x > 5.0) cloud[k].v = -cloud[k].v;
            if (cloud[k].x < 0.0) cloud[k].v = -cloud[k].v;
        }
    float centre = 0;
    for (int j = 0; j < 100; j++) centre += cloud[j].x;
    cout << "centre " << centre / 100 << endl;
    return 0;
}
