// The configuration: the file's keys under the command line's, its folder, binDirectory's order.
#include "panel/config.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "panel/start.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

TEST(ConfigurationTest, theCommandLineWinsAndCommentsAndCaseAreKept) {
    Configuration values;
    values.ccPath = "/given";
    std::istringstream file(
        "# jv_path=/commented\n"
        "; ds_path=/commented\n"
        "\n"
        "CC_PATH=/file\n"
        "Jv_Path=/jv\n"
        "geometry=300x200+1+2\n"
        "env=TARN_CONFIG_TEST=%HOME%\n"
        "unknown=1\n");
    readConfiguration(file, values);
    EXPECT_EQ("/given", values.ccPath);
    EXPECT_EQ("/jv", values.jvPath);
    EXPECT_EQ("", values.dsPath);
    EXPECT_EQ("300x200+1+2", values.geometry);
    EXPECT_EQ(std::string(getenv("HOME")), getenv("TARN_CONFIG_TEST"));
}

// Folders with a config.tarn and the tools, removed at the end.
class FoldersTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_configXXXXXX";
        root = mkdtemp(pattern);
        for (const char* name : {"TARN_PATH", "TARN_BIN", "BIN_PATH", "HOME"}) {
            const char* value = getenv(name);
            saved.push_back({name, value ? value : ""});
        }
        setenv("HOME", (root + "/home").c_str(), 1);
        unsetenv("TARN_PATH");
        unsetenv("TARN_BIN");
        unsetenv("BIN_PATH");
    }
    void TearDown() override {
        for (auto& pair : saved) setenv(pair.first.c_str(), pair.second.c_str(), 1);
        EXPECT_EQ(0, system(("rm -rf " + root).c_str()));
    }
    std::string folder(const std::string& name, const char* file = 0) {
        std::string path = root + "/" + name;
        EXPECT_EQ(0, system(("mkdir -p " + path).c_str()));
        if (file) std::ofstream(path + file) << "#\n";
        return path;
    }

    std::string root;
    std::vector<std::pair<std::string, std::string>> saved;
};

TEST_F(FoldersTest, theFileIsLookedForUnderTarnPathThenInTheUsersFolder) {
    EXPECT_EQ("", configurationFolder());
    std::string user = folder("home/.config/Tarn", configurationFile);
    EXPECT_EQ(user, configurationFolder());
    // An -env given before the file names its folder.
    std::string tarn = folder("tarn", configurationFile);
    putEnvironment(("TARN_PATH=" + tarn).c_str());
    EXPECT_EQ(tarn, configurationFolder());
    // The file must be writable too; root writes anything.
    chmod((tarn + configurationFile).c_str(), 0444);
    if (geteuid() != 0) {
        EXPECT_EQ(user, configurationFolder());
    }
}

TEST_F(FoldersTest, binDirectoryTakesTheFirstThatHoldsTheTool) {
    const char* tool = "/tool.sh";
    std::string base = folder("base", tool), baseBin = folder("base/bin", tool),
                tarnBin = folder("tarnbin", tool), binPath = folder("binpath", tool);
    setenv("TARN_PATH", base.c_str(), 1);
    EXPECT_EQ(baseBin, binDirectory("TARN_PATH", tool));
    setenv("TARN_BIN", tarnBin.c_str(), 1);
    EXPECT_EQ(tarnBin, binDirectory("TARN_PATH", tool));
    // TARN_BIN counts only for TARN_PATH.
    setenv("OTHER_PATH", base.c_str(), 1);
    EXPECT_EQ(baseBin, binDirectory("OTHER_PATH", tool));
    setenv("BIN_PATH", binPath.c_str(), 1);
    EXPECT_EQ(binPath, binDirectory("TARN_PATH", tool));
    unsetenv("BIN_PATH");
    unsetenv("TARN_BIN");
    EXPECT_EQ(0, system(("rm " + baseBin + tool).c_str()));
    EXPECT_EQ(base, binDirectory("TARN_PATH", tool));
    EXPECT_EQ("", binDirectory("TARN_PATH", "/no-such-tool"));
}

}  // namespace
