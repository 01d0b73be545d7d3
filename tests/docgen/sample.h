// A small document that uses every kind of element, for the writers' tests.
#ifndef TESTS_DOCGEN_SAMPLE_H
#define TESTS_DOCGEN_SAMPLE_H

#include <sstream>
#include <string>

#include "docgen/all.h"

inline Section* sampleDocument() {
    Section* root = new Section("Report on plant & controller");
    Section& graphic = static_cast<Section&>(root->add(*new Section("Graphic")));
    Paragraph& picture = static_cast<Paragraph&>(graphic.add(*new Paragraph));
    picture.add(*new InlineImage("plant_graphic.eps"));

    Section& blocks = static_cast<Section&>(root->add(*new Section));
    blocks.setTitle(*new HyperLink("Gain_K1", "Gain_K1.html"));
    blocks.add(*new IndexMarker(IndexMarker::classes, "Gain"));
    blocks.add(*new IndexMarker(IndexMarker::identifiersHTML, "K1", "Gain_K1.html"));
    blocks.add(*new IndexMarker(IndexMarker::identifiersTex, "K1"));
    blocks.add(*new Bookmark("gainMark"));
    Paragraph& symbols = static_cast<Paragraph&>(blocks.add(*new Paragraph));
    symbols.add(*new PlainText("Symbols: a < b & c > d, 50% of $3 #1 {x}_y ~ ^ \\ \"q\" 'a' "));
    symbols.add(*new PlainText("bold", Mark::Bold));
    symbols.add(*new PlainText("italic", Mark::Italic));
    symbols.add(*new PlainText("code", Mark::Code));
    std::string words;
    for (int i = 0; i < 60; ++i) words += "gain" + std::to_string(i) + " ";
    words += std::string(100, 'x');  // a word longer than a line
    blocks.add(*new TextParagraph(words.c_str()));

    ItemList& steps = static_cast<ItemList&>(blocks.add(*new ItemList(true)));
    steps.add(*new TextParagraph("first step"));
    Paragraph& second = static_cast<Paragraph&>(steps.add(*new TextParagraph("second step")));
    ItemList& inner = static_cast<ItemList&>(second.add(*new ItemList(false)));
    inner.add(*new TextParagraph("inner point"));

    DocTable& table = static_cast<DocTable&>(blocks.add(*new DocTable));
    TableRow& row = static_cast<TableRow&>(table.add(*new TableRow));
    row.add(*new TextParagraph("input"));
    row.add(*new TextParagraph("u1"));
    static_cast<TableRow&>(table.add(*new TableRow)).add(*new TextParagraph("output"));

    Section& relations = static_cast<Section&>(blocks.add(*new Section("Relationships")));
    relations.add(*new TextParagraph("Goes to the plant."));

    WeakSection& empty = static_cast<WeakSection&>(root->add(*new WeakSection("Vanishing")));
    empty.add(*new IndexMarker(IndexMarker::classes, "Nothing"));
    empty.add(*new WeakSection("Also empty"));
    root->add(*new ForcedSection(1, 4, "Title item"));
    return root;
}

template <class Writer>
std::string written(const Section& document) {
    std::ostringstream out;
    Writer writer(out);
    writeDocument(document, writer);
    return out.str();
}

#endif
