// The ASCII writer: text gathered by block, then wrapped word by word.
#include "docgen/asciiwriter.h"

#include <algorithm>
#include <sstream>

namespace {

const char underlines[] = "=-~";
const char* const markQuotes[] = {"", "*", "_", "`"};

// Breaks text into lines of at most width columns after prefix (words longer
// than a line are cut); the later lines start with restPrefix.
std::vector<std::string> wrap(const std::string& text, std::string prefix, const std::string& restPrefix,
                              size_t width) {
    std::vector<std::string> lines;
    std::istringstream words(text);
    std::string word, line = prefix;
    bool empty = true;
    while (words >> word) {
        while (!word.empty()) {
            size_t room = width > line.size() ? width - line.size() - (empty ? 0 : 1) : 0;
            if (word.size() <= room) {
                line += (empty ? "" : " ") + word;
                word.clear();
                empty = false;
            } else if (empty && room > 0) {
                line += word.substr(0, room);
                word.erase(0, room);
                empty = false;
            } else {
                lines.push_back(line);
                line = restPrefix;
                empty = true;
            }
        }
    }
    if (!empty) lines.push_back(line);
    return lines;
}

}  // namespace

size_t AsciiWriter::flush() {
    if (pending.find_first_not_of(" \t\n") == std::string::npos && marker.empty()) {
        pending.clear();
        return 0;
    }
    std::string indent(lists.empty() ? 0 : 4 * (lists.size() - 1), ' ');
    std::string first = indent + marker;
    std::string rest = indent + std::string(marker.size(), ' ');
    size_t longest = 0;
    for (const std::string& line : wrap(pending, first, rest, width)) {
        os << line << "\n";
        longest = std::max(longest, line.size());
    }
    pending.clear();
    marker.clear();
    return longest;
}

void AsciiWriter::underlined(const std::string& text, char underline) {
    pending = text;
    size_t longest = flush();
    os << std::string(longest, underline) << "\n\n";
}

void AsciiWriter::beginDocument(const DocOutline& outline) { underlined(outline.title, '*'); }

void AsciiWriter::beginHeading(const SectionHead& head) {
    flush();
    pending = head.number.empty() ? "" : head.number + " ";
}

void AsciiWriter::endHeading(const SectionHead& head) {
    underlined(pending, underlines[std::min(std::max(head.level, 1), 3) - 1]);
}

void AsciiWriter::endParagraph() {
    if (flush() > 0) os << "\n";
}

void AsciiWriter::text(const std::string& text, Mark mark) {
    const char* quote = markQuotes[int(mark)];
    pending += quote + text + quote;
}

void AsciiWriter::link(const std::string& text, const std::string& target) {
    pending += text + " <" + target + ">";
}

void AsciiWriter::beginList(bool numbered) {
    flush();
    lists.push_back(numbered ? 1 : 0);
}

void AsciiWriter::beginItem() {
    flush();
    int& number = lists.back();
    marker = number ? std::to_string(number++) + ". " : "* ";
}

void AsciiWriter::endList() {
    flush();
    lists.pop_back();
    if (lists.empty()) os << "\n";
}

void AsciiWriter::beginCell() {
    if (!firstCell) pending += " | ";
    firstCell = false;
}
