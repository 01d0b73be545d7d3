// The Random family: a splitmix64 source and the linear, exponential and normal generators.
#include "quill/random.h"

#include "quill/quillerr.h"

#include <cmath>

DEFINE_CLASS(Random, Object, 1, 0)
DEFINE_CLASS(RandomLinear, Random, 1, 0)
DEFINE_CLASS(RandomExp, Random, 1, 0)
DEFINE_CLASS(RandomGauss, Random, 1, 0)

namespace {

Random* sharedRandom = 0;

const double TWO_PI = 6.283185307179586476925286766559;

}  // namespace

// Random

Random::Random(unsigned long seed) : startSeed(seed), state(seed), step(0.0) {}

void Random::reseed(unsigned long seed) {
    startSeed = seed;
    state = seed;
}

// splitmix64: every seed, 0 included, gives a full-period sequence.
double Random::uniform() {
    std::uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    return double(z >> 11) * (1.0 / 9007199254740992.0);  // 53 bits in [0, 1)
}

double Random::next() { return quantize(uniform()); }

void Random::setQuantum(double q) {
    QASSERT_TEXT(q > 0.0, "quantum > 0.0");
    step = q;
}

double Random::quantize(double x) const { return step > 0.0 ? step * std::round(x / step) : x; }

// RandomLinear

RandomLinear::RandomLinear(double min, double max, unsigned long seed)
    : Random(seed), low(min), high(max) {
    QASSERT_TEXT(min <= max, "min <= max");
}

RandomLinear::RandomLinear(double min, double max, double quantum, unsigned long seed)
    : Random(seed), low(min), high(max) {
    QASSERT_TEXT(min <= max, "min <= max");
    setQuantum(quantum);
}

double RandomLinear::next() {
    double u = uniform();
    if (quantum() <= 0.0) return low + (high - low) * u;
    double steps = std::floor((high - low) / quantum()) + 1.0;
    return low + quantum() * std::floor(u * steps);
}

// RandomExp

RandomExp::RandomExp(double mean, unsigned long seed) : Random(seed), average(mean) {}

RandomExp::RandomExp(double mean, double quantum, unsigned long seed)
    : Random(seed), average(mean) {
    setQuantum(quantum);
}

double RandomExp::next() { return quantize(-average * std::log1p(-uniform())); }

// RandomGauss

RandomGauss::RandomGauss(double mean, double sigma, unsigned long seed)
    : Random(seed), average(mean), deviation(sigma) {}

RandomGauss::RandomGauss(double mean, double sigma, double quantum, unsigned long seed)
    : Random(seed), average(mean), deviation(sigma) {
    setQuantum(quantum);
}

// Box-Muller; 1 - u keeps the logarithm away from 0.
double RandomGauss::next() {
    double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    return quantize(average + deviation * radius * std::cos(TWO_PI * uniform()));
}

Random& defaultRandom() {
    if (!sharedRandom) sharedRandom = new Random;
    return *sharedRandom;
}

void deleteDefaultRandom() {
    delete sharedRandom;
    sharedRandom = 0;
}
