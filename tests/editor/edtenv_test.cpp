// Starts the library, and with it the toolkit on Qt's offscreen platform, for the editor tests.
#include <gtest/gtest.h>

#include "quill/startup.h"

namespace {

class EditorEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "editor_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const editorEnvironment = ::testing::AddGlobalTestEnvironment(new EditorEnvironment);

}  // namespace
