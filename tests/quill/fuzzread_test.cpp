// Damaged streams: every read of a mutated stream ends in an object or in an
// error text, never in a crash, a hang or a runaway allocation.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/fuzzsupport.h"
#include "iotest.h"
#include "quill/all.h"
#include "quill/objio.h"

namespace {

// Reads text as the guarded entry does, and checks the outcome.
void readDamaged(const std::string& text, bool binary) {
    String error;
    unsigned long before = bytesInUse();
    std::istringstream is(text);
    BinIstream bis(is);
    Object* ob = binary ? readFromChecked(error, bis) : readFromChecked(error, is);
    if (ob) {
        EXPECT_TRUE(validObject(ob));
        if (ob != nil) deepDelete(ob);
        return;
    }
    EXPECT_GT(error.size(), 0u);
    EXPECT_EQ(error.asCharPointer()[0], '[') << error.asCharPointer();
    // A failed read frees what it read; the texts of its error stay.
    EXPECT_LT(bytesInUse(), before + 4 * error.size() + 256) << error.asCharPointer();
}

TEST(DamagedStreamTest, EveryReadEndsInAnObjectOrAnError) {
    std::vector<Object*> seeds = seedObjects();
    std::vector<std::string> texts, binaries;
    for (Object* ob : seeds) {
        std::string t = textOf(*ob), b = binaryOf(*ob);
        if (!t.empty()) texts.push_back(t);
        if (!b.empty()) binaries.push_back(b);
    }
    ASSERT_GT(texts.size(), 20u);
    std::mt19937 rng(20261121);
    for (int round = 0; round < 4000; ++round) {
        const std::string& valid = texts[round % texts.size()];
        std::string damaged = mutate(valid, rng);
        SCOPED_TRACE(damaged);
        readDamaged(damaged, false);
        if (HasFailure()) return;
    }
    for (int round = 0; round < 2000 && !binaries.empty(); ++round) {
        std::string damaged = mutate(binaries[round % binaries.size()], rng);
        readDamaged(damaged, true);
        if (HasFailure()) return;
    }
    for (Object* ob : seeds) deepDelete(ob);
}

}  // namespace
