// The spring-mass plant sampled with a zero-order hold at 10 Hz, and a filter written in z.
// tarn -run sampled.cxx
int main() {
    RationalFunction G = 1 / (s * s + 0.4 * s + 4);
    DynOp plant = G;
    DiscDynOp sampled(plant, 0.1);
    cout << "sampling time " << sampled.samplingTime() << endl;
    cout << "poles: re, im, magnitude, decay, frequency" << sampled.eig() << endl;
    sampled.zpk();
    cout << "Hinf norm (indicator) " << sampled.normHinf() << ", continuous " << plant.normHinf() << endl;

    RationalFunction average = (z + 1) / (2 * z);
    DiscDynOp filter(average, 0.1);
    DiscDynOp filtered = filter * sampled;
    cout << "filtered order " << filtered.order() << ", sampling time " << filtered.samplingTime() << endl;
    filtered.zpk();
    return 0;
}
