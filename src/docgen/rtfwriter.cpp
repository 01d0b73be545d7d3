// The RTF writer: every group it opens it closes, so braces always balance.
#include "docgen/rtfwriter.h"

#include <algorithm>

namespace {

const char* const markGroups[] = {"", "\\b ", "\\i ", "\\f1 "};
const int headingSizes[] = {36, 32, 28, 26, 24};  // half-points, by level

// The code point of the UTF-8 sequence at text[i], advancing i past it.
long decodeUtf8(const std::string& text, size_t& i) {
    unsigned char c = text[i++];
    int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
    long code = extra ? c & (0x3F >> extra) : c;
    for (; extra > 0 && i < text.size() && (text[i] & 0xC0) == 0x80; --extra)
        code = code << 6 | (text[i++] & 0x3F);
    return code;
}

}  // namespace

std::string RtfWriter::escape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size();) {
        char c = text[i];
        if (c == '\\' || c == '{' || c == '}') {
            out += '\\';
            out += c;
            ++i;
        } else if (c == '\n') {
            out += "\\line ";
            ++i;
        } else if (static_cast<unsigned char>(c) < 0x80) {
            out += c;
            ++i;
        } else {
            long code = decodeUtf8(text, i);
            out += "\\u" + std::to_string(code > 32767 ? code - 65536 : code) + "?";
        }
    }
    return out;
}

void RtfWriter::beginDocument(const DocOutline& outline) {
    os << "{\\rtf1\\ansi\\deff0\n{\\fonttbl{\\f0\\froman Times New Roman;}{\\f1\\fmodern Courier New;}}\n"
       << "{\\info{\\title " << escape(outline.title) << "}}\n"
       << "{\\pard\\qc\\sb240\\sa240\\b\\fs40 " << escape(outline.title) << "\\par}\n";
}

void RtfWriter::endDocument(const DocOutline&) { os << "}\n"; }

void RtfWriter::beginHeading(const SectionHead& head) {
    int size = headingSizes[std::min(std::max(head.level, 1), 5) - 1];
    os << "{\\pard\\keepn\\sb240\\sa120\\b\\fs" << size << " {\\*\\bkmkstart " << head.anchor << "}";
    if (!head.number.empty()) os << escape(head.number) << " ";
}

void RtfWriter::endHeading(const SectionHead& head) { os << "{\\*\\bkmkend " << head.anchor << "}\\par}\n"; }

void RtfWriter::beginParagraph() { os << "{\\pard\\sa120\\fs24 "; }

void RtfWriter::text(const std::string& text, Mark mark) {
    os << "{" << markGroups[int(mark)] << escape(text) << "}";
}

void RtfWriter::link(const std::string& text, const std::string& target) {
    os << "{\\field{\\*\\fldinst HYPERLINK \"" << escape(target) << "\"}{\\fldrslt{\\ul " << escape(text)
       << "}}}";
}

void RtfWriter::image(const std::string& file) {
    os << "{\\field{\\*\\fldinst INCLUDEPICTURE \"" << escape(file) << "\" \\\\d}{\\fldrslt " << escape(file)
       << "}}";
}

void RtfWriter::bookmark(const std::string& name) {
    os << "{\\*\\bkmkstart " << escape(name) << "}{\\*\\bkmkend " << escape(name) << "}";
}

// A list inside an item ends the item's paragraph first: RTF paragraphs do not nest.
void RtfWriter::beginList(bool numbered) {
    if (!lists.empty() && lists.back().itemOpen) {
        os << "\\par}\n";
        lists.back().itemOpen = false;
    }
    lists.push_back({numbered ? 1 : 0, false});
}

void RtfWriter::beginItem() {
    OpenList& list = lists.back();
    os << "{\\pard\\fi-360\\li" << 360 * lists.size() << "\\sa60\\fs24 ";
    if (list.next)
        os << list.next++ << ".\\tab ";
    else
        os << "\\bullet\\tab ";
    list.itemOpen = true;
}

void RtfWriter::endItem() {
    if (lists.back().itemOpen) os << "\\par}\n";
    lists.back().itemOpen = false;
}

void RtfWriter::beginTable(unsigned n) { columns = std::max(1u, n); }

void RtfWriter::beginRow() {
    os << "{\\trowd\\trgaph108";
    for (unsigned i = 1; i <= columns; ++i) os << "\\cellx" << i * 9000 / columns;
    os << "\n\\pard\\intbl ";
}
