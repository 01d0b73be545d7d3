// Semantic's documents: the items of the icons grouped by title, the sections by class, the picture, the
// files.
#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>

#include "docgen/all.h"
#include "editor/docfield.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconmeta.h"
#include "editor/semantic.h"
#include "quill/dictnary.h"
#include "quill/filename.h"
#include "quill/quillerr.h"
#include "quill/safefile.h"
#include "quill/symbol.h"
#include "trellis/drawarea.h"
#include "trellis/drawicon.h"
#include "trellis/drawprim.h"
#include "trellis/printdlg.h"

namespace {

std::string valueText(const IconMetaData& item, IconCategory category) {
    return fieldText(item.fields(), category());
}

// The item's key: its title, else its id; empty for none.
std::string keyOf(const IconMetaData& item) {
    std::string key = valueText(item, iconcat::TITLE);
    return key.empty() ? valueText(item, iconcat::ID) : key;
}

// The section of root titled name, made when missing.
Section& sectionNamed(Section& root, const std::string& name) {
    for (unsigned i = 0; i < root.size(); ++i) {
        const DocElement& child = root.at(i);
        if (child.isKindOf(class_Section) && child.plainText() == name)
            return const_cast<Section&>(static_cast<const Section&>(child));
    }
    return static_cast<Section&>(root.add(*new WeakSection(name.c_str())));
}

const char* LABELS() { return "LABELS"; }

// Puts value into the item under category, in place of a former value.
void setField(IconMetaData& item, IconCategory category, Object* value, const DocGenData& docData) {
    if (item.includes(category()))
        item.replace(value, category, IconFieldEdt::notEditable(), docData);
    else if (docData.isValid())
        item.add(value, category, IconFieldEdt::notEditable(), docData);
    else
        item.add(category, value);
}

// The label of an icon, or its name when it has none.
String shownName(IconNode* icon) {
    if (!icon) return String();
    if (icon->iconLabel() && icon->iconLabel()->text.size() > 0) return icon->iconLabel()->text;
    return icon->name();
}

// The texts, one to a line.
String* linesOf(const OrderedCltn& texts) {
    String* lines = new String;
    for (unsigned i = 0; i < texts.size(); ++i) {
        if (i > 0) *lines += "\n";
        *lines += *CAST(String, texts.at(i));
    }
    return lines;
}

DocWriter* writerFor(int kind, std::ostream& os) {
    switch (kind) {
        case DOCUMENT_HTML:
            return new HtmlWriter(os);
        case DOCUMENT_LATEX:
            return new LatexWriter(os);
        case DOCUMENT_RTF:
            return new RtfWriter(os);
        default:
            return new AsciiWriter(os);
    }
}

}  // namespace

void Semantic::setDrawing(Dictionary& icons, const char* fileName) {
    headlessIcons = &icons;
    headlessFile = fileName;
}

const Dictionary& Semantic::drawingIcons() const {
    return editor ? attached().editorIcons() : *headlessIcons;
}

String Semantic::drawingBase() const {
    if (editor) return attached().baseName();
    const char* name = headlessFile.asCharPointer();
    return directoryPart(name) + "/" + baseName(name);
}

void Semantic::drawingPictures(OrderedCltn& pictures) const {
    OrderedCltn icons;
    icons.addContentsOf(drawingIcons());
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        if (icon.compositeIcon()->icons().isEmpty()) icon.update();
        pictures.add(*icon.compositeIcon());
    }
}

String& Semantic::documentCreator(String& result) { return result = "Tarn"; }

String& Semantic::documentFileName(String& result, int kind) {
    static const char* const extensions[] = {".html", ".tex", ".txt", ".rtf"};
    result = drawingBase();
    result += "_";
    result += extensions[kind];
    return result;
}

String& Semantic::writeGraphicFile(String& result, int kind, const char* baseName) {
    PrintOptions settings;
    bool gif = kind == DOCUMENT_HTML || kind == DOCUMENT_RTF;
    settings.kind = gif ? PrintOptions::GIF : PrintOptions::POSTSCRIPT;
    settings.width = kind == DOCUMENT_HTML ? 60 : kind == DOCUMENT_RTF ? 100 : 18;
    settings.height = kind == DOCUMENT_HTML ? 40 : kind == DOCUMENT_RTF ? 75 : 18;
    result = baseName;
    result += gif ? ".gif" : ".ps";
    settings.fileName = result;
    FloatRect world(0, 0, width_, height_);
    OrderedCltn pictures;
    if (!editor) drawingPictures(pictures);
    if (!printDrawing(editor ? attached().gui().drawArea().list() : pictures, world, settings))
        result = formatText("Cannot write the picture %s", settings.fileName.asCharPointer());
    return result;
}

// Nodes are titled by their labels, links by the labels of their ends, and
// labelled links show their labels.
void Semantic::documentFields(IconNode& icon) {
    if (icon.metaDataCltn().isEmpty()) return;
    IconMetaData& item = *CAST(IconMetaData, icon.metaDataCltn().first());
    if (icon.isKindOf(class_IconArc)) {
        IconArc& link = *CAST(IconArc, &icon);
        String title = shownName(link.from()) + " -> " + shownName(link.to());
        setField(item, iconcat::TITLE, new String(title), DocGenData::none());
        if (icon.isKindOf(class_ClassArc))
            setField(item, LABELS, linesOf(CAST(ClassArc, &icon)->labels()), DocGenData("Labels", 1));
        return;
    }
    setField(item, iconcat::TITLE, new String(shownName(&icon)), DocGenData::none());
    if (!item.includes(iconcat::CLASS())) item.add(iconcat::CLASS, new Symbol(icon.className()));
    if (!item.includes(iconcat::FILE())) item.add(iconcat::FILE, new String);
}

IconMetaData* Semantic::titleMetaData() {
    IconMetaData* title = new IconMetaData;
    title->add(iconcat::TITLE, new String(fileNamePart(drawingBase().asCharPointer())));
    title->add(iconcat::CLASS, new Symbol("Drawing"));
    title->add(iconcat::IS_TITLE, new String("1"));
    title->add(iconcat::FILE, new String);
    return title;
}

void Semantic::beforeDocumentWrite(Section&, int) {}

Section* Semantic::composeDocument(int kind) {
    std::map<std::string, IconMetaData*> items;
    OrderedCltn icons;
    icons.addContentsOf(drawingIcons());
    for (unsigned i = 0; i < icons.size(); ++i) {
        IconNode& icon = *CAST(IconNode, icons.at(i));
        documentFields(icon);
        if (icon.isKindOf(class_IconArc)) continue;
        IconMetaData* first = 0;
        for (unsigned m = 0; m < icon.metaDataCltn().size(); ++m) {
            const IconMetaData& item = *CAST(IconMetaData, icon.metaDataCltn().at(m));
            std::string key = keyOf(item);
            if (key.empty()) {
                if (first) *first += item;
                continue;
            }
            IconMetaData*& entry = items[key];
            if (entry)
                *entry += item;
            else
                entry = new IconMetaData(item);
            if (!first) first = entry;
        }
    }
    std::unique_ptr<IconMetaData> title(titleMetaData());
    IconMetaData*& titleEntry = items[keyOf(*title)];
    if (titleEntry)
        *titleEntry += *title;
    else
        titleEntry = title.release();

    std::vector<IconMetaData*> sorted;
    for (auto& entry : items) sorted.push_back(entry.second);
    String base = drawingBase();
    Section* document = new Section(fileNamePart(base.asCharPointer()).asCharPointer());
    if (kind == DOCUMENT_RTF) document->add(*new Bookmark(""));
    makeDocumentSection(sorted, *document);
    for (IconMetaData* item : sorted) delete item;

    String picture, pictureBase = base + "_graphic";
    writeGraphicFile(picture, kind, pictureBase.asCharPointer());
    Section& graphic = static_cast<Section&>(document->add(*new Section("Graphic")));
    if (strncmp(picture.asCharPointer(), pictureBase.asCharPointer(), pictureBase.size()) == 0)
        graphic.add(*new InlineImage(fileNamePart(picture.asCharPointer()).asCharPointer()));
    else
        std::cerr << picture << std::endl;
    return document;
}

// The items in the order of their classes, into document.
void Semantic::makeDocumentSection(std::vector<IconMetaData*>& items, Section& document) {
    std::stable_sort(items.begin(), items.end(), [](const IconMetaData* a, const IconMetaData* b) {
        return valueText(*a, iconcat::CLASS) < valueText(*b, iconcat::CLASS);
    });
    fillDocument(items, document);
}

void Semantic::fillDocument(std::vector<IconMetaData*>& items, Section& document) {
    IconMetaData* titleMetaData = 0;
    for (IconMetaData* item : items) {
        if (!item->includes(iconcat::IS_TITLE())) continue;
        QASSERT_TEXT(titleMetaData == 0, "titleMetaData == (IconMetaData *)nil");
        titleMetaData = item;
    }
    QASSERT_TEXT(titleMetaData != 0, "titleMetaData != (IconMetaData *)nil");
    std::string format;
    if (titleMetaData) {
        if (Section* title = titleMetaData->document()) document.add(*title);
        format = valueText(*titleMetaData, iconcat::FORMAT);
    }
    for (IconMetaData* item : items) {
        if (item == titleMetaData) continue;
        item->value(iconcat::CLASS());
        IconField* added = 0;
        if (!format.empty() && !item->includes(iconcat::FORMAT()))
            added = &item->add(iconcat::FORMAT, new String(format.c_str()));
        addMetaDataToSection(document, *item);
        if (added) item->remove(added);
    }
}

void Semantic::addMetaDataToSection(Section& root, const IconMetaData& item) {
    Section* document = item.document();
    if (!document) return;
    std::string outer = valueText(item, iconcat::SECTION);
    std::string inner = valueText(item, iconcat::SUBSECTION);
    if (outer.empty()) {
        outer = valueText(item, iconcat::CLASS);
        inner.clear();
    }
    Section* target = &sectionNamed(root, outer);
    if (!inner.empty()) target = &sectionNamed(*target, inner);
    beforeSectionInsert(*target, *document, item);
    target->add(*document);
}

void Semantic::beforeSectionInsert(Section&, Section&, const IconMetaData&) {}

// The document of that kind, written before, in a read-only window.
const char* Semantic::viewDocument(int kind) {
    String file;
    documentFileName(file, kind);
    return viewFile(file.asCharPointer(), (String("ASCII Document: ") + file).asCharPointer());
}

const char* Semantic::createDocument(int kind, Section* document) {
    String file;
    documentFileName(file, kind);
    const char* cannotWrite = formatText("Cannot write the file %s, check permission.", file.asCharPointer());
    std::unique_ptr<SafeFile> out;
    if (errorTextOf([&] { out.reset(new SafeFile(file.asCharPointer())); }).size() > 0) return cannotWrite;
    std::unique_ptr<Section> made(document ? 0 : composeDocument(kind));
    Section& written = document ? *document : *made;
    beforeDocumentWrite(written, kind);
    std::unique_ptr<DocWriter> writer(writerFor(kind, out->stream()));
    writeDocument(written, *writer);
    if (out->commitOrMessage().size() > 0) return cannotWrite;
    return 0;
}
