// The HTML writer: headings h2 to h6 under the title's h1, indexes as lists of links.
#include "docgen/htmlwriter.h"

#include <algorithm>

namespace {

const char* const markTags[] = {"", "strong", "em", "code"};

// The contents indented by level, tables ruled.
const char* const style =
    "<style>\nnav ul { list-style: none; }\nnav .level2 { margin-left: 2em; }\nnav .level3 { margin-left: "
    "4em; }\n"
    "nav .level4, nav .level5, nav .level6 { margin-left: 6em; }\n"
    "td { border: 1px solid #999; padding: 0.2em 0.5em; }\ntable { border-collapse: collapse; }\n</style>\n";

int headingTag(int level) { return std::min(level + 1, 6); }

}  // namespace

std::string HtmlWriter::escape(const std::string& text) {
    std::string out;
    for (char c : text) switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    return out;
}

void HtmlWriter::beginDocument(const DocOutline& outline) {
    std::string title = escape(outline.title);
    os << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" << title
       << "</title>\n"
       << style << "</head>\n<body>\n<h1 id=\"top\">" << title << "</h1>\n";
    if (outline.sections.empty()) return;
    os << "<nav>\n<h2>Contents</h2>\n<ul>\n";
    for (const SectionHead& head : outline.sections)
        os << "<li class=\"level" << head.level << "\"><a href=\"#" << head.anchor << "\">"
           << escape(head.number.empty() ? head.title : head.number + " " + head.title) << "</a></li>\n";
    os << "</ul>\n</nav>\n";
}

void HtmlWriter::endDocument(const DocOutline& outline) {
    for (const auto& index : outline.indexes) {
        if (!IndexMarker::listedIn(index.first, "HTML")) continue;
        std::vector<IndexEntry> entries = sortedEntries(index.second);
        os << "<section class=\"index\">\n<h2>" << escape(IndexMarker::heading(index.first))
           << "</h2>\n<ul>\n";
        for (const IndexEntry& e : entries)
            os << "<li><a href=\"" << (e.isAnchor ? "#" : "") << escape(e.target) << "\">" << escape(e.entry)
               << "</a></li>\n";
        os << "</ul>\n</section>\n";
    }
    os << "</body>\n</html>\n";
}

void HtmlWriter::beginHeading(const SectionHead& head) {
    int tag = headingTag(head.level);
    os << "<section id=\"" << head.anchor << "\">\n<h" << tag << ">";
    if (!head.number.empty()) os << escape(head.number) << " ";
}

void HtmlWriter::endHeading(const SectionHead& head) { os << "</h" << headingTag(head.level) << ">\n"; }

void HtmlWriter::text(const std::string& text, Mark mark) {
    const char* tag = markTags[int(mark)];
    if (*tag) os << "<" << tag << ">";
    os << escape(text);
    if (*tag) os << "</" << tag << ">";
}

void HtmlWriter::link(const std::string& text, const std::string& target) {
    os << "<a href=\"" << escape(target) << "\">" << escape(text) << "</a>";
}

void HtmlWriter::image(const std::string& file) {
    os << "<img src=\"" << escape(file) << "\" alt=\"" << escape(file) << "\">";
}

void HtmlWriter::bookmark(const std::string& name) { os << "<a id=\"" << escape(name) << "\"></a>"; }

void HtmlWriter::beginList(bool numbered) {
    lists.push_back(numbered);
    os << (numbered ? "<ol>\n" : "<ul>\n");
}

void HtmlWriter::endList() {
    os << (lists.back() ? "</ol>\n" : "</ul>\n");
    lists.pop_back();
}
