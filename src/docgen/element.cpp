// The leaves of a document and how each reaches the writer.
#include "docgen/element.h"

#include <cstring>

#include "docgen/docwalk.h"

DEFINE_ABSTRACT_CLASS(DocElement, Object, 1, 0)
DEFINE_CLASS(PlainText, DocElement, 1, 0)
DEFINE_CLASS(HyperLink, DocElement, 1, 0)
DEFINE_CLASS(InlineImage, DocElement, 1, 0)
DEFINE_CLASS(IndexMarker, DocElement, 1, 0)
DEFINE_CLASS(Bookmark, DocElement, 1, 0)

PlainText::PlainText(const char* text, Mark mark) : text(text), mark_(mark) {}
void PlainText::walk(DocWalk& w) const { w.writer().text(text.asCharPointer(), mark_); }
void PlainText::clearCopiedState() {
    DocElement::clearCopiedState();
    text.clearCopiedState();
}

HyperLink::HyperLink(const char* text, const char* target) : text(text), target_(target) {}
void HyperLink::walk(DocWalk& w) const { w.writer().link(text.asCharPointer(), target_.asCharPointer()); }
void HyperLink::clearCopiedState() {
    DocElement::clearCopiedState();
    text.clearCopiedState();
    target_.clearCopiedState();
}

InlineImage::InlineImage(const char* file) : file_(file) {}
void InlineImage::walk(DocWalk& w) const { w.writer().image(file_.asCharPointer()); }
void InlineImage::clearCopiedState() {
    DocElement::clearCopiedState();
    file_.clearCopiedState();
}

const char* const IndexMarker::classes = "classes";
const char* const IndexMarker::identifiersHTML = "identifiersHTML";
const char* const IndexMarker::identifiersTex = "identifiersTex";

namespace {

const char* const formats[] = {"HTML", "Tex"};

// The format that ends the index's name, or "".
std::string formatOf(const std::string& index) {
    for (const char* format : formats) {
        size_t n = strlen(format);
        if (index.size() > n && index.compare(index.size() - n, n, format) == 0) return format;
    }
    return "";
}

}  // namespace

bool IndexMarker::listedIn(const std::string& index, const std::string& format) {
    std::string own = formatOf(index);
    return own.empty() || own == format;
}

std::string IndexMarker::heading(const std::string& index) {
    return "Index of " + index.substr(0, index.size() - formatOf(index).size());
}

IndexMarker::IndexMarker(const char* index, const char* entry, const char* target)
    : index_(index), entry_(entry), target_(target) {}
void IndexMarker::walk(DocWalk& w) const { w.indexMarker(*this); }
void IndexMarker::clearCopiedState() {
    DocElement::clearCopiedState();
    index_.clearCopiedState();
    entry_.clearCopiedState();
    target_.clearCopiedState();
}

Bookmark::Bookmark(const char* name) : name_(name) {}
void Bookmark::walk(DocWalk& w) const { w.writer().bookmark(name_.asCharPointer()); }
void Bookmark::clearCopiedState() {
    DocElement::clearCopiedState();
    name_.clearCopiedState();
}
