// Starts the library once for every test of the object core.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class QuillEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "quill_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const quillEnvironment = ::testing::AddGlobalTestEnvironment(new QuillEnvironment);

}  // namespace
