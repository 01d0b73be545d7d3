// Icon fields as document elements: labelled values, comment texts and LaTeX comments.
#include "editor/docfield.h"

#include <cstring>
#include <iostream>
#include <sstream>

#include "docgen/latexreader.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/symbol.h"

namespace {

std::string trimmed(const std::string& text) {
    size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// A tilde stays a tilde, \noindent starts a paragraph, a backslash ending a
// line breaks it.
std::string protectedLatex(std::string text) {
    replaceAll(text, "\\~{}", "??TILDA!!");
    replaceAll(text, "~", "??TILDA!!");
    replaceAll(text, "??TILDA!!", "\\~{}");
    replaceAll(text, "\n\\noindent", "\n\n\\noindent");
    replaceAll(text, "\\\\\n", "??BREAK!!");
    replaceAll(text, "\\\n", "\\\\\n");
    replaceAll(text, "??BREAK!!", "\\\\\n");
    return text;
}

void addLines(const std::string& text, DocContainer& into) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (trimmed(line).size() > 0) into.add(*new TextParagraph(trimmed(line).c_str()));
}

std::string printed(const Object& ob) {
    std::ostringstream os;
    os << ob;
    return os.str();
}

DocElement* valueElement(const Object& value, const char* label, const char* invalid) {
    if (value.isKindOf(class_String)) {
        WeakSection* section = new WeakSection(label);
        addLines(textOf(&value), *section);
        return section;
    }
    if (value.isKindOf(class_OrderedCltn)) {
        const OrderedCltn& items = static_cast<const OrderedCltn&>(value);
        WeakSection* section = new WeakSection(label);
        ItemList* list = new ItemList;
        for (unsigned i = 0; i < items.size(); ++i)
            list->add(*new TextParagraph(printed(*items.at(i)).c_str()));
        section->add(*list);
        return section;
    }
    if (value.isKindOf(class_Paragraph)) {
        Section* section = new Section(label);
        section->add(*static_cast<DocElement*>(value.deepCopy()));
        return section;
    }
    std::cerr << invalid << std::endl;
    return 0;
}

}  // namespace

std::string textOf(const Object* value) {
    if (value == 0 || value == nil) return std::string();
    if (value->isKindOf(class_String)) return static_cast<const String*>(value)->asCharPointer();
    if (value->isKindOf(class_Symbol)) return static_cast<const Symbol*>(value)->name().asCharPointer();
    return std::string();
}

const IconField* fieldIn(const OrderedCltn& fields, const std::string& category) {
    for (unsigned i = 0; i < fields.size(); ++i) {
        const IconField* f = static_cast<const IconField*>(fields.at(i));
        if (category == f->category()) return f;
    }
    return 0;
}

std::string fieldText(const OrderedCltn& fields, const std::string& category) {
    const IconField* f = fieldIn(fields, category);
    return f ? textOf(f->value()) : std::string();
}

DocElement* docElement(const IconField& field) {
    if (!field.docData().isValid()) return 0;
    Object* value = field.value();
    if (value == 0 || value == nil) return 0;
    return valueElement(*value, field.docLabel().asCharPointer(), "Invalid type for icon field value");
}

DocElement* commentElement(const IconField& field, const char* label) {
    Object* value = field.value();
    if (value == 0 || value == nil) return 0;
    return valueElement(*value, label, "Invalid type for icon comment field value");
}

Section* textElement(const IconField& field, const char* format, const char* title) {
    std::string text = trimmed(textOf(field.value()));
    if (text.empty()) return 0;
    Section* section = new Section(title);
    if (strcmp(format, "ASCII") == 0) {
        addLines(text, *section);
        return section;
    }
    QASSERT_TEXT(strcmp(format, "Latex") == 0, "format is ASCII or Latex");
    std::ostringstream errors;
    if (readLatex(protectedLatex(text), *section, errors)) return section;
    std::cerr << errors.str() << text << std::endl;
    delete section;
    return 0;
}
