// The panel's file operations with their refusals and questions, and the batch of documents.
#include "panel/fileops.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "../trellis/trltest.h"
#include "panel/batch.h"

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

class FileOperationsTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_fileopsXXXXXX";
        root = mkdtemp(pattern);
        source = root + "/source.txt";
        target = root + "/target.txt";
        std::ofstream(source) << "text\n";
    }
    void TearDown() override { EXPECT_EQ(0, system(("rm -rf " + root).c_str())); }

    std::string root, source, target;
    Answers answers;
};

TEST_F(FileOperationsTest, eachOperationAsksThenActs) {
    answers.replies = {true};
    EXPECT_TRUE(copyFile(source.c_str(), target.c_str()));
    EXPECT_EQ("text\n", contentOf(target));
    EXPECT_EQ("Confirm to copy the file \n" + source + "\n       to\n" + target, answers.questions.at(0));

    std::string moved = root + "/moved.txt";
    answers.replies = {true};
    EXPECT_TRUE(moveFile(target.c_str(), moved.c_str()));
    EXPECT_FALSE(exists(target));
    EXPECT_EQ("text\n", contentOf(moved));
    EXPECT_EQ("Confirm to move the file \n" + target + "\n       to\n" + moved, answers.questions.at(1));

    answers.replies = {true};
    EXPECT_TRUE(removeFile(moved.c_str()));
    EXPECT_FALSE(exists(moved));
    EXPECT_EQ(moved + "\n\n  Confirm to delete the file ?", answers.questions.at(2));
    EXPECT_TRUE(answers.messages.empty());
}

TEST_F(FileOperationsTest, aNoLeavesEverythingAsItWas) {
    answers.replies = {false, false, false};
    EXPECT_FALSE(copyFile(source.c_str(), target.c_str()));
    EXPECT_FALSE(moveFile(source.c_str(), target.c_str()));
    EXPECT_FALSE(removeFile(source.c_str()));
    EXPECT_TRUE(exists(source));
    EXPECT_FALSE(exists(target));
}

TEST_F(FileOperationsTest, refusedFilesAreReportedWithoutAQuestion) {
    std::string missing = root + "/missing.txt", locked = root + "/locked.txt";
    std::ofstream(locked) << "kept\n";
    chmod(locked.c_str(), 0444);
    struct Row {
        bool (*operation)(const char*, const char*);
        std::string from, to, refusal;
    };
    const Row rows[] = {
        {copyFile, missing, target, "\n\n  The file cannot be copied."},
        {moveFile, missing, target, "\n\n  The file cannot be moved."},
        {copyFile, source, locked, "\n\n  The file cannot be overwritten."},
        {moveFile, source, locked, "\n\n  The file cannot be overwritten."},
        {[](const char* name, const char*) { return removeFile(name); }, missing, "",
         "\n\n  The file cannot be deleted."},
    };
    for (const Row& row : rows) {
        answers.messages.clear();
        EXPECT_FALSE(row.operation(row.from.c_str(), row.to.c_str())) << row.refusal;
        ASSERT_EQ(1u, answers.messages.size()) << row.refusal;
        const std::string& message = answers.messages[0];
        EXPECT_EQ(row.refusal, message.substr(message.size() - row.refusal.size())) << message;
    }
    EXPECT_TRUE(answers.questions.empty());
    EXPECT_EQ("kept\n", contentOf(locked));
    EXPECT_TRUE(exists(source));
}

TEST_F(FileOperationsTest, aBatchGoesOnPastAMissingFile) {
    std::ifstream diagram(std::string(TARN_EXAMPLES) + "/discrete.bdg");
    std::ofstream(root + "/a.bdg") << diagram.rdbuf();
    std::string list = root + "/docs.bdc";
    std::ofstream(list) << "missing.bdg\n\na.bdg\n";
    std::string log;
    EXPECT_EQ(1, buildDocuments(list.c_str(), "html", log));
    EXPECT_EQ("Build document file " + root + "/missing.bdg\n" + root +
                  "/missing.bdg not exists or cannot be read\nBuild document file " + root + "/a.bdg\n",
              log);
    log.clear();
    EXPECT_EQ(0, buildDocuments((root + "/none.bdc").c_str(), "html", log));
    EXPECT_EQ(root + "/none.bdc not exists or cannot be read\n", log);
}

}  // namespace
