// Starts the library once for every test of the dynamical systems.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class ControlEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "control_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const controlEnvironment =
    ::testing::AddGlobalTestEnvironment(new ControlEnvironment);

}  // namespace
