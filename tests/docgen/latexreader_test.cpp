// The reader of the LaTeX subset: what it builds, and what it does with malformed text.
#include <gtest/gtest.h>

#include <sstream>

#include "docgen/all.h"

namespace {

const DocElement& child(const DocContainer& c, unsigned i) {
    EXPECT_LT(i, c.size());
    return c.at(i);
}

const char* const subset =
    "\\section{Intro}\nSome \\textbf{bold}, \\emph{slanted} and \\texttt{typed} words.\n\n"
    "\\begin{itemize}\n\\item one\n\\item two\n  \\begin{enumerate}\\item "
    "a\\end{enumerate}\n\\end{itemize}\n\n"
    "\\subsection*{Deeper}\n\\noindent Cost 5\\% of \\$3 is $x^2$, a\\~{}b\\\\next line % dropped\n"
    "\\section{Second}\nEnd.";

TEST(LatexReader, ReadsTheSubsetIntoNestedSections) {
    Section into;
    std::ostringstream errors;
    ASSERT_TRUE(readLatex(subset, into, errors));
    EXPECT_EQ(errors.str(), "");
    ASSERT_EQ(into.size(), 2u);
    const Section& intro = static_cast<const Section&>(child(into, 0));
    EXPECT_EQ(intro.plainText(), "Intro");
    EXPECT_EQ(static_cast<const Section&>(child(into, 1)).plainText(), "Second");
    ASSERT_EQ(intro.size(), 3u);

    const Paragraph& words = static_cast<const Paragraph&>(child(intro, 0));
    EXPECT_EQ(words.plainText(), "Some bold, slanted and typed words.");
    struct {
        unsigned index;
        Mark mark;
    } marks[] = {{1, Mark::Bold}, {3, Mark::Italic}, {5, Mark::Code}, {0, Mark::None}};
    for (auto m : marks) {
        SCOPED_TRACE(m.index);
        ASSERT_TRUE(child(words, m.index).isKindOf(class_PlainText));
        EXPECT_EQ(static_cast<const PlainText&>(child(words, m.index)).mark(), m.mark);
    }

    const ItemList& items = static_cast<const ItemList&>(child(intro, 1));
    ASSERT_TRUE(items.isKindOf(class_ItemList));
    EXPECT_FALSE(items.numbered());
    ASSERT_EQ(items.size(), 2u);
    const DocContainer& second = static_cast<const DocContainer&>(child(items, 1));
    ASSERT_EQ(second.size(), 2u);
    EXPECT_TRUE(static_cast<const ItemList&>(child(second, 1)).numbered());

    const Section& deeper = static_cast<const Section&>(child(intro, 2));
    EXPECT_EQ(deeper.plainText(), "Deeper");
    ASSERT_EQ(deeper.size(), 2u);
    EXPECT_EQ(child(deeper, 0).plainText(), "Cost 5% of $3 is $x^2$, a~b");
    EXPECT_EQ(child(deeper, 1).plainText(), "next line");
}

TEST(LatexReader, MalformedElementIsReportedAndLostTheRestKept) {
    struct {
        const char *fault, *bad;
    } cases[] = {
        {"unbalanced braces", "Bad {brace \\textbf{here."},
        {"closing brace too many", "Bad } brace."},
        {"unknown environment", "\\begin{tabular}{ll}a & b\\end{tabular}"},
        {"end without begin", "text \\end{itemize}"},
        {"environments crossed", "\\begin{itemize}\\item x\\end{enumerate}"},
        {"environment never closed", "\\begin{itemize}\\item x"},
        {"item outside a list", "\\item lost"},
        {"math not closed", "cost $x^2"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fault);
        Section into;
        std::ostringstream errors;
        std::string text = std::string("\\section{A}\nGood one.\n\n") + c.bad + "\n\nLast \\emph{one}.";
        EXPECT_FALSE(readLatex(text, into, errors));
        EXPECT_EQ(errors.str(), std::string("Error parsing Latex!\n-----\n") + c.bad + "\n=====\n");
        ASSERT_EQ(into.size(), 1u);
        const Section& a = static_cast<const Section&>(into.at(0));
        ASSERT_EQ(a.size(), 2u);
        EXPECT_EQ(a.at(0).plainText(), "Good one.");
        EXPECT_EQ(a.at(1).plainText(), "Last one.");
    }
}

// Every cut of a valid text either reads or is reported, never a crash.
TEST(LatexReader, AnyPrefixOfTheSubsetIsSafe) {
    std::string text = subset;
    for (size_t n = 0; n <= text.size(); ++n) {
        Section into;
        std::ostringstream errors;
        bool whole = readLatex(text.substr(0, n), into, errors);
        EXPECT_EQ(whole, errors.str().empty()) << n;
    }
    Section into;
    std::ostringstream errors;
    EXPECT_FALSE(readLatex(std::string(100000, '{'), into, errors));
}

}  // namespace
