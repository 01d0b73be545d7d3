// IconMetaData, the fields that an icon gives to the generated document, and their merging.
#ifndef EDITOR_ICONMETA_H
#define EDITOR_ICONMETA_H

#include "editor/iconfld.h"
#include "quill/orderedc.h"

class Section;

extern Class class_IconMetaData;

// The fields of one item, and the fields of the items merged into it that
// stay separate entries. It owns both; it is rebuilt, never stored.
class IconMetaData : public Object {
    DECLARE_MEMBERS(IconMetaData)
public:
    IconMetaData() {}
    // Copies every field with IconField's copy constructor.
    IconMetaData(const IconMetaData& other);
    IconMetaData& operator=(const IconMetaData&) = delete;
    ~IconMetaData() noexcept(false) override;

    // Each add refuses a category that the metadata already has.
    IconField& add(IconCategory category, Object* value);
    IconField& add(Object* value, IconCategory category, const IconFieldEdt& editor,
                   const DocGenData& docData);
    // Documents the field under the editor's label when it can be edited.
    IconField& add(Object* value, IconCategory category, const IconFieldEdt& editor);
    // A new field in place of the one of the category.
    IconField& replace(Object* value, IconCategory category, const IconFieldEdt& editor,
                       const DocGenData& docData);
    IconField& insertAfter(IconCategory previous, Object* value, IconCategory category,
                           const IconFieldEdt& editor, const DocGenData& docData);
    // Takes the field out and deletes it.
    void remove(IconField* iconField);

    // The field of the category, or null.
    IconField* field(const char* category) const;
    IconField* field(IconCategory category) const { return field(category()); }
    bool includes(const char* category) const { return field(category) != 0; }
    // The resolved value of a field that must be there.
    Object* value(const char* category) const;

    const OrderedCltn& fields() const { return fields_; }
    // One collection of fields for each item merged in under a secondary id.
    const OrderedCltn& mergedItems() const { return mergedItems_; }

    // Assigns other's fields to these, position by position.
    IconMetaData& assign(const IconMetaData& other);
    // Merges other in: new categories are copied, shared ones merged field
    // by field; with a secondary id on both sides, other's fields become a
    // merged item instead.
    IconMetaData& operator+=(const IconMetaData& other);

    // The item's section of the document, a new one; null when it would be
    // empty and the item does not allow that.
    Section* document() const;

    void clearCopiedState() override;
    void deepenShallowCopy() override;

private:
    IconField& insert(IconField* field, int index);
    IconField& fieldAt(int i) const { return *static_cast<IconField*>(fields_.at(i)); }
    bool hasValue(const char* category) const;

    OrderedCltn fields_;
    OrderedCltn mergedItems_;
};

#endif
