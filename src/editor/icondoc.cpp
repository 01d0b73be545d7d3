// IconMetaData::document, the section of one item: its title, index entries, comment and fields.
#include <cstring>
#include <iostream>

#include "editor/docfield.h"
#include "editor/iconarc.h"
#include "editor/iconmeta.h"
#include "quill/arrayob.h"

namespace {

// The categories that say where and how the item is documented, not what it is.
bool isItemCategory(const char* category) {
    static const IconCategory item[] = {iconcat::COMMENT,      iconcat::TITLE,
                                        iconcat::ID,           iconcat::CLASS,
                                        iconcat::CLASSNAME,    iconcat::SECTION,
                                        iconcat::SUBSECTION,   iconcat::SECTIONS,
                                        iconcat::FORMAT,       iconcat::IS_TITLE,
                                        iconcat::ALLOW_EMPTY,  iconcat::FILE,
                                        iconcat::SECONDARY_ID, iconcat::NO_COMMENT_PROLOG};
    for (IconCategory c : item)
        if (strcmp(category, c()) == 0) return true;
    size_t n = strlen(category);
    return n > 8 && strcmp(category + n - 8, "_COMMENT") == 0;
}

std::string fieldText(const OrderedCltn& fields, IconCategory category) {
    return fieldText(fields, category());
}

// One relation: the link's title, its comment seen from direction, its
// comment, then the fields of its own.
void addLinkText(IconArc& link, const char* direction, Section& into) {
    if (link.metaDataCltn().isEmpty()) return;
    const OrderedCltn& fields = static_cast<IconMetaData*>(link.metaDataCltn().first())->fields();
    std::string title = fieldText(fields, iconcat::TITLE);
    if (title.empty()) title = fieldText(fields, iconcat::ID);
    Paragraph* line = new Paragraph;
    line->add(*new PlainText(title.empty() ? link.name().asCharPointer() : title.c_str(), Mark::Bold));
    for (const std::string& category :
         {std::string(direction) + "COMMENT", std::string(iconcat::COMMENT())}) {
        std::string text = fieldText(fields, category);
        if (!text.empty()) line->add(*new PlainText((" " + text).c_str()));
    }
    into.add(*line);
    static const IconCategory skipped[] = {iconcat::CLASS,       iconcat::HAS_LABELS, iconcat::MULTIPLICITY,
                                           iconcat::FROMCOMMENT, iconcat::TOCOMMENT,  iconcat::TITLE,
                                           iconcat::ID,          iconcat::COMMENT};
    for (unsigned i = 0; i < fields.size(); ++i) {
        const IconField& f = *static_cast<const IconField*>(fields.at(i));
        bool skip = false;
        for (IconCategory c : skipped) skip = skip || strcmp(f.category(), c()) == 0;
        if (skip) continue;
        if (DocElement* element = docElement(f)) into.add(*element);
    }
}

void addLinks(const IconField& field, const char* direction, Section*& relations, Section& into) {
    Object* value = field.value();
    if (value == 0 || value == nil || !value->isKindOf(class_ArrayOb)) return;
    const ArrayOb& links = *static_cast<const ArrayOb*>(value);
    for (unsigned i = 0; i < links.size(); ++i) {
        if (links[i] == nil || !links[i]->isKindOf(class_IconArc)) continue;
        if (!relations) relations = static_cast<Section*>(&into.add(*new WeakSection("Relationships")));
        addLinkText(*static_cast<IconArc*>(links[i]), direction, *relations);
    }
}

void addFields(const OrderedCltn& fields, Section& into) {
    Section* relations = 0;
    for (unsigned i = 0; i < fields.size(); ++i) {
        const IconField& f = *static_cast<const IconField*>(fields.at(i));
        if (isItemCategory(f.category())) continue;
        if (strcmp(f.category(), iconcat::FROMLINKS()) == 0) {
            addLinks(f, "FROM", relations, into);
            continue;
        }
        if (strcmp(f.category(), iconcat::TOLINKS()) == 0) {
            addLinks(f, "TO", relations, into);
            continue;
        }
        DocElement* element = docElement(f);
        if (element) into.add(*element);
        const IconField* companion = fieldIn(fields, std::string(f.category()) + "_COMMENT");
        if (companion && element && element->isKindOf(class_Section)) {
            if (DocElement* comment = commentElement(*companion, ""))
                static_cast<Section*>(element)->add(*comment);
        } else if (companion) {
            if (DocElement* comment = commentElement(*companion, f.docLabel().asCharPointer()))
                into.add(*comment);
        }
    }
}

}  // namespace

Section* IconMetaData::document() const {
    std::string title = fieldText(fields_, iconcat::TITLE);
    std::string kind = fieldText(fields_, iconcat::CLASS);
    std::string file;
    if (includes(iconcat::FILE())) {
        file = fieldText(fields_, iconcat::FILE);
    } else {
        file = title.empty() ? kind : title;
        std::string path = fieldText(fields_, iconcat::CLASSNAME);
        if (!path.empty() && (path.back() == '/' || path.back() == '\\')) file = path + file;
    }
    if (!file.empty()) file += ".html";
    bool isTitle = includes(iconcat::IS_TITLE());
    const IconField* given = field(iconcat::SECTIONS);
    Section* section;
    if (given && given->value() != nil && given->value()->isKindOf(class_Section))
        section = static_cast<Section*>(given->value()->deepCopy());
    else if (isTitle)
        section = new ForcedSection(2, 4);
    else
        section = new Section;
    section->add(*new IndexMarker(IndexMarker::classes, title.c_str()));
    section->add(*new IndexMarker(IndexMarker::identifiersHTML, title.c_str(), file.c_str()));
    section->add(*new IndexMarker(IndexMarker::identifiersTex, title.c_str()));
    if (file.empty())
        section->setTitle(*new PlainText(title.c_str()));
    else
        section->setTitle(*new HyperLink(title.c_str(), file.c_str()));

    std::string format = fieldText(fields_, iconcat::FORMAT);
    const IconField* comment = field(iconcat::COMMENT);
    bool prolog = !includes(iconcat::NO_COMMENT_PROLOG());
    Section* text = comment ? textElement(*comment, format.empty() ? "ASCII" : format.c_str(),
                                          prolog ? "Description" : "")
                            : 0;
    if (text)
        section->add(*text);
    else if (isTitle)
        std::cerr << "No comment for title icon!" << std::endl;

    addFields(fields_, *section);
    for (unsigned i = 0; i < mergedItems_.size(); ++i)
        addFields(*static_cast<const OrderedCltn*>(mergedItems_.at(i)), *section);
    if (!isTitle && !section->hasContent() && !includes(iconcat::ALLOW_EMPTY())) {
        delete section;
        return 0;
    }
    return section;
}
