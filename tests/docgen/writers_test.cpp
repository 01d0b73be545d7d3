// The four writers on one document: structure, escaping, the outline and the vanishing sections.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <regex>

#include "sample.h"

namespace {

// The tags of an HTML text, checked to close in order; answers "" or the fault.
std::string htmlTagFault(const std::string& html) {
    static const std::regex tag("<(/?)([a-zA-Z0-9]+)[^>]*>");
    const std::string voids = " meta img br ";
    std::vector<std::string> open;
    for (std::sregex_iterator i(html.begin(), html.end(), tag), end; i != end; ++i) {
        std::string name = (*i)[2];
        if (voids.find(" " + name + " ") != std::string::npos) continue;
        if ((*i)[1].length() == 0) {
            open.push_back(name);
        } else if (open.empty() || open.back() != name) {
            return "</" + name + "> closes " + (open.empty() ? "nothing" : open.back());
        } else {
            open.pop_back();
        }
    }
    return open.empty() ? "" : "<" + open.back() + "> left open";
}

// The LaTeX environments, checked to end in order; answers "" or the fault.
std::string latexEnvironmentFault(const std::string& latex) {
    static const std::regex environment("\\\\(begin|end)\\{([a-z]+)\\}");
    std::vector<std::string> open;
    for (std::sregex_iterator i(latex.begin(), latex.end(), environment), end; i != end; ++i) {
        if ((*i)[1] == "begin") {
            open.push_back((*i)[2]);
        } else if (open.empty() || open.back() != (*i)[2]) {
            return "\\end{" + std::string((*i)[2]) + "} out of place";
        } else {
            open.pop_back();
        }
    }
    return open.empty() ? "" : open.back() + " left open";
}

// The depth of RTF groups at the end, escaped braces left out; -1 when it went below 0.
int rtfGroupBalance(const std::string& rtf) {
    int depth = 0;
    for (size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\')
            ++i;
        else if (rtf[i] == '{')
            ++depth;
        else if (rtf[i] == '}' && --depth < 0)
            return -1;
    }
    return depth;
}

bool haveLatex() { return std::system("which latex > /dev/null 2>&1") == 0; }

// Runs latex on source in a directory of its own, with the sample's picture
// beside it; answers whether a DVI file came out, with latex's transcript.
bool latexCompiles(const std::string& source, std::string& transcript) {
    char dir[] = "/tmp/docgenXXXXXX";
    if (!mkdtemp(dir)) return false;
    std::string base = std::string(dir) + "/";
    std::ofstream(base + "report.tex") << source;
    std::ofstream(base + "plant_graphic.eps") << "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 72 36\n"
                                                 "newpath 0 0 moveto 72 36 lineto stroke\nshowpage\n";
    std::string run =
        "cd " + base + " && latex -interaction=nonstopmode -halt-on-error report.tex > latex.out 2>&1";
    int status = std::system(run.c_str());
    std::ifstream log(base + "latex.out");
    transcript.assign(std::istreambuf_iterator<char>(log), std::istreambuf_iterator<char>());
    bool made = status == 0 && std::ifstream(base + "report.dvi").good();
    std::system(("rm -rf " + base).c_str());
    return made;
}

class WritersTest : public ::testing::Test {
protected:
    std::unique_ptr<Section> document{sampleDocument()};
};

TEST_F(WritersTest, OutlineNumbersShownSectionsByPlaceAndSkipsEmptyWeakOnes) {
    DocOutline outline = outlineOf(*document);
    struct Row {
        const char *number, *title;
        int level;
    } expected[] = {
        {"1", "Graphic", 1}, {"2", "Gain_K1", 1}, {"2.1", "Relationships", 2}, {"3", "Title item", 4}};
    ASSERT_EQ(outline.sections.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(outline.sections[i].number, expected[i].number);
        EXPECT_EQ(outline.sections[i].title, expected[i].title);
        EXPECT_EQ(outline.sections[i].level, expected[i].level);
    }
    // The marker of the vanished section is left out with it.
    ASSERT_EQ(outline.indexes["classes"].size(), 1u);
    EXPECT_EQ(outline.indexes["classes"][0].target, outline.sections[1].anchor);
    EXPECT_EQ(outline.indexes["identifiersHTML"][0].target, "Gain_K1.html");
}

// Deeper counters restart under each new section; a forced section is numbered
// by its place, and its sections are headed below its own level.
TEST_F(WritersTest, NumbersRestartAndForcedSectionsHeadTheirChildren) {
    Section root("Root");
    Section& a = static_cast<Section&>(root.add(*new Section("A")));
    static_cast<Section&>(a.add(*new Section("A1"))).add(*new Section("A1a"));
    a.add(*new Section("A2"));
    Section& b = static_cast<Section&>(root.add(*new Section("B")));
    b.add(*new Section("B1"));
    ForcedSection& forced = static_cast<ForcedSection&>(b.add(*new ForcedSection(1, 3, "F")));
    forced.add(*new Section("F1"));
    b.add(*new ForcedSection(0, 2, "Unnumbered"));
    DocOutline outline = outlineOf(root);
    std::string got;
    for (const SectionHead& h : outline.sections)
        got += h.number + ":" + h.title + "@" + std::to_string(h.level) + " ";
    EXPECT_EQ(got, "1:A@1 1.1:A1@2 1.1.1:A1a@3 1.2:A2@2 2:B@1 2.1:B1@2 2:F@3 2.2.1:F1@4 :Unnumbered@2 ");
}

TEST_F(WritersTest, WeakSectionAppearsOnceItHasContent) {
    WeakSection weak("Notes");
    EXPECT_FALSE(weak.isShown());
    weak.add(*new Bookmark("b"));
    EXPECT_FALSE(weak.isShown());
    static_cast<WeakSection&>(weak.add(*new WeakSection)).add(*new TextParagraph("text"));
    EXPECT_TRUE(weak.isShown());
}

TEST_F(WritersTest, HtmlIsOneBalancedPageWithContentsIndexesAndPicture) {
    std::string html = written<HtmlWriter>(*document);
    EXPECT_EQ(html.rfind("<!DOCTYPE html>\n", 0), 0u);
    EXPECT_EQ(htmlTagFault(html), "");
    EXPECT_NE(html.find("<title>Report on plant &amp; controller</title>"), std::string::npos);
    EXPECT_NE(html.find("<a href=\"#sec3\">2.1 Relationships</a>"), std::string::npos);
    EXPECT_NE(html.find("<section id=\"sec3\">"), std::string::npos);
    EXPECT_NE(html.find("<a href=\"#sec2\">Gain</a>"), std::string::npos);
    EXPECT_NE(html.find("<a href=\"Gain_K1.html\">K1</a>"), std::string::npos);
    EXPECT_NE(html.find("<h2>Index of identifiers</h2>"), std::string::npos);
    EXPECT_EQ(html.find(">K1</a>", html.find(">K1</a>") + 1), std::string::npos);
    EXPECT_NE(html.find("<img src=\"plant_graphic.eps\""), std::string::npos);
    EXPECT_NE(html.find("a &lt; b &amp; c &gt; d"), std::string::npos);
    EXPECT_EQ(html.find("Vanishing"), std::string::npos);
}

TEST_F(WritersTest, LatexIsACompleteArticleThatCompiles) {
    std::string latex = written<LatexWriter>(*document);
    EXPECT_EQ(latex.rfind("\\documentclass{article}", 0), 0u);
    EXPECT_EQ(latexEnvironmentFault(latex), "");
    EXPECT_NE(latex.find("\\subsection*{2.1\\quad Relationships}"), std::string::npos);
    EXPECT_NE(latex.find("\\paragraph*{3\\quad Title item}"), std::string::npos);
    EXPECT_NE(latex.find("\\includegraphics{plant_graphic.eps}"), std::string::npos);
    EXPECT_NE(latex.find("50\\% of \\$3 \\#1 \\{x\\}\\_y"), std::string::npos);
    EXPECT_NE(latex.find("\\item K1, page \\pageref{lsec2}"), std::string::npos);
    if (!haveLatex()) GTEST_SKIP() << "latex is not installed: not compiled";
    std::string transcript;
    EXPECT_TRUE(latexCompiles(latex, transcript)) << transcript;
}

// A comment read from LaTeX comes back as LaTeX that compiles.
TEST_F(WritersTest, LatexReadThenWrittenCompiles) {
    Section comment("Comment");
    std::ostringstream errors;
    ASSERT_TRUE(
        readLatex("\\section{A \\& B}\n\\noindent \\textbf{x\\_1} costs 5\\%, a\\~{}b $y^2$\\\\\n"
                  "\\begin{enumerate}\\item one \\begin{itemize}\\item \\texttt{in}\\end{itemize}"
                  "\\end{enumerate}",
                  comment, errors));
    std::string latex = written<LatexWriter>(comment);
    EXPECT_EQ(latexEnvironmentFault(latex), "");
    if (!haveLatex()) GTEST_SKIP() << "latex is not installed: not compiled";
    std::string transcript;
    EXPECT_TRUE(latexCompiles(latex, transcript)) << latex << transcript;
}

TEST_F(WritersTest, RtfBracesBalanceAndBookmarksAreThere) {
    std::string rtf = written<RtfWriter>(*document);
    EXPECT_EQ(rtf.rfind("{\\rtf1", 0), 0u);
    EXPECT_EQ(rtfGroupBalance(rtf), 0);
    EXPECT_NE(rtf.find("{\\*\\bkmkstart gainMark}"), std::string::npos);
    EXPECT_NE(rtf.find("{\\*\\bkmkstart sec3}"), std::string::npos);
    EXPECT_NE(rtf.find("{x\\}_y"), std::string::npos);
    EXPECT_EQ(RtfWriter::escape("\xc3\xa8\xe2\x82\xac"), "\\u232?\\u8364?");
}

TEST_F(WritersTest, AsciiWrapsAt78ColumnsAndUnderlinesHeadings) {
    std::istringstream ascii(written<AsciiWriter>(*document));
    std::vector<std::string> lines;
    for (std::string line; std::getline(ascii, line);) lines.push_back(line);
    std::map<std::string, char> headings = {{"1 Graphic", '='},
                                            {"2.1 Relationships", '-'},
                                            {"3 Title item", '~'},
                                            {"Report on plant & controller", '*'}};
    size_t found = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_LE(lines[i].size(), 78u) << lines[i];
        auto heading = headings.find(lines[i]);
        if (heading == headings.end() || i + 1 == lines.size()) continue;
        EXPECT_EQ(lines[i + 1], std::string(lines[i].size(), heading->second));
        ++found;
    }
    EXPECT_EQ(found, headings.size());
}

TEST_F(WritersTest, AsciiListsAndTablesKeepTheirShape) {
    std::string ascii = written<AsciiWriter>(*document);
    for (const char* line :
         {"\n1. first step\n", "\n2. second step\n", "\n    * inner point\n", "\ninput | u1\n"})
        EXPECT_NE(ascii.find(line), std::string::npos) << line;
}

// A document of a title alone: each format is still whole.
TEST(Writers, DocumentWithoutSectionsIsWellFormed) {
    Section empty("Nothing yet");
    EXPECT_EQ(htmlTagFault(written<HtmlWriter>(empty)), "");
    EXPECT_EQ(rtfGroupBalance(written<RtfWriter>(empty)), 0);
    EXPECT_EQ(written<AsciiWriter>(empty), "Nothing yet\n***********\n\n");
    std::string latex = written<LatexWriter>(empty);
    EXPECT_EQ(latexEnvironmentFault(latex), "");
    if (!haveLatex()) GTEST_SKIP() << "latex is not installed: not compiled";
    std::string transcript;
    EXPECT_TRUE(latexCompiles(latex, transcript)) << transcript;
}

TEST_F(WritersTest, DeepCopyOwnsItsElements) {
    std::string before = written<HtmlWriter>(*document);
    std::unique_ptr<Section> copy(static_cast<Section*>(document->deepCopy()));
    document.reset();
    EXPECT_EQ(written<HtmlWriter>(*copy), before);
}

}  // namespace
