// Paragraphs, lists and tables: ownership of the children and their walk.
#include "docgen/container.h"

#include "docgen/docwalk.h"

DEFINE_ABSTRACT_CLASS(DocContainer, DocElement, 1, 0)
DEFINE_CLASS(Paragraph, DocContainer, 1, 0)
DEFINE_CLASS(TextParagraph, Paragraph, 1, 0)
DEFINE_CLASS(ItemList, DocContainer, 1, 0)
DEFINE_CLASS(TableRow, DocContainer, 1, 0)
DEFINE_CLASS(DocTable, DocContainer, 1, 0)

DocContainer::~DocContainer() noexcept(false) { children.deleteContents(); }

DocElement& DocContainer::add(DocElement& element) {
    children.add(element);
    return element;
}

const DocElement& DocContainer::at(unsigned i) const { return *static_cast<DocElement*>(children.at(i)); }

bool DocContainer::hasContent() const {
    for (unsigned i = 0; i < size(); ++i)
        if (at(i).hasContent()) return true;
    return false;
}

std::string DocContainer::plainText() const {
    std::string text;
    for (unsigned i = 0; i < size(); ++i) text += at(i).plainText();
    return text;
}

void DocContainer::walkChildren(DocWalk& w) const {
    for (unsigned i = 0; i < size(); ++i) at(i).walk(w);
}

// A copy owns copies of the children, never the originals.
void DocContainer::clearCopiedState() {
    DocElement::clearCopiedState();
    children.clearCopiedState();
    children.deepenShallowCopy();
}

void Paragraph::walk(DocWalk& w) const {
    w.writer().beginParagraph();
    walkChildren(w);
    w.writer().endParagraph();
}

TextParagraph::TextParagraph(const char* text, Mark mark) { add(*new PlainText(text, mark)); }

// Items are written without a paragraph of their own.
void ItemList::walk(DocWalk& w) const {
    if (size() == 0) return;  // LaTeX refuses a list without items
    w.writer().beginList(numbered_);
    for (unsigned i = 0; i < size(); ++i) {
        w.writer().beginItem();
        const DocElement& item = at(i);
        if (item.isKindOf(class_Paragraph))
            static_cast<const Paragraph&>(item).walkChildren(w);
        else
            item.walk(w);
        w.writer().endItem();
    }
    w.writer().endList();
}

void TableRow::walk(DocWalk& w) const {
    w.writer().beginRow();
    for (unsigned i = 0; i < size(); ++i) {
        w.writer().beginCell();
        const DocElement& cell = at(i);
        if (cell.isKindOf(class_Paragraph))
            static_cast<const Paragraph&>(cell).walkChildren(w);
        else
            cell.walk(w);
        w.writer().endCell();
    }
    w.writer().endRow();
}

unsigned DocTable::columns() const {
    unsigned n = 1;
    for (unsigned i = 0; i < size(); ++i) n = std::max(n, at(i).size());
    return n;
}

void DocTable::walk(DocWalk& w) const {
    w.writer().beginTable(columns());
    walkChildren(w);
    w.writer().endTable();
}
