// A mass on a spring with damping, m x'' + c x' + k x = F, from its transfer function and from
// its state matrices: poles, norms and gramians.  tarn -run spring.cxx
int main() {
    float m = 1.0;
    float c = 0.4;
    float k = 4.0;
    RationalFunction G = 1 / (m * s * s + c * s + k);
    cout << "G(s) = ";
    G.zpk();
    cout << "poles" << G.poles() << endl;

    Matrix A(2, 2), B(2, 1), C(1, 2);
    A << 0 << 1 << -k / m << -c / m;
    B << 0 << 1 / m;
    C << 1 << 0;
    DynOp plant(A, B, C, 0);
    cout << "state-space poles" << plant.eig() << endl;
    cout << "order " << plant.order() << ", inputs " << plant.inputNumber() << ", outputs "
         << plant.outputNumber() << endl;
    cout << "H2 norm " << plant.normH2() << endl;
    cout << "Hinf norm (indicator) " << plant.normHinf() << endl;
    cout << "controllability gramian" << plant.contrGramian() << endl;
    cout << "observability gramian" << plant.obsGramian() << endl;

    DynOp fromG = G;
    cout << "the companion form of G: H2 norm " << fromG.normH2() << ", transfer function ";
    fromG.zpk();
    return 0;
}
