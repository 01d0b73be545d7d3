// Random, the uniform generator of doubles, and RandomLinear, RandomExp and RandomGauss on it.
#ifndef QUILL_RANDOM_H
#define QUILL_RANDOM_H

#include <cstdint>

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Random;
extern Class class_RandomLinear;
extern Class class_RandomExp;
extern Class class_RandomGauss;

// The same seed gives the same sequence on every platform. A generator made
// with a quantum answers multiples of it (RandomLinear: min plus a multiple);
// without one its answers are continuous.
class Random : public Object {
    DECLARE_MEMBERS(Random)
public:
    explicit Random(unsigned long seed = 1);
    // Stream form: the seed, the state and the quantum; a generator read
    // goes on with the sequence where the stored one stood.
    Random(std::istream& is, Object* where);
    Random(BinIstream& is, Object* where);

    void reseed(unsigned long seed);
    unsigned long seed() const { return startSeed; }
    double quantum() const { return step; }  // 0 when continuous

    // Uniform in [0, 1).
    double uniform();
    // The generator's own distribution; for Random, uniform.
    virtual double next();
    double operator()() { return next(); }

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

protected:
    // Raises ASSERTFLD "quantum > 0.0" unless q is positive.
    void setQuantum(double q);
    // x rounded to the nearest multiple of the quantum, when there is one.
    double quantize(double x) const;

private:
    unsigned long startSeed;
    std::uint64_t state;
    double step;
};

// Uniform in [min, max); with a quantum, min + k * quantum up to max.
class RandomLinear : public Random {
    DECLARE_MEMBERS(RandomLinear)
public:
    // Raise ASSERTFLD "min <= max" (and "quantum > 0.0").
    RandomLinear(double min = 0.0, double max = 1.0, unsigned long seed = 1);
    RandomLinear(double min, double max, double quantum, unsigned long seed);
    RandomLinear(std::istream& is, Object* where);
    RandomLinear(BinIstream& is, Object* where);

    double min() const { return low; }
    double max() const { return high; }
    double next() override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double low;
    double high;
};

// Exponential with the given mean: the waits of a Poisson process.
class RandomExp : public Random {
    DECLARE_MEMBERS(RandomExp)
public:
    explicit RandomExp(double mean = 1.0, unsigned long seed = 1);
    RandomExp(double mean, double quantum, unsigned long seed);  // "quantum > 0.0"
    RandomExp(std::istream& is, Object* where);
    RandomExp(BinIstream& is, Object* where);

    double mean() const { return average; }
    double next() override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double average;
};

// Normal with the given mean and standard deviation.
class RandomGauss : public Random {
    DECLARE_MEMBERS(RandomGauss)
public:
    RandomGauss(double mean = 0.0, double sigma = 1.0, unsigned long seed = 1);
    RandomGauss(double mean, double sigma, double quantum, unsigned long seed);  // "quantum > 0.0"
    RandomGauss(std::istream& is, Object* where);
    RandomGauss(BinIstream& is, Object* where);

    double mean() const { return average; }
    double sigma() const { return deviation; }
    double next() override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double average;
    double deviation;
};

// A generator for code that needs no sequence of its own; made on first use.
Random& defaultRandom();
// Frees it; the next use makes a new one.
void deleteDefaultRandom();

#endif
