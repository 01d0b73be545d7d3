// The LaTeX form of a document: a complete article, its pictures in PostScript.
#ifndef DOCGEN_LATEXWRITER_H
#define DOCGEN_LATEXWRITER_H

#include <ostream>

#include "docgen/docwriter.h"

class LatexWriter : public DocWriter {
public:
    explicit LatexWriter(std::ostream& os) : os(os) {}
    void beginDocument(const DocOutline& outline) override;
    void endDocument(const DocOutline& outline) override;
    void beginHeading(const SectionHead& head) override;
    void endHeading(const SectionHead& head) override;
    void endSection(const SectionHead&) override {}
    void beginParagraph() override { os << "\n"; }
    void endParagraph() override { os << "\n"; }
    void text(const std::string& text, Mark mark) override;
    void link(const std::string& text, const std::string& target) override;
    void image(const std::string& file) override;
    void bookmark(const std::string& name) override;
    void beginList(bool numbered) override;
    void beginItem() override { os << "\\item "; }
    void endItem() override { os << "\n"; }
    void endList() override;
    void beginTable(unsigned columns) override;
    void beginRow() override { firstCell = true; }
    void beginCell() override;
    void endCell() override {}
    void endRow() override { os << " \\\\\n"; }
    void endTable() override { os << "\\end{tabular}\n\n"; }

    // The text with the characters that LaTeX reserves written as commands.
    static std::string escape(const std::string& text);
    // A label made of letters and digits only, unique for distinct names.
    static std::string label(const std::string& name);

private:
    std::ostream& os;
    std::vector<bool> lists;  // open lists, true when numbered
    bool firstCell = true;
};

#endif
