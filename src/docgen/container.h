// Elements that hold other elements: paragraphs, lists and tables.
#ifndef DOCGEN_CONTAINER_H
#define DOCGEN_CONTAINER_H

#include "docgen/element.h"
#include "quill/orderedc.h"

extern Class class_DocContainer;
extern Class class_Paragraph;
extern Class class_TextParagraph;
extern Class class_ItemList;
extern Class class_TableRow;
extern Class class_DocTable;

// Owns its children: deleting or copying a container deletes or copies them.
class DocContainer : public DocElement {
    DECLARE_MEMBERS(DocContainer)
public:
    DocContainer() = default;
    DocContainer(const DocContainer&) = delete;
    ~DocContainer() noexcept(false) override;

    // Takes ownership of element; answers it.
    DocElement& add(DocElement& element);
    unsigned size() const override { return children.size(); }
    const DocElement& at(unsigned i) const;
    bool hasContent() const override;
    std::string plainText() const override;
    // Walks the children in order.
    void walkChildren(DocWalk& w) const;
    void clearCopiedState() override;

private:
    OrderedCltn children;
};

// Running text: inline elements, written as one block.
class Paragraph : public DocContainer {
    DECLARE_MEMBERS(Paragraph)
public:
    void walk(DocWalk& w) const override;
};

// A paragraph made from a line of text.
class TextParagraph : public Paragraph {
    DECLARE_MEMBERS(TextParagraph)
public:
    explicit TextParagraph(const char* text = "", Mark mark = Mark::None);
};

// A list whose children are its items (each a Paragraph, which may hold a list).
class ItemList : public DocContainer {
    DECLARE_MEMBERS(ItemList)
public:
    explicit ItemList(bool numbered = false) : numbered_(numbered) {}
    bool numbered() const { return numbered_; }
    void walk(DocWalk& w) const override;

private:
    bool numbered_;
};

// A row of a table: its children are the cells (each a Paragraph).
class TableRow : public DocContainer {
    DECLARE_MEMBERS(TableRow)
public:
    void walk(DocWalk& w) const override;
};

// A simple table: rows of cells, as many columns as the widest row.
class DocTable : public DocContainer {
    DECLARE_MEMBERS(DocTable)
public:
    void walk(DocWalk& w) const override;
    unsigned columns() const;
};

#endif
