// A slow mode and a fast, weak one: balanced truncation keeps the slow mode.  tarn -run reduce.cxx
int main() {
    RationalFunction slow = 1 / (s + 1);
    RationalFunction fast = 0.01 / (s + 50);
    DynOp full = slow + fast;
    cout << "full order " << full.order() << ", H2 norm " << full.normH2() << endl;
    full.zpk();

    DynOp balanced = full;
    int kept = balanced.balancedRealization(1e-3);
    cout << "states above the threshold " << kept << endl;
    balanced.zpk();
    DynOp error = full - balanced;
    cout << "error of the balanced model " << error.normH2() << endl;

    DynOp first = full.reduceOrder(1);
    error = full - first;
    cout << "truncated without balancing, error " << error.normH2() << endl;
    return 0;
}
