// Block diagram nodes: stream forms old and new, the block's operator from its texts, files, title lists and
// messages.
#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <string>

#include "../quill/iotest.h"
#include "algebra/algebra.h"
#include "control/discdyn.h"
#include "model/blockicon.h"
#include "model/termicon.h"
#include "model/titleicon.h"
#include "quill/cback.h"
#include "texts.h"
#include "trellis/ask.h"

namespace {

template <class T>
T* roundTrip(const std::string& text) {
    std::string error;
    Object* read = readText(text, &error);
    EXPECT_NE(read, nullptr) << error;
    return dynamic_cast<T*>(read);
}

// The stored text without the last fields before the object's closing brace.
std::string withoutTail(const std::string& text, const char* tail) {
    return std::regex_replace(text, std::regex(std::string(tail) + "\\}\\n$"), "}\n");
}

BlockIcon* discreteBlock() {
    BlockIcon* block = new BlockIcon;
    block->setFromOperator(DiscDynOp(Matrix("[0.5]"), Matrix("[1]"), Matrix("[2]"), Matrix("[0]"), 0.1), "G");
    return block;
}

TEST(NodeStream, BlockKeepsItsModelAndReadsTheOlderContinuousForm) {
    BlockIcon* block = discreteBlock();
    std::string text = storedText(*block);
    BlockIcon* read = roundTrip<BlockIcon>(text);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(str(read->nodeName()), "G");
    EXPECT_EQ(str(read->blockData().aText), str(block->blockData().aText));
    EXPECT_TRUE(read->isDiscrete());
    EXPECT_DOUBLE_EQ(read->samplingTime(), 0.1);
    EXPECT_EQ(read->inputDimension(), 1);
    EXPECT_TRUE(read->isFileLoaded());

    // A copy, as the editor's paste makes, owns its own model.
    BlockIcon* copy = CAST(BlockIcon, block->deepCopy());
    copy->blockData().setName("H");
    EXPECT_EQ(str(block->blockData().name()), "G");
    EXPECT_EQ(str(copy->blockData().dText), str(block->blockData().dText));
    delete copy;

    BlockIcon* old = roundTrip<BlockIcon>(withoutTail(text, "1 \\S+ "));
    ASSERT_NE(old, nullptr);
    EXPECT_FALSE(old->isDiscrete());
    EXPECT_EQ(old->samplingTime(), 0.0);
    EXPECT_EQ(str(old->blockData().dText), str(block->blockData().dText));
    for (Object* ob : {static_cast<Object*>(block), static_cast<Object*>(read), static_cast<Object*>(old)})
        delete ob;
}

TEST(NodeStream, TerminalsAndTitleKeepTheirTexts) {
    SumIcon sum;
    sum.setNodeName("s1");
    sum.setDescription("error signal");
    sum.setInputDimension(2);
    SumIcon* readSum = roundTrip<SumIcon>(storedText(sum));
    ASSERT_NE(readSum, nullptr);
    EXPECT_EQ(str(readSum->description()), "error signal");
    EXPECT_EQ(readSum->inputDimension(), 2);
    delete readSum;

    TitleIcon title("plant");
    title.setInputList("d1, u1");
    title.setSystemLabel("Discrete System 0.25");
    title.setStateList("2 -1");
    std::string text = storedText(title);
    TitleIcon* read = roundTrip<TitleIcon>(text);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(str(read->titleName()), "plant");
    EXPECT_EQ(str(read->inputList()), "d1, u1");
    EXPECT_DOUBLE_EQ(read->samplingTime(), 0.25);
    EXPECT_EQ(str(read->stateList()), "2 -1");
    EXPECT_FALSE(read->isDeletable());
    delete read;

    // An empty name stored by an older editor reads as the default one.
    TitleIcon* unnamed = roundTrip<TitleIcon>(std::regex_replace(text, std::regex("\"plant\""), "\"\""));
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(str(unnamed->titleName()), "TITLE");
    EXPECT_EQ(str(unnamed->nodeName()), "TITLE");
    delete unnamed;

    // Without the state list the title is one of an older editor.
    unnamed = roundTrip<TitleIcon>(withoutTail(text, "\\S+\\{\\d+ \\d+ \"2 -1\"\\}\\n"));
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(str(unnamed->stateList()), "");
    EXPECT_EQ(str(unnamed->inputList()), "d1, u1");
    delete unnamed;
}

// A block from texts; the operator's messages go to the error stream.
struct Built {
    std::string messages;
    DynOp* op;
    Built(const char* a, const char* b, const char* c, const char* d) {
        BlockIcon block;
        block.blockData().aText = a;
        block.blockData().bText = b;
        block.blockData().cText = c;
        block.blockData().dText = d;
        testing::internal::CaptureStderr();
        op = block.blockOperator();
        messages = testing::internal::GetCapturedStderr();
    }
    ~Built() { delete op; }
};

TEST(BlockOperator, SizeFaultsAreReportedInOrderAndLeftOut) {
    Built wrong("[1 2 3;4 5 6]", "[1;1]", "[1 1]", "[1 2]");
    EXPECT_EQ(
        wrong.messages,
        " A matrix not square\n"
        " The C matrix has not the same number of columns of the A matrix\n"
        " The D matrix has not the same number of rows and columns of the B or C matrices, respectively\n");
    EXPECT_EQ(wrong.op->order(), 0u);

    Built badD("[-1]", "[1]", "[1]", "[1 2]");
    EXPECT_EQ(badD.op->order(), 1u);
    EXPECT_EQ(badD.op->inputNumber(), 1u);

    BlockIcon block;
    OrderedCltn values;
    for (const char* v : {"G", "[-1]", "[1]", "[1 1]", "[1 2]", "", "1, 1"}) values.add(*new String(v));
    int status = 0;
    EXPECT_EQ(str(block.checkParameters(0, values, status)),
              "Error\n\n The C matrix has not the same number of columns of the A matrix\n"
              " The D matrix has not the same number of rows and columns of the B or C matrices, respectively"
              "\n\nIgnore error ?");
    values.deleteContents();

    Built gain("", "", "", "[1 2;3 4;5 6]");
    EXPECT_EQ(gain.messages, "");
    EXPECT_TRUE(gain.op->isStaticGain());
    EXPECT_EQ(gain.op->outputNumber(), 3u);
    EXPECT_EQ(gain.op->inputNumber(), 2u);
}

TEST(BlockOperator, MatrixTextsInTheirFormsGiveOneMatrix) {
    for (const char* a : {"[1 2;3 4]", "[ 1, 2 ; 3, 4 ]", "[1 2 ;3 4 ]"}) {
        SCOPED_TRACE(a);
        Built built(a, "[1;0]", "[0 1]", "");
        EXPECT_EQ(built.messages, "");
        EXPECT_EQ(built.op->stateA(), Matrix("[1 2;3 4]"));
    }
}

TEST(BlockOperator, InitialStateOfAnotherLengthIsIgnored) {
    BlockIcon block;
    block.blockData().aText = "[1 0;0 2]";
    block.blockData().x0Text = "[1 2]";
    EXPECT_EQ(block.initialStateVector(), Matrix("[1;2]"));
    block.blockData().x0Text = "[1 2 3]";
    testing::internal::CaptureStderr();
    EXPECT_EQ(block.initialStateVector().elementCount(), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Warning the number of intial conditions is uncorrenct\n");
}

TEST(BlockFile, OperatorIsLoadedAndOtherClassesRefused) {
    std::string dir = testing::TempDir();
    std::string model = dir + "plant.dyn", matrix = dir + "gain.dyn";
    Algebra files;
    ASSERT_TRUE(files.storeToFile(
        DiscDynOp(Matrix("[0.1]"), Matrix("[1 0]"), Matrix("[1]"), Matrix("[0 0]"), 0.5), model.c_str()));
    ASSERT_TRUE(files.storeToFile(Matrix("[1 2]"), matrix.c_str()));

    BlockIcon block(true);
    EXPECT_EQ(block.loadBlockFile(model.c_str()), nullptr);
    EXPECT_EQ(str(block.nodeName()), "plant");
    EXPECT_EQ(block.inputDimension(), 2);
    EXPECT_EQ(block.outputDimension(), 1);
    EXPECT_TRUE(block.isDiscrete());
    EXPECT_DOUBLE_EQ(block.samplingTime(), 0.5);
    EXPECT_EQ(BlockIcon::usedNames().back(), "plant");
    // Printed to 17 digits, the matrix reads back exactly.
    DynOp* op = block.blockOperator();
    EXPECT_EQ(op->stateA(), Matrix("[0.1]"));
    delete op;

    testing::internal::CaptureStderr();
    const char* refusal = block.loadBlockFile(matrix.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Invalid class loaded Matrix\n");
    EXPECT_STREQ(refusal, "Invalid class loaded Matrix");
    std::remove(model.c_str());
    std::remove(matrix.c_str());
}

// Answers the file window with a fixed name, or cancels it; keeps what it was shown.
struct FileAnswer : DialogAnswerer {
    std::string file, proposed, shown;
    void message(int, const char*, const char* text) override { shown += text; }
    bool question(const char*, const char*, bool byDefault) override { return byDefault; }
    bool fileName(const char*, const char*, const char*, bool, String& name) override {
        proposed = name.asCharPointer();
        name = file.c_str();
        return !file.empty();
    }
};

TEST(BlockFile, WindowStartsAtHomeAndLoadsTheChosenFile) {
    std::string dir = testing::TempDir(), model = dir + "loop.dyn";
    Algebra files;
    ASSERT_TRUE(
        files.storeToFile(DynOp(Matrix("[-1]"), Matrix("[1]"), Matrix("[1]"), Matrix("[0]")), model.c_str()));
    std::string home = getenv("HOME") ? getenv("HOME") : "";
    FileAnswer answer;
    DialogAnswerer* former = setDialogAnswerer(&answer);
    BlockIcon block(true);

    setenv("HOME", dir.c_str(), 1);
    EXPECT_FALSE(block.chooseBlockFile());  // cancelled
    EXPECT_EQ(answer.proposed, dir + "/");

    setenv("HOME", "/no/such/folder", 1);
    answer.file = model;
    EXPECT_TRUE(block.chooseBlockFile());
    EXPECT_EQ(answer.shown, "Directory does not exist\n\n/no/such/folder");
    EXPECT_EQ(str(block.nodeName()), "loop");
    EXPECT_EQ(str(block.blockFile()), model);

    setDialogAnswerer(former);
    setenv("HOME", home.c_str(), 1);
    std::remove(model.c_str());
}

TEST(TitleIcon, ListsCountTheirGroups) {
    struct Case {
        const char* text;
        size_t names;
        int first, second;
    } cases[] = {{"u1 u2 , d1", 3, 2, 3}, {"u1\tu2 u3", 3, 3, 3}, {"a, b, c d", 4, 1, 2}, {"  ", 0, 0, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        int first, second;
        EXPECT_EQ(TitleIcon::splitList(c.text, first, second).size(), c.names);
        EXPECT_EQ(first, c.first);
        EXPECT_EQ(second, c.second);
    }
}

// Records the order of the title's events.
void note(Cback& cb) { *static_cast<String*>(cb.userData) += String(cb.event); }

TEST(TitleIcon, EmptyNameIsRefusedAndApplyIsAnnounced) {
    TitleIcon title("plant");
    OrderedCltn values;
    for (const char* v : {"  ", "", "", "", ""}) values.add(*new String(v));
    int status = 0;
    EXPECT_EQ(str(title.checkParameters(0, values, status)), "Fatal Error\n\nTitle name cannot be empty");
    EXPECT_EQ(status, 1);

    *CAST(String, values.at(0)) = " model ";
    *CAST(String, values.at(3)) = "u1 u2";
    EXPECT_EQ(str(title.checkParameters(0, values, status)), "");
    String heard;
    title.addCback(IconChanging, note, &heard);
    title.addCback(IconChanged, note, &heard);
    OrderedCltn labels, none;
    int count;
    EXPECT_EQ(title.iconParameters(1, labels, none, count), 0);
    EXPECT_EQ(str(heard), "IconChangingIconChanged");
    EXPECT_EQ(str(title.titleName()), "model");
    EXPECT_EQ(str(title.inputList()), "u1 u2");
    values.deleteContents();
}

TEST(ModelNode, ErrorTextByKind) {
    struct Case {
        const char* kind;
        const char* text;
        const char* message;
    } cases[] = {{"warning", "w", "Warning\n\nw"},
                 {"fatal", "f", "Fatal Error\n\nf"},
                 {"error", "a,b", "Error\n\na\nb\n\nIgnore error ?"},
                 {"noerror", "'x, y',z", "Error\n\nx, y\nz\n\nIgnore error ?"},
                 {"noerror", "", ""},
                 {"warning", "", ""}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(str(ModelNode::errorText(c.kind, c.text)), c.message);
    }
}

}  // namespace
