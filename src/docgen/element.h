// The leaves of a document: texts, links, images, index markers and bookmarks.
#ifndef DOCGEN_ELEMENT_H
#define DOCGEN_ELEMENT_H

#include <string>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

class DocWalk;

extern Class class_DocElement;
extern Class class_PlainText;
extern Class class_HyperLink;
extern Class class_InlineImage;
extern Class class_IndexMarker;
extern Class class_Bookmark;

// How a run of text is shown.
enum class Mark { None, Bold, Italic, Code };

// Any part of a document. Documents live in memory only: no element has
// stream constructors, so storing one is refused.
class DocElement : public Object {
    DECLARE_MEMBERS(DocElement)
public:
    // Writes the element through the walk's writer.
    virtual void walk(DocWalk& w) const = 0;
    // Whether the element puts anything visible out; markers do not.
    virtual bool hasContent() const { return true; }
    // The text of the element without marks, for headings and contents.
    virtual std::string plainText() const { return std::string(); }
};

class PlainText : public DocElement {
    DECLARE_MEMBERS(PlainText)
public:
    explicit PlainText(const char* text = "", Mark mark = Mark::None);
    void walk(DocWalk& w) const override;
    bool hasContent() const override { return text.size() > 0; }
    std::string plainText() const override { return text.asCharPointer(); }
    Mark mark() const { return mark_; }
    void clearCopiedState() override;

private:
    String text;
    Mark mark_;
};

// A text that leads to a file or an anchor.
class HyperLink : public DocElement {
    DECLARE_MEMBERS(HyperLink)
public:
    HyperLink(const char* text = "", const char* target = "");
    void walk(DocWalk& w) const override;
    std::string plainText() const override { return text.asCharPointer(); }
    const char* target() const { return target_.asCharPointer(); }
    void clearCopiedState() override;

private:
    String text;
    String target_;
};

// A picture kept in its own file, named with its extension.
class InlineImage : public DocElement {
    DECLARE_MEMBERS(InlineImage)
public:
    explicit InlineImage(const char* file = "");
    void walk(DocWalk& w) const override;
    const char* file() const { return file_.asCharPointer(); }
    void clearCopiedState() override;

private:
    String file_;
};

// An entry of one of the document's indexes, pointing at the section that holds
// the marker, or at target when it has one. An index whose name ends in "HTML"
// or "Tex" is for that format only.
class IndexMarker : public DocElement {
    DECLARE_MEMBERS(IndexMarker)
public:
    static const char* const classes;
    static const char* const identifiersHTML;
    static const char* const identifiersTex;

    // Whether the index is listed in a document of format ("HTML" or "Tex").
    static bool listedIn(const std::string& index, const std::string& format);
    // The heading of the index's list: "Index of " and its name without the format.
    static std::string heading(const std::string& index);

    IndexMarker(const char* index = classes, const char* entry = "", const char* target = "");
    void walk(DocWalk& w) const override;
    bool hasContent() const override { return false; }
    const char* index() const { return index_.asCharPointer(); }
    const char* entry() const { return entry_.asCharPointer(); }
    const char* target() const { return target_.asCharPointer(); }
    void clearCopiedState() override;

private:
    String index_;
    String entry_;
    String target_;
};

// A named place of the document that a word processor can jump to.
class Bookmark : public DocElement {
    DECLARE_MEMBERS(Bookmark)
public:
    explicit Bookmark(const char* name = "");
    void walk(DocWalk& w) const override;
    bool hasContent() const override { return false; }
    const char* name() const { return name_.asCharPointer(); }
    void clearCopiedState() override;

private:
    String name_;
};

#endif
