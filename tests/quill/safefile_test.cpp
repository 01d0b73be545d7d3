// SafeFile: a file replaced whole or not at all; writers killed part-way.
#include "quill/safefile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "killwrit.h"
#include "quill/filename.h"

namespace {

class SafeFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_safeXXXXXX";
        directory = mkdtemp(pattern);
    }
    void TearDown() override { std::filesystem::remove_all(directory); }
    std::string in(const char* name) const { return directory + "/" + name; }
    mode_t modeOf(const std::string& path) const {
        struct stat info;
        return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
    }
    std::string directory;
};

std::string bigText() { return std::string(100000, 'x') + "\n"; }

std::string written(const std::string& path, const std::function<void(std::ostream&)>& writer) {
    return writeSafely(path.c_str(), writer).asCharPointer();
}

TEST_F(SafeFileTest, ReplacesTheFileKeepingItsModeAndFollowingLinks) {
    std::string path = in("model.dyn"), link = in("link.dyn");
    std::ofstream(path) << "old";
    chmod(path.c_str(), 0600);
    symlink(path.c_str(), link.c_str());
    EXPECT_EQ(written(link, [](std::ostream& os) { os << "new"; }), "");
    EXPECT_EQ(fileText(path), "new");
    EXPECT_EQ(modeOf(path), 0600u);
    EXPECT_TRUE(std::filesystem::is_symlink(link));

    SafeFile fresh(in("fresh.txt").c_str(), 0640);
    fresh.stream() << "text";
    fresh.commit();
    EXPECT_EQ(fileText(in("fresh.txt")), "text");
    EXPECT_EQ(modeOf(in("fresh.txt")), 0640u);
    EXPECT_EQ(temporariesOf(path) + temporariesOf(in("fresh.txt")), 0);
}

TEST_F(SafeFileTest, WhatFailsLeavesTheOldFileAndSaysWhy) {
    std::string path = in("model.dyn");
    std::ofstream(path) << "old";
    {
        SafeFile abandoned(path.c_str());
        abandoned.stream() << "never committed";
    }
    EXPECT_EQ(fileText(path), "old");
    EXPECT_EQ(temporariesOf(path), 0);

    EXPECT_EQ(written(path, [](std::ostream&) { setError(GENERICERR, SEV_ERROR, "W", "x", "", ""); }),
              "[W] x");
    EXPECT_EQ(fileText(path), "old");
    std::string missing = in("no/such/dir/m.dyn");
    EXPECT_EQ(written(missing, [](std::ostream&) {}),
              "[CANNOT_OPEN] cannot open file " + missing + " for writing: No such file or directory");
    // A device is written, never replaced.
    EXPECT_EQ(written("/dev/full", [](std::ostream& os) { os << bigText(); }),
              "[CANNOT_WRITE] cannot write file /dev/full: No space left on device");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(SafeFileTest, KilledWritersLeaveTheOldFile) {
    std::string path = in("model.dyn"), source = in("source.txt");
    EXPECT_EQ(
        oldFileSurvives(path, [&] { writeSafely(path.c_str(), [](std::ostream& os) { os << bigText(); }); }),
        "");
    std::ofstream(source) << bigText();
    EXPECT_EQ(oldFileSurvives(path, [&] { errorTextOf([&] { fileCopy(source.c_str(), path.c_str()); }); }),
              "");
}

}  // namespace
