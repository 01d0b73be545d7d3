// IconField, one category and value of an icon's metadata, with DocGenData and IconFieldEdt.
#ifndef EDITOR_ICONFLD_H
#define EDITOR_ICONFLD_H

#include "editor/iconcat.h"
#include "quill/quillstr.h"

extern Class class_DocGenData;
extern Class class_IconFieldEdt;
extern Class class_IconField;

// How a field shows in the generated document: a heading and the kind of
// element, 1 running text, 2 relations. An empty label means no output.
class DocGenData : public Object {
    DECLARE_MEMBERS(DocGenData)
public:
    explicit DocGenData(const char* label = "", int level = 0) : label_(label), level_(level) {}
    DocGenData(const DocGenData&) = default;
    DocGenData& operator=(const DocGenData&) = delete;

    // The shared instance of the fields without output.
    static const DocGenData& none();

    bool isValid() const { return label_.size() > 0; }
    const String& label() const { return label_; }
    int level() const { return level_; }

    void clearCopiedState() override;

private:
    String label_;
    int level_;
};

// How a field is edited in a dialog: the row's label, its parameter, its
// width in columns and its text. Without a label it cannot be edited.
class IconFieldEdt : public Object {
    DECLARE_MEMBERS(IconFieldEdt)
public:
    IconFieldEdt() : label_(0), param_(0), cols_(0) {}
    explicit IconFieldEdt(const char* label, const char* param = 0, int cols = 0, const char* text = "")
        : label_(label), param_(param), cols_(cols), text_(text) {}
    IconFieldEdt(const IconFieldEdt&) = default;
    IconFieldEdt& operator=(const IconFieldEdt&) = delete;

    // The shared instance of the fields that cannot be edited.
    static const IconFieldEdt& notEditable();

    bool isValid() const { return label_ != 0; }
    const char* label() const { return label_; }
    const char* param() const { return param_; }
    int cols() const { return cols_; }
    const String& text() const { return text_; }

    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    const char* label_;
    const char* param_;
    int cols_;
    String text_;
};

// A category and its value. The field owns its value, unless the value is
// an IconNode: then the field is dynamic, and its value is asked of that
// icon each time (IconNode::getIconFieldValue).
class IconField : public Object {
    DECLARE_MEMBERS(IconField)
public:
    // A field without document output that cannot be edited.
    IconField(IconCategory name, Object* value);
    IconField(Object* value, IconCategory name, const IconFieldEdt& editor, const DocGenData& docData);
    // The value is copied deeply, unless the field is dynamic.
    IconField(const IconField& field);
    ~IconField() noexcept(false) override;

    // Takes a deep copy of rhs's value; a dynamic field keeps its icon.
    IconField& operator=(const IconField& rhs);
    // Merges rhs in: an empty text of this field takes rhs's text.
    IconField& operator+=(const IconField& rhs);

    // With resolve, a dynamic field answers its icon's value for the category.
    Object* value(bool resolve = true) const;
    const char* category() const { return category_; }
    // A local field belongs to its icon only and is not copied to merged items.
    bool isLocal() const { return flags & LOCAL; }
    void setLocal(bool local);
    bool isDynamic() const;
    const DocGenData& docData() const { return docData_; }
    const IconFieldEdt& editor() const { return editor_; }
    const String& docLabel() const { return docData_.label(); }
    // Whether the category names the item's section rather than its content.
    bool isTextualSection() const;

    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;

private:
    enum { LOCAL = 1 };

    const char* category_;
    Object* value_;
    unsigned flags;
    DocGenData docData_;
    IconFieldEdt editor_;
};

#endif
