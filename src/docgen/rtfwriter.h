// The RTF form of a document, for word processors, with its bookmarks.
#ifndef DOCGEN_RTFWRITER_H
#define DOCGEN_RTFWRITER_H

#include <ostream>

#include "docgen/docwriter.h"

class RtfWriter : public DocWriter {
public:
    explicit RtfWriter(std::ostream& os) : os(os) {}
    void beginDocument(const DocOutline& outline) override;
    void endDocument(const DocOutline& outline) override;
    void beginHeading(const SectionHead& head) override;
    void endHeading(const SectionHead& head) override;
    void endSection(const SectionHead&) override {}
    void beginParagraph() override;
    void endParagraph() override { os << "\\par}\n"; }
    void text(const std::string& text, Mark mark) override;
    void link(const std::string& text, const std::string& target) override;
    void image(const std::string& file) override;
    void bookmark(const std::string& name) override;
    void beginList(bool numbered) override;
    void beginItem() override;
    void endItem() override;
    void endList() override { lists.pop_back(); }
    void beginTable(unsigned columns) override;
    void beginRow() override;
    void beginCell() override { os << "{"; }
    void endCell() override { os << "}\\cell "; }
    void endRow() override { os << "\\row}\n"; }
    void endTable() override { os << "\\pard\n"; }

    // The text with \, { and } escaped and the characters past ASCII as \u escapes.
    static std::string escape(const std::string& text);

private:
    std::ostream& os;
    struct OpenList {
        int next;       // the next item's number, 0 when bulleted
        bool itemOpen;  // the item's paragraph is still open
    };
    std::vector<OpenList> lists;
    unsigned columns = 1;
};

#endif
