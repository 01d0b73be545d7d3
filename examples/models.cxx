// Models kept on files and in the workspace: a plant saved to "spring.dyn" and read back, a gain
// matrix saved by name.  tarn -run models.cxx
int main() {
    RationalFunction G = 2 / (s * s + 0.4 * s + 4);
    DynOp spring = G;
    spring.storeOn();
    DynOp copy;
    if (copy.readFrom("spring.dyn") == 1) cout << "read back spring.dyn, order " << copy.order() << endl;
    cout << "the same model: " << int(copy == spring) << endl;
    copy.zpk();

    Matrix K(1, 2);
    K << 3 << 1.5;
    K.save("gain");
    Matrix fromWorkspace;
    fromWorkspace.recover("gain");
    cout << "gain from the workspace" << fromWorkspace << endl;

    DynOp twoMass;
    if (twoMass.readFrom("twomass.dyn") == 1)
        cout << "twomass.dyn: order " << twoMass.order() << ", poles" << twoMass.eig() << endl;
    return 0;
}
