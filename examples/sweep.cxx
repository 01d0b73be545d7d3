// A mass on a spring, m x'' + 0.1 x' + x = w + u, under the velocity feedback u = -0.1 x': the
// closed loop swept over the uncertain mass of mass.txt.  tarn -run sweep.cxx
int main() {
    Matrix A(2, 2);
    A << 0 << 1 << -1 << -0.1;
    Matrix B(2, 2);
    B << 0 << 0 << 1 << 1;
    Matrix C(2, 2);
    C << 1 << 0 << 0 << 1;
    Matrix D(2, 2);
    DynOp plant(A, B, C, D, 1, 1);
    Matrix K(1, 1);
    K << 0.1;
    DynOp feedback = K;
    Vector worst = plant.sweep(feedback, "mass.txt", 5, 20);
    cout << "worst norm " << worst(0) << ", mass " << 1 / worst(3) << endl;
    cout << "at omega " << worst(1) << endl;
    return 0;
}
