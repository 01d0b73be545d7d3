// The interface that every output format implements, and what the walk tells it.
#ifndef DOCGEN_DOCWRITER_H
#define DOCGEN_DOCWRITER_H

#include <map>
#include <string>
#include <vector>

#include "docgen/element.h"

// A heading as the walk numbered it.
struct SectionHead {
    std::string number;  // "2.1", empty when unnumbered
    int level;           // 1 for the document's own sections
    std::string title;   // the title without marks
    std::string anchor;  // a name unique in the document
};

// One entry of an index: the text and where it leads (an anchor or a file).
struct IndexEntry {
    std::string entry;
    std::string target;
    bool isAnchor;  // target names a section's anchor, not a file
};

// What a writer may need before the body: the headings in order, the indexes.
struct DocOutline {
    std::string title;
    std::vector<SectionHead> sections;
    std::map<std::string, std::vector<IndexEntry>> indexes;
};

// The entries of an index in the order of their texts.
std::vector<IndexEntry> sortedEntries(std::vector<IndexEntry> entries);

class DocWriter {
public:
    virtual ~DocWriter() = default;
    virtual void beginDocument(const DocOutline& outline) = 0;
    virtual void endDocument(const DocOutline& outline) = 0;
    // The title element of the section is written between these two.
    virtual void beginHeading(const SectionHead& head) = 0;
    virtual void endHeading(const SectionHead& head) = 0;
    virtual void endSection(const SectionHead& head) = 0;
    virtual void beginParagraph() = 0;
    virtual void endParagraph() = 0;
    virtual void text(const std::string& text, Mark mark) = 0;
    virtual void link(const std::string& text, const std::string& target) = 0;
    virtual void image(const std::string& file) = 0;
    virtual void bookmark(const std::string& name) = 0;
    virtual void beginList(bool numbered) = 0;
    virtual void beginItem() = 0;
    virtual void endItem() = 0;
    virtual void endList() = 0;
    virtual void beginTable(unsigned columns) = 0;
    virtual void beginRow() = 0;
    virtual void beginCell() = 0;
    virtual void endCell() = 0;
    virtual void endRow() = 0;
    virtual void endTable() = 0;
};

#endif
