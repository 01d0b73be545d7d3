// The Random family: a splitmix64 source and the linear, exponential and normal generators.
#include "quill/random.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/quillerr.h"

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

RandomLinear::RandomLinear(double min, double max, unsigned long seed) : Random(seed), low(min), high(max) {
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

RandomExp::RandomExp(double mean, double quantum, unsigned long seed) : Random(seed), average(mean) {
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

// Stream forms. The 64-bit words of the source go to the binary form as two
// 4-byte halves, low first.

namespace {

void put64(BinOstream& os, std::uint64_t v) { os << unsigned(v) << unsigned(v >> 32); }

std::uint64_t get64(BinIstream& is) {
    unsigned low = 0, high = 0;
    is >> low >> high;
    return std::uint64_t(high) << 32 | low;
}

}  // namespace

Random::Random(std::istream& is, Object* where) : Object(is, where), startSeed(1), state(1), step(0.0) {
    is >> startSeed >> state >> step;
}

Random::Random(BinIstream& is, Object* where) : Object(is, where), startSeed(1), state(1), step(0.0) {
    startSeed = (unsigned long)get64(is);
    state = get64(is);
    is >> step;
}

void Random::storer(std::ostream& os) const {
    Object::storer(os);
    os << startSeed << ' ' << state << ' ' << step << ' ';
}

void Random::storer(BinOstream& os) const {
    Object::storer(os);
    put64(os, startSeed);
    put64(os, state);
    os << step;
}

RandomLinear::RandomLinear(std::istream& is, Object* where) : Random(is, where), low(0.0), high(1.0) {
    is >> low >> high;
    QASSERT_TEXT(low <= high, "min <= max");
}

RandomLinear::RandomLinear(BinIstream& is, Object* where) : Random(is, where), low(0.0), high(1.0) {
    is >> low >> high;
    QASSERT_TEXT(low <= high, "min <= max");
}

void RandomLinear::storer(std::ostream& os) const {
    Random::storer(os);
    os << low << ' ' << high << ' ';
}

void RandomLinear::storer(BinOstream& os) const {
    Random::storer(os);
    os << low << high;
}

RandomExp::RandomExp(std::istream& is, Object* where) : Random(is, where), average(1.0) { is >> average; }
RandomExp::RandomExp(BinIstream& is, Object* where) : Random(is, where), average(1.0) { is >> average; }

void RandomExp::storer(std::ostream& os) const {
    Random::storer(os);
    os << average << ' ';
}

void RandomExp::storer(BinOstream& os) const {
    Random::storer(os);
    os << average;
}

RandomGauss::RandomGauss(std::istream& is, Object* where) : Random(is, where), average(0.0), deviation(1.0) {
    is >> average >> deviation;
}

RandomGauss::RandomGauss(BinIstream& is, Object* where) : Random(is, where), average(0.0), deviation(1.0) {
    is >> average >> deviation;
}

void RandomGauss::storer(std::ostream& os) const {
    Random::storer(os);
    os << average << ' ' << deviation << ' ';
}

void RandomGauss::storer(BinOstream& os) const {
    Random::storer(os);
    os << average << deviation;
}

Random& defaultRandom() {
    if (!sharedRandom) sharedRandom = new Random;
    return *sharedRandom;
}

void deleteDefaultRandom() {
    delete sharedRandom;
    sharedRandom = 0;
}
