// The walk of a document tree: numbering, index gathering, then one pass through the writer.
#include "docgen/docwalk.h"

#include <algorithm>

namespace {

// Numbering state of the first walk: one counter per level.
struct Numbering {
    DocOutline& outline;
    std::vector<int> counters;
    std::string anchor;  // of the section being numbered

    // The next number at place, showing its last shown parts (all when negative).
    std::string number(int place, int shown) {
        counters.resize(place, 0);
        ++counters[place - 1];
        std::string text;
        int first = shown < 0 ? 0 : std::max(0, place - shown);
        for (int i = first; i < place; ++i) text += (text.empty() ? "" : ".") + std::to_string(counters[i]);
        return text;
    }

    void gather(const DocContainer& body, int place, int level);

    // A section is numbered by its place; its heading level may be its own.
    void gatherSection(const Section& s, int place, int placeLevel) {
        int level = s.levelAt(placeLevel);
        std::string outer = anchor;
        anchor = "sec" + std::to_string(outline.sections.size() + 1);
        outline.sections.push_back({number(place, s.numbering()), level, s.plainText(), anchor});
        gather(s, place + 1, level + 1);
        anchor = outer;
    }
};

void Numbering::gather(const DocContainer& body, int place, int level) {
    for (unsigned i = 0; i < body.size(); ++i) {
        const DocElement& e = body.at(i);
        if (e.isKindOf(class_Section)) {
            const Section& s = static_cast<const Section&>(e);
            if (s.isShown()) gatherSection(s, place, level);
        } else if (e.isKindOf(class_IndexMarker)) {
            const IndexMarker& m = static_cast<const IndexMarker&>(e);
            bool toFile = *m.target() != 0;
            outline.indexes[m.index()].push_back({m.entry(), toFile ? m.target() : anchor, !toFile});
        } else if (e.isKindOf(class_DocContainer)) {
            gather(static_cast<const DocContainer&>(e), place, level);
        }
    }
}

}  // namespace

std::vector<IndexEntry> sortedEntries(std::vector<IndexEntry> entries) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const IndexEntry& a, const IndexEntry& b) { return a.entry < b.entry; });
    return entries;
}

void DocWalk::section(const Section& s) {
    if (!s.isShown() || nextHead >= outline.sections.size()) return;
    const SectionHead& head = outline.sections[nextHead++];
    out.beginHeading(head);
    s.title().walk(*this);
    out.endHeading(head);
    s.walkChildren(*this);
    out.endSection(head);
}

DocOutline outlineOf(const Section& root) {
    DocOutline outline;
    outline.title = root.plainText();
    Numbering numbering{outline, {}, "top"};
    numbering.gather(root, 1, 1);
    return outline;
}

void writeDocument(const Section& root, DocWriter& writer) {
    DocOutline outline = outlineOf(root);
    DocWalk walk(outline, writer);
    writer.beginDocument(outline);
    root.walkChildren(walk);
    writer.endDocument(outline);
}
