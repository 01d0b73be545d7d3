// The LaTeX subset reader: the text is cut into elements, each parsed on its own.
#include "docgen/latexreader.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

struct LatexError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

typedef std::unique_ptr<DocElement> ElementPtr;

// One result of an element: a heading (level above 0) or a body element.
struct Block {
    int level;
    ElementPtr element;
};

bool startsWith(const std::string& text, size_t at, const char* prefix) {
    return text.compare(at, strlen(prefix), prefix) == 0;
}

// The end of the blank line that starts at i (a newline, blanks, a newline), or npos.
size_t blankLineEnd(const std::string& text, size_t i) {
    if (text[i] != '\n') return std::string::npos;
    size_t j = text.find_first_not_of(" \t\r", i + 1);
    return j != std::string::npos && text[j] == '\n' ? j + 1 : std::string::npos;
}

// Cuts text into elements at the blank lines outside environments. An
// environment left open runs to the end of the text: its element then stops at
// its first blank line, so that what follows is still read.
std::vector<std::string> splitElements(const std::string& text) {
    std::vector<std::string> elements;
    size_t start = 0, firstBlank = std::string::npos;
    int depth = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\') {
            if (startsWith(text, i, "\\begin{")) ++depth;
            if (startsWith(text, i, "\\end{") && depth > 0) --depth;
            ++i;
            continue;
        }
        size_t end = blankLineEnd(text, i);
        if (end == std::string::npos) continue;
        if (depth == 0) {
            elements.push_back(text.substr(start, i - start));
            start = end;
            firstBlank = std::string::npos;
        } else if (firstBlank == std::string::npos) {
            firstBlank = i;
        }
    }
    if (depth > 0 && firstBlank != std::string::npos) {
        elements.push_back(text.substr(start, firstBlank - start));
        std::vector<std::string> rest = splitElements(text.substr(blankLineEnd(text, firstBlank)));
        elements.insert(elements.end(), rest.begin(), rest.end());
    } else {
        elements.push_back(text.substr(start));
    }
    return elements;
}

const char* const headings[] = {"section", "subsection", "subsubsection"};
const char* const marks[] = {"textbf", "emph", "texttt"};
const Mark markOf[] = {Mark::Bold, Mark::Italic, Mark::Code};

// The parser of one element.
class ElementParser {
public:
    explicit ElementParser(const std::string& text) : s(text) {}

    std::vector<Block> blocks() {
        std::vector<Block> result;
        while (skipSpace(), pos < s.size()) {
            std::string name = peekCommand();
            int level = headingLevel(name);
            if (startsWith(s, pos, "\\\\")) {
                pos += 2;
            } else if (level > 0) {
                pos += name.size() + 1;
                if (pos < s.size() && s[pos] == '*') ++pos;
                result.push_back({level, ElementPtr(new PlainText(argument().c_str()))});
            } else if (name == "begin") {
                result.push_back({0, list()});
            } else if (name == "end" || name == "item") {
                throw LatexError("\\" + name + " without its list");
            } else {
                std::unique_ptr<Paragraph> p(new Paragraph);
                inlines(*p, Mark::None, false);
                if (p->size() > 0) result.push_back({0, std::move(p)});
            }
        }
        return result;
    }

private:
    static int headingLevel(const std::string& name) {
        for (int i = 0; i < 3; ++i)
            if (name == headings[i]) return i + 1;
        return 0;
    }

    void skipSpace() {
        while (pos < s.size() && isspace(static_cast<unsigned char>(s[pos]))) ++pos;
    }

    // The name of the command at pos, or "" when there is none.
    std::string peekCommand() const {
        if (pos >= s.size() || s[pos] != '\\') return "";
        size_t end = pos + 1;
        while (end < s.size() && isalpha(static_cast<unsigned char>(s[end]))) ++end;
        return s.substr(pos + 1, end - pos - 1);
    }

    void expect(char c) {
        skipSpace();
        if (pos >= s.size() || s[pos] != c) throw LatexError(std::string("missing ") + c);
        ++pos;
    }

    // A braced argument of plain text, inner groups included.
    std::string argument() {
        Paragraph p;
        expect('{');
        inlines(p, Mark::None, true);
        return p.plainText();
    }

    std::string environmentName() {
        pos += peekCommand().size() + 1;
        expect('{');
        size_t close = s.find('}', pos);
        if (close == std::string::npos) throw LatexError("unbalanced braces");
        std::string name = s.substr(pos, close - pos);
        pos = close + 1;
        return name;
    }

    ElementPtr list() {
        std::string name = environmentName();
        if (name != "itemize" && name != "enumerate") throw LatexError("unknown environment " + name);
        std::unique_ptr<ItemList> items(new ItemList(name == "enumerate"));
        skipSpace();
        while (peekCommand() == "item") {
            pos += 5;
            std::unique_ptr<Paragraph> item(new Paragraph);
            itemBody(*item);
            items->add(*item.release());
        }
        if (peekCommand() != "end") throw LatexError("text outside an \\item");
        if (environmentName() != name) throw LatexError("\\end of another environment");
        return items;
    }

    // The text of an item, nested lists included, up to the next \item or \end.
    void itemBody(Paragraph& item) {
        for (;;) {
            inlines(item, Mark::None, false);
            if (pos >= s.size()) throw LatexError("environment not closed");
            if (startsWith(s, pos, "\\\\"))  // a line break inside an item
                pos += 2;
            else if (peekCommand() == "begin")
                item.add(*list().release());
            else
                return;
        }
    }

    // Inline text into p, up to the closing brace when inGroup, else up to a
    // block command (\\, \item, \begin, \end, a heading) or the end.
    void inlines(DocContainer& p, Mark mark, bool inGroup) {
        if (++depth > maxDepth) throw LatexError("groups nested too deep");
        std::string text;
        auto emit = [&]() {
            if (!text.empty()) p.add(*new PlainText(text.c_str(), mark));
            text.clear();
        };
        while (pos < s.size()) {
            char c = s[pos];
            if (c == '}') {
                if (!inGroup) throw LatexError("unbalanced braces");
                ++pos;
                emit();
                --depth;
                return;
            } else if (c == '{') {
                ++pos;
                emit();
                inlines(p, mark, true);
            } else if (c == '\\') {
                if (!inGroup && blockCommand()) break;
                command(p, text, emit);
            } else if (c == '$') {
                size_t close = s.find('$', pos + 1);
                if (close == std::string::npos) throw LatexError("math not closed");
                text += s.substr(pos, close + 1 - pos);
                pos = close + 1;
            } else if (c == '%') {
                size_t eol = s.find('\n', pos);
                pos = eol == std::string::npos ? s.size() : eol + 1;
            } else if (isspace(static_cast<unsigned char>(c)) || c == '~') {
                if (!text.empty() && text.back() != ' ') text += ' ';
                if (text.empty() && p.size() > 0) text = " ";
                ++pos;
            } else {
                text += c;
                ++pos;
            }
        }
        if (inGroup) throw LatexError("unbalanced braces");
        if (!text.empty() && text.back() == ' ') text.pop_back();  // the blanks before a block
        emit();
        --depth;
    }

    bool blockCommand() const {
        std::string name = peekCommand();
        return startsWith(s, pos, "\\\\") || name == "item" || name == "begin" || name == "end" ||
               headingLevel(name) > 0;
    }

    template <class Emit>
    void command(DocContainer& p, std::string& text, Emit& emit) {
        std::string name = peekCommand();
        if (name.empty()) {  // an escaped character
            char c = pos + 1 < s.size() ? s[pos + 1] : '\\';
            pos = std::min(pos + 2, s.size());
            if (c == '~') {
                text += '~';
                if (startsWith(s, pos, "{}")) pos += 2;
            } else {
                text += c == '\\' ? ' ' : c;
            }
            return;
        }
        pos += name.size() + 1;
        for (int i = 0; i < 3; ++i)
            if (name == marks[i]) {
                emit();
                expect('{');
                inlines(p, markOf[i], true);
                return;
            }
        if (name == "noindent") return;
        if (name == "item" || name == "begin" || name == "end")
            throw LatexError("\\" + name + " inside a group");
        text += "\\" + name;
    }

    static const int maxDepth = 100;
    const std::string& s;
    size_t pos = 0;
    int depth = 0;
};

// Puts the blocks of one element into the sections open under root.
void place(std::vector<Block>& blocks, std::vector<std::pair<int, Section*>>& open) {
    for (Block& b : blocks) {
        if (b.level == 0) {
            open.back().second->add(*b.element.release());
            continue;
        }
        while (open.back().first >= b.level) open.pop_back();
        Section* s = new Section;
        s->setTitle(*b.element.release());
        open.back().second->add(*s);
        open.push_back({b.level, s});
    }
}

}  // namespace

bool readLatex(const std::string& text, Section& into, std::ostream& errors) {
    std::vector<std::pair<int, Section*>> open{{0, &into}};
    bool whole = true;
    for (const std::string& element : splitElements(text)) {
        try {
            std::vector<Block> blocks = ElementParser(element).blocks();
            place(blocks, open);
        } catch (const std::exception&) {
            errors << "Error parsing Latex!\n-----\n" << element << "\n=====" << std::endl;
            whole = false;
        }
    }
    return whole;
}
