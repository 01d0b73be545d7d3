// A 200 x 200 matrix filled and summed element by element, five times.
int main() {
    Matrix A(200, 200);
    float sum = 0.0;
    for (int k = 0; k < 5; k++) {
        for (int i = 0; i < 200; i++)
            for (int j = 0; j < 200; j++) A(i, j) = i + j + k;
        for (int r = 0; r < 200; r++)
            for (int c = 0; c < 200; c++) sum = sum + A(r, c);
    }
    cout << sum << endl;
    return 0;
}
