// Starts the library, and with it the toolkit on Qt's offscreen platform, for the plot tests.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class GuiEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "gui_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const guiEnvironment = ::testing::AddGlobalTestEnvironment(new GuiEnvironment);

}  // namespace
