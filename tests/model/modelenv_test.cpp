// Starts the library, and with it the toolkit on Qt's offscreen platform, for the model editors' tests.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class ModelEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "model_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const modelEnvironment = ::testing::AddGlobalTestEnvironment(new ModelEnvironment);

}  // namespace
