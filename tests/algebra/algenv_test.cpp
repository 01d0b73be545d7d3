// Starts the library once for every test of the numerical algebra.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class AlgebraEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "algebra_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const algebraEnvironment =
    ::testing::AddGlobalTestEnvironment(new AlgebraEnvironment);

}  // namespace
