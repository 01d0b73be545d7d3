// The walk of a document tree that drives a writer, and the numbering of its sections.
#ifndef DOCGEN_DOCWALK_H
#define DOCGEN_DOCWALK_H

#include "docgen/docwriter.h"
#include "docgen/section.h"

class DocWalk {
public:
    DocWalk(const DocOutline& outline, DocWriter& writer) : outline(outline), out(writer) {}
    DocWriter& writer() { return out; }
    // Called by sections: writes the heading from the outline, then the body.
    void section(const Section& s);
    // The index markers were gathered into the outline: nothing to write.
    void indexMarker(const IndexMarker&) {}

private:
    const DocOutline& outline;
    DocWriter& out;
    size_t nextHead = 0;
};

// Numbers the sections of root that are shown and gathers its indexes.
DocOutline outlineOf(const Section& root);

// Writes the whole document: root's title is the document's title.
void writeDocument(const Section& root, DocWriter& writer);

#endif
