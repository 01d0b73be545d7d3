// Sections: a title element and a body, numbered by their level.
#ifndef DOCGEN_SECTION_H
#define DOCGEN_SECTION_H

#include "docgen/container.h"

extern Class class_Section;
extern Class class_WeakSection;
extern Class class_ForcedSection;

// A section's level is its depth under the document's root (the root's own
// sections are at level 1). The root section is the whole document: its title
// is the document's title.
class Section : public DocContainer {
    DECLARE_MEMBERS(Section)
public:
    explicit Section(const char* title = "");
    ~Section() noexcept(false) override;

    // Takes ownership of title, replacing the present one.
    void setTitle(DocElement& title);
    const DocElement& title() const { return *title_; }
    std::string plainText() const override { return title_->plainText(); }
    void walk(DocWalk& w) const override;
    // Whether the walk writes the section: weak sections vanish when empty.
    virtual bool isShown() const { return true; }
    // The level given to the section when its place would give placeLevel.
    virtual int levelAt(int placeLevel) const { return placeLevel; }
    // How many trailing parts of the section number are shown; -1 for all.
    virtual int numbering() const { return -1; }
    void clearCopiedState() override;

private:
    DocElement* title_;
};

// A section that is left out while nothing in it has content.
class WeakSection : public Section {
    DECLARE_MEMBERS(WeakSection)
public:
    explicit WeakSection(const char* title = "") : Section(title) {}
    bool isShown() const override { return hasContent(); }
};

// A section whose heading is at a level of its own, whatever its place; it is
// numbered by its place, showing only the last numbering parts of its number
// (none with 0). Its sections are headed from level + 1.
class ForcedSection : public Section {
    DECLARE_MEMBERS(ForcedSection)
public:
    explicit ForcedSection(int numbering = 0, int level = 1, const char* title = "");
    int levelAt(int) const override { return level; }
    int numbering() const override { return numbering_; }

private:
    int numbering_;
    int level;
};

#endif
