// A position loop: a mass with friction, x'' + x' = w + u, measured y = x and controlled by
// u = -K y. The closed loop from the disturbance w to the position z = x.  tarn -run loop.cxx
int main() {
    Matrix A(2, 2), B(2, 2), C(2, 2), D(2, 2);
    A << 0 << 1 << 0 << -1;
    B << 0 << 0 << 1 << 1;
    C << 1 << 0 << 1 << 0;
    DynOp plant(A, B, C, D, 1, 1);
    cout << "controls " << plant.controlNumber() << ", measures " << plant.measureNumber() << endl;
    for (int K = 1; K <= 4; K++) {
        DynOp controller = K;
        DynOp loop = plant.outputFeedback(controller);
        cout << "K = " << K << ": ";
        loop.zpk();
        cout << "  H2 norm from w to z " << loop.normH2() << endl;
    }
    DynOp loop = plant.outputFeedback(DynOp(2));
    cout << "closed-loop poles for K = 2" << loop.eig() << endl;
    return 0;
}
