// The HTML form of a document: one HTML5 page with contents, sections and indexes.
#ifndef DOCGEN_HTMLWRITER_H
#define DOCGEN_HTMLWRITER_H

#include <ostream>

#include "docgen/docwriter.h"

class HtmlWriter : public DocWriter {
public:
    explicit HtmlWriter(std::ostream& os) : os(os) {}
    void beginDocument(const DocOutline& outline) override;
    void endDocument(const DocOutline& outline) override;
    void beginHeading(const SectionHead& head) override;
    void endHeading(const SectionHead& head) override;
    void endSection(const SectionHead&) override { os << "</section>\n"; }
    void beginParagraph() override { os << "<p>"; }
    void endParagraph() override { os << "</p>\n"; }
    void text(const std::string& text, Mark mark) override;
    void link(const std::string& text, const std::string& target) override;
    void image(const std::string& file) override;
    void bookmark(const std::string& name) override;
    void beginList(bool numbered) override;
    void beginItem() override { os << "<li>"; }
    void endItem() override { os << "</li>\n"; }
    void endList() override;
    void beginTable(unsigned) override { os << "<table>\n"; }
    void beginRow() override { os << "<tr>"; }
    void beginCell() override { os << "<td>"; }
    void endCell() override { os << "</td>"; }
    void endRow() override { os << "</tr>\n"; }
    void endTable() override { os << "</table>\n"; }

    // The text with &, <, > and the quotes as character references.
    static std::string escape(const std::string& text);

private:
    std::ostream& os;
    std::vector<bool> lists;  // open lists, true when numbered
};

#endif
