// The plain text form of a document: wrapped at 78 columns, headings underlined.
#ifndef DOCGEN_ASCIIWRITER_H
#define DOCGEN_ASCIIWRITER_H

#include <ostream>

#include "docgen/docwriter.h"

class AsciiWriter : public DocWriter {
public:
    static const unsigned width = 78;

    explicit AsciiWriter(std::ostream& os) : os(os) {}
    void beginDocument(const DocOutline& outline) override;
    void endDocument(const DocOutline&) override { flush(); }
    void beginHeading(const SectionHead& head) override;
    void endHeading(const SectionHead& head) override;
    void endSection(const SectionHead&) override {}
    void beginParagraph() override { flush(); }
    void endParagraph() override;
    void text(const std::string& text, Mark mark) override;
    void link(const std::string& text, const std::string& target) override;
    void image(const std::string& file) override { pending += "[picture " + file + "]"; }
    void bookmark(const std::string&) override {}
    void beginList(bool numbered) override;
    void beginItem() override;
    void endItem() override { flush(); }
    void endList() override;
    void beginTable(unsigned) override { flush(); }
    void beginRow() override { firstCell = true; }
    void beginCell() override;
    void endCell() override {}
    void endRow() override { flush(); }
    void endTable() override { os << "\n"; }

private:
    // Writes the pending text wrapped under the present indentation; answers
    // the length of its longest line.
    size_t flush();
    void underlined(const std::string& text, char underline);

    std::ostream& os;
    std::string pending;     // inline text not yet written
    std::string marker;      // the list item's marker, until its first line is out
    std::vector<int> lists;  // the next number of each open list, 0 when bulleted
    bool firstCell = true;
};

#endif
