// The LaTeX writer: sections by level, labels for the indexes, graphicx for the pictures.
#include "docgen/latexwriter.h"

#include <algorithm>

namespace {

const char* const sectionCommands[] = {"section", "subsection", "subsubsection", "paragraph", "subparagraph"};
const char* const markCommands[] = {"", "\\textbf{", "\\emph{", "\\texttt{"};

const char* sectionCommand(int level) { return sectionCommands[std::min(std::max(level, 1), 5) - 1]; }

}  // namespace

std::string LatexWriter::escape(const std::string& text) {
    std::string out;
    for (char c : text) switch (c) {
            case '\\':
                out += "\\textbackslash{}";
                break;
            case '~':
                out += "\\textasciitilde{}";
                break;
            case '^':
                out += "\\textasciicircum{}";
                break;
            case '<':
                out += "$<$";
                break;
            case '>':
                out += "$>$";
                break;
            case '|':
                out += "$|$";
                break;
            case '{':
            case '}':
            case '$':
            case '&':
            case '#':
            case '_':
            case '%':
                out += '\\';
                out += c;
                break;
            default:
                out += c;
        }
    return out;
}

std::string LatexWriter::label(const std::string& name) {
    static const char digits[] = "0123456789abcdef";
    std::string out = "l";
    for (unsigned char c : name)
        if (isalnum(c))
            out += char(c);
        else
            out += std::string("x") + digits[c >> 4] + digits[c & 15];
    return out;
}

void LatexWriter::beginDocument(const DocOutline& outline) {
    os << "\\documentclass{article}\n\\usepackage{graphicx}\n\\title{" << escape(outline.title)
       << "}\n\\date{}\n\\setlength{\\parindent}{0pt}\n\\setlength{\\parskip}{1ex}\n\\begin{document}"
          "\n\\maketitle\n\\tableofcontents\n";
}

void LatexWriter::endDocument(const DocOutline& outline) {
    for (const auto& index : outline.indexes) {
        if (!IndexMarker::listedIn(index.first, "Tex")) continue;
        std::vector<IndexEntry> entries = sortedEntries(index.second);
        os << "\n\\section*{" << escape(IndexMarker::heading(index.first)) << "}\n\\begin{itemize}\n";
        for (const IndexEntry& e : entries) {
            os << "\\item " << escape(e.entry);
            if (e.isAnchor && e.target != "top") os << ", page \\pageref{" << label(e.target) << "}";
            os << "\n";
        }
        os << "\\end{itemize}\n";
    }
    os << "\\end{document}\n";
}

// Headings are starred and carry the walk's number, so that every format shows
// the same numbers; the contents get them by hand.
void LatexWriter::beginHeading(const SectionHead& head) {
    os << "\n\\" << sectionCommand(head.level) << "*{";
    if (!head.number.empty()) os << head.number << "\\quad ";
}

void LatexWriter::endHeading(const SectionHead& head) {
    std::string entry =
        head.number.empty() ? escape(head.title) : head.number + "\\quad " + escape(head.title);
    os << "}\\label{" << label(head.anchor) << "}\n\\addcontentsline{toc}{" << sectionCommand(head.level)
       << "}{" << entry << "}\n";
}

void LatexWriter::text(const std::string& text, Mark mark) {
    const char* command = markCommands[int(mark)];
    os << command << escape(text) << (*command ? "}" : "");
}

void LatexWriter::link(const std::string& text, const std::string& target) {
    os << escape(text) << " (\\texttt{" << escape(target) << "})";
}

void LatexWriter::image(const std::string& file) { os << "\\includegraphics{" << file << "}"; }

void LatexWriter::bookmark(const std::string& name) { os << "\\label{" << label(name) << "}"; }

void LatexWriter::beginList(bool numbered) {
    lists.push_back(numbered);
    os << (numbered ? "\n\\begin{enumerate}\n" : "\n\\begin{itemize}\n");
}

void LatexWriter::endList() {
    os << (lists.back() ? "\\end{enumerate}\n" : "\\end{itemize}\n");
    lists.pop_back();
}

void LatexWriter::beginTable(unsigned columns) {
    os << "\n\\begin{tabular}{" << std::string(columns, 'l') << "}\n";
}

void LatexWriter::beginCell() {
    if (!firstCell) os << " & ";
    firstCell = false;
}
