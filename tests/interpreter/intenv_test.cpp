// Starts the library once for every test of the interpreted language.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class InterpreterEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "interpreter_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const interpreterEnvironment =
    ::testing::AddGlobalTestEnvironment(new InterpreterEnvironment);

}  // namespace
