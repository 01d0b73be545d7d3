// Starts the library, and with it the toolkit on Qt's offscreen platform, once for every toolkit test.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class ToolkitEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "trellis_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const toolkitEnvironment =
    ::testing::AddGlobalTestEnvironment(new ToolkitEnvironment);

}  // namespace
