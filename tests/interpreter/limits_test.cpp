// Programs that used to kill the process or lose a file: endless recursion,
// deep nesting and values too big for the memory end with a message, and the
// executer lives on; a file stream killed part-way leaves the old file.
#include <gtest/gtest.h>

#include <string>

#include "../quill/killwrit.h"
#include "quill/objalloc.h"
#include "runtext.h"

namespace {

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// It overflowed the stack with a segmentation fault, no message.
TEST(LimitsTest, recursionWithoutEndStopsWithTheFunctionAndItsDepth) {
    const char* source = "int f(int n) { return f(n + 1) + 1; }\n";
    CapturedStreams streams;
    CodeParser parser;
    Executer executer(&parser);
    std::string message = executer.evaluate(source, "int x = f(0);").asCharPointer();
    ASSERT_TRUE(contains(message, "[RUN-TIME ERROR] Recursion too deep: f called at depth ")) << message;
    int depth = std::stoi(message.substr(message.find("depth ") + 6));
    EXPECT_GE(depth, 10000);
    // The resident executer takes the next line as if nothing happened.
    EXPECT_STREQ(executer.evaluate(source, "cout << 7;").asCharPointer(), "");
    EXPECT_EQ(streams.out.str(), "7");
}

// The parameters kept for calls bound again in place go with a recursion that went too deep; the
// function then runs again from the top.
TEST(LimitsTest, aRecursionTooDeepLeavesItsFunctionCallable) {
    const char* source = "int down(int n) { if (n < 1) return 0; return down(n - 1) + 1; }\n";
    CapturedStreams streams;
    CodeParser parser;
    Executer executer(&parser);
    EXPECT_STREQ(executer.evaluate(source, "cout << down(50);").asCharPointer(), "");
    std::string message = executer.evaluate(source, "int x = down(100000000);").asCharPointer();
    EXPECT_TRUE(contains(message, "[RUN-TIME ERROR] Recursion too deep: down called at depth ")) << message;
    EXPECT_STREQ(executer.evaluate(source, "cout << down(60);").asCharPointer(), "");
    EXPECT_EQ(streams.out.str(), "5060");
}

TEST(LimitsTest, tenThousandCallsOfASimpleFunctionRun) {
    ProgramRun run = runText(
        "int down(int n) { if (n == 0) return 0; return down(n - 1) + 1; }\n"
        "int main() { cout << down(10000); return 0; }\n");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "10000");
}

TEST(LimitsTest, nestingBeyondTheStackIsAParseError) {
    const size_t depth = 1000000;
    std::string parens =
        "int main() { int a; a = " + std::string(depth, '(') + "1" + std::string(depth, ')') + "; }\n";
    std::string blocks = "int main() { " + std::string(depth, '{') + std::string(depth, '}') + " }\n";
    for (const std::string& source : {parens, blocks}) {
        ProgramRun run = runText(source);
        EXPECT_TRUE(contains(run.message, "[PARSE ERROR] Nesting too deep at line 1")) << run.message;
    }
}

// int a[100000][100000] corrupted the heap; a matrix or a string beyond the
// memory were allocated and touched until the system killed the process.
TEST(LimitsTest, valuesBeyondTheMemoryLimitAreRefused) {
    size_t before = allocationLimit();
    setAllocationLimit(64 << 20);
    const struct {
        const char* body;
        const char* message;
    } rows[] = {
        {"int a[100000][100000];", "[PARSE ERROR] Array int[100000][100000] too big: about "},
        {"Matrix A(100000, 100000);",
         "[ALLOCFAIL] Not enough memory -- NEW failed: requested 80000000000 bytes"},
        {"Vector v(100000000, 1.0);",
         "[ALLOCFAIL] Not enough memory -- NEW failed: requested 800000000 bytes"},
        {"string s = \"abcdefgh\"; int i; for (i = 0; i < 40; i++) s = s + s;",
         "[ALLOCFAIL] Not enough memory"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        ProgramRun run = runText(std::string("int main() { ") + row.body + " return 0; }\n");
        EXPECT_TRUE(contains(run.message, row.message)) << run.message;
    }
    setAllocationLimit(before);
}

TEST(LimitsTest, aKilledOutputStreamLeavesTheOldFile) {
    std::string path = "/tmp/tarn_limits_ostream.txt";
    std::string program = "int main() { ostream out(\"" + path +
                          "\"); int i; for (i = 0; i < 1000; i++) out << \"a line of the new file\" << endl; "
                          "out.close(); return 0; }\n";
    EXPECT_EQ(oldFileSurvives(path, [&] { runText(program); }), "");
    ProgramRun run = runText(program);
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(fileText(path).size(), 23000u);
    std::remove(path.c_str());
}

}  // namespace
