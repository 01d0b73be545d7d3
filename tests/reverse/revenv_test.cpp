// Starts the library once for every test of the scanner and the base parser.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class ReverseEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "reverse_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const reverseEnvironment =
    ::testing::AddGlobalTestEnvironment(new ReverseEnvironment);

}  // namespace
