// Documents from drawings: the example drawing in every format, items merged by title, comments and
// their companions, and a directory that cannot be written.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "../quill/testutil.h"
#include "docgen/all.h"
#include "editor/drawfile.h"
#include "editor/iconmeta.h"
#include "editor/semantic.h"
#include "graphtest.h"
#include "quill/symbol.h"

namespace {

std::string has(const std::string& text, const std::string& part) {
    return text.find(part) == std::string::npos ? "missing " + part : "";
}

// A fresh directory holding a copy of the example drawing.
std::string drawingCopy() {
    std::string directory = ::testing::TempDir() + "documentXXXXXX";
    directory = mkdtemp(&directory[0]);
    std::string file = directory + "/feedback.edt";
    std::ofstream(file) << fileText(TARN_EXAMPLES "/feedback.edt");
    std::ofstream(directory + "/header.ps") << "%!PS-Adobe-2.0\n";
    setenv("TARN_HEADER_PS", directory.c_str(), 1);
    return file;
}

bool bracesBalance(const std::string& rtf) {
    int depth = 0;
    for (size_t i = 0; i < rtf.size() && depth >= 0; ++i) {
        if (rtf[i] == '\\')
            ++i;
        else if (rtf[i] == '{')
            ++depth;
        else if (rtf[i] == '}')
            --depth;
    }
    return depth == 0;
}

std::string asciiOf(const Section& section) {
    Section root("root");
    root.add(*static_cast<DocElement*>(section.deepCopy()));
    std::ostringstream os;
    AsciiWriter writer(os);
    writeDocument(root, writer);
    return os.str();
}

IconMetaData& item(const char* title) {
    IconMetaData& md = *new IconMetaData;
    md.add(iconcat::TITLE, new String(title));
    md.add(iconcat::CLASS, new Symbol("Block"));
    return md;
}

void addText(IconMetaData& md, IconCategory category, const char* label, const char* text) {
    md.add(new String(text), category, IconFieldEdt::notEditable(), DocGenData(label, 1));
}

const char* GAIN() { return "GAIN"; }
const char* GAIN_COMMENT() { return "GAIN_COMMENT"; }
const char* AUTHOR() { return "AUTHOR"; }

}  // namespace

// Each format has the nodes' sections, the comment, the relations, the indexes and the picture.
TEST(DocumentTest, exampleDrawingInEveryFormat) {
    std::string file = drawingCopy();
    std::string base = file.substr(0, file.size() - 4);
    struct Case {
        const char* kind;
        const char* extension;
        const char* picture;
        std::vector<std::string> parts;
    } cases[] = {
        {"html",
         ".html",
         ".gif",
         {"<h2>Contents</h2>", "Plant</h3>", "Description</h4>", "Relationships", "Index of classes",
          "Index of identifiers", "<img src=\"feedback_graphic.gif\""}},
        {"latex", ".tex", ".ps", {"\\begin{document}", "\\end{document}", "Plant", "feedback_graphic.ps"}},
        {"rtf", ".rtf", ".gif", {"{\\rtf", "Plant", "Description", "\\bkmkstart"}},
        {"ascii",
         ".txt",
         ".ps",
         {"Plant\n-----", "The plant: a DC motor", "Relationships", "Plant -> Sensor", "measure\n\ny1"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.kind);
        EXPECT_EQ("", std::string(writeDrawingDocument(c.kind, file.c_str()).asCharPointer()));
        std::string text = fileText(base + "_" + c.extension);
        for (const std::string& part : c.parts) EXPECT_EQ("", has(text, part));
        EXPECT_FALSE(fileText(base + "_graphic" + c.picture).empty());
        if (std::string(c.kind) == "rtf") EXPECT_TRUE(bracesBalance(text));
    }
    EXPECT_NE("", std::string(writeDrawingDocument("pdf", file.c_str()).asCharPointer()));
    EXPECT_NE("", std::string(writeDrawingDocument("html", (file + ".none").c_str()).asCharPointer()));
}

// Two items of one title: the left's text wins, an empty one takes the right's.
TEST(DocumentTest, mergedItemsKeepTheLeftText) {
    IconMetaData& left = item("Plant");
    addText(left, iconcat::COMMENT, "Description", "left comment");
    addText(left, AUTHOR, "Author", "");
    IconMetaData& right = item("Plant");
    addText(right, iconcat::COMMENT, "Description", "right comment");
    addText(right, AUTHOR, "Author", "Ada");
    left += right;
    Section* section = left.document();
    ASSERT_NE(nullptr, section);
    std::string text = asciiOf(*section);
    EXPECT_EQ("", has(text, "left comment"));
    EXPECT_EQ(std::string::npos, text.find("right comment"));
    EXPECT_EQ("", has(text, "Author"));
    EXPECT_EQ("", has(text, "Ada"));
    delete section;
    delete &left;
    delete &right;
}

// A title item is put out without a comment, saying so; another empty item is left out unless allowed.
TEST(DocumentTest, titleAndEmptyItems) {
    IconMetaData& title = item("Loop");
    title.add(iconcat::IS_TITLE, new String("1"));
    ::testing::internal::CaptureStderr();
    Section* section = title.document();
    EXPECT_EQ("", has(::testing::internal::GetCapturedStderr(), "No comment for title icon!"));
    ASSERT_NE(nullptr, section);
    EXPECT_TRUE(section->isKindOf(class_ForcedSection));
    delete section;

    IconMetaData& empty = item("Nothing");
    addText(empty, AUTHOR, "Author", "");
    EXPECT_EQ(nullptr, empty.document());
    empty.add(iconcat::ALLOW_EMPTY, new String("1"));
    section = empty.document();
    EXPECT_NE(nullptr, section);
    delete section;
    delete &title;
    delete &empty;
}

// A field's "_COMMENT" companion goes with it; a LaTeX comment is read, and lost alone when malformed.
TEST(DocumentTest, companionsAndLatexComments) {
    IconMetaData& md = item("Gain");
    md.add(iconcat::FORMAT, new String("Latex"));
    addText(md, iconcat::COMMENT, "Description", "A \\textbf{gain} of 3~dB");
    addText(md, GAIN, "Gain", "3");
    md.add(GAIN_COMMENT, new String("the loop gain"));
    Section* section = md.document();
    ASSERT_NE(nullptr, section);
    std::string text = asciiOf(*section);
    for (const char* part : {"Gain", "the loop gain", "gain", "3~dB"}) EXPECT_EQ("", has(text, part));
    delete section;

    md.remove(md.field(iconcat::COMMENT));
    addText(md, iconcat::COMMENT, "Description", "\\begin{itemize} \\item{ broken");
    ::testing::internal::CaptureStderr();
    section = md.document();
    std::string errors = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ("", has(errors, "Error parsing Latex!\n-----"));
    EXPECT_EQ("", has(errors, "====="));
    ASSERT_NE(nullptr, section);
    text = asciiOf(*section);
    EXPECT_EQ(std::string::npos, text.find("Description"));
    EXPECT_EQ("", has(text, "the loop gain"));
    delete section;
    delete &md;
}

// A directory that cannot be written gives the message, and nothing is left behind.
TEST(DocumentTest, unwritableDirectory) {
    std::string file = drawingCopy();
    std::string directory = file.substr(0, file.rfind('/'));
    chmod(directory.c_str(), 0555);
    if (access(directory.c_str(), W_OK) == 0) {
        chmod(directory.c_str(), 0755);
        GTEST_SKIP() << "the directory stays writable for this user";
    }
    std::string message = writeDrawingDocument("ascii", file.c_str()).asCharPointer();
    chmod(directory.c_str(), 0755);
    EXPECT_EQ("Cannot write the file " + directory + "/feedback_.txt, check permission.", message);
}

using DocumentEditorTest = GraphEditorTest;

// The command of the editor writes the page of the drawing on the screen, its picture beside it.
TEST_F(DocumentEditorTest, createDocumentCommand) {
    std::string file = drawingCopy();
    ASSERT_TRUE(editor->load(file.c_str()));
    EXPECT_EQ(nullptr, editor->semantic().executeCommand("Create Document (HTML)"));
    std::string base = file.substr(0, file.size() - 4);
    EXPECT_EQ("", has(fileText(base + "_.html"), "The plant: a DC motor"));
    EXPECT_FALSE(fileText(base + "_graphic.gif").empty());
}
