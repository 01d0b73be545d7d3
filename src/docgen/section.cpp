// Sections, the weak ones that vanish when empty, and those with a level of their own.
#include "docgen/section.h"

#include "docgen/docwalk.h"

DEFINE_CLASS(Section, DocContainer, 1, 0)
DEFINE_CLASS(WeakSection, Section, 1, 0)
DEFINE_CLASS(ForcedSection, Section, 1, 0)

Section::Section(const char* title) : title_(new PlainText(title)) {}
Section::~Section() noexcept(false) { delete title_; }

void Section::setTitle(DocElement& title) {
    if (&title == title_) return;
    delete title_;
    title_ = &title;
}

void Section::walk(DocWalk& w) const { w.section(*this); }

void Section::clearCopiedState() {
    DocContainer::clearCopiedState();
    title_ = static_cast<DocElement*>(title_->deepCopy());
}

ForcedSection::ForcedSection(int numbering, int level, const char* title)
    : Section(title), numbering_(numbering), level(level < 1 ? 1 : level) {}
