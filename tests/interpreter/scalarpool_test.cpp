// The spare scalars of the executer: what is kept, and what a kept value becomes when taken.
#include "interpreter/scalarpool.h"

#include <gtest/gtest.h>

#include <memory>

#include "interpreter/all.h"

namespace {

TEST(ScalarPoolTest, aKeptValueComesBackWithTheNewNameAndValueInItsClassForm) {
    ScalarPool pool;
    IntVar* kept = new IntVar(5);
    kept->setName("a much longer name");
    ASSERT_TRUE(pool.keep(kept));
    std::unique_ptr<ScalarVar> taken(pool.take(ScalarVar::INT_LEVEL, -7.9, String("n")));
    EXPECT_EQ(taken.get(), kept);
    EXPECT_EQ(taken->number(), -7.0);
    EXPECT_STREQ(taken->getName().asCharPointer(), "n");
    // Nothing of that class kept: a new value.
    std::unique_ptr<ScalarVar> made(pool.take(ScalarVar::CHAR_LEVEL, 200, String("c")));
    EXPECT_EQ(made->isA(), &class_CharVar);
    EXPECT_EQ(made->number(), -56.0);
}

TEST(ScalarPoolTest, refusesWhatItCouldNotReuse) {
    ScalarPool pool;
    double element = 3.0;
    FloatVar alias(&element);
    EXPECT_FALSE(pool.keep(&alias)) << "an alias would write into what it aliases";
    IntVar referred(1);
    VarReference reference(&referred);
    EXPECT_FALSE(pool.keep(&referred));
    EXPECT_FALSE(pool.keep(&reference));
    EXPECT_FALSE(pool.keep(0));
    for (int i = 0; i < 64; ++i) ASSERT_TRUE(pool.keep(new FloatVar(i)));
    FloatVar beyond(1.0);
    EXPECT_FALSE(pool.keep(&beyond)) << "the pool keeps a bounded number";
}

}  // namespace
