// IconMetaData: adding, finding and replacing fields by category, and merging metadata.
#include "editor/iconmeta.h"

#include <cstring>
#include <iostream>

#include "quill/quillerr.h"

DEFINE_CLASS(IconMetaData, Object, 1, 0)

namespace {

void copyFields(const OrderedCltn& from, OrderedCltn& to) {
    for (unsigned i = 0; i < from.size(); ++i) to.add(*new IconField(*static_cast<IconField*>(from.at(i))));
}

}  // namespace

IconMetaData::IconMetaData(const IconMetaData& other) : Object(other) {
    copyFields(other.fields_, fields_);
    for (unsigned i = 0; i < other.mergedItems_.size(); ++i) {
        OrderedCltn* item = new OrderedCltn;
        copyFields(*static_cast<OrderedCltn*>(other.mergedItems_.at(i)), *item);
        mergedItems_.add(*item);
    }
}

IconMetaData::~IconMetaData() noexcept(false) {
    fields_.deleteContents();
    for (unsigned i = 0; i < mergedItems_.size(); ++i)
        static_cast<OrderedCltn*>(mergedItems_.at(i))->deleteContents();
    mergedItems_.deleteContents();
}

// A field of a category already there is refused, and deleted.
IconField& IconMetaData::insert(IconField* field, int index) {
    bool present = includes(field->category());
    if (present) delete field;
    QASSERT_TEXT(!present, "! includes( category )");
    fields_.addAtIndex(index, *field);
    return *field;
}

IconField& IconMetaData::add(IconCategory category, Object* value) {
    return insert(new IconField(category, value), fields_.size());
}

IconField& IconMetaData::add(Object* value, IconCategory category, const IconFieldEdt& editor,
                             const DocGenData& docData) {
    QASSERT(editor.isValid() || docData.isValid());
    return insert(new IconField(value, category, editor, docData), fields_.size());
}

IconField& IconMetaData::add(Object* value, IconCategory category, const IconFieldEdt& editor) {
    if (!editor.isValid()) return add(category, value);
    return add(value, category, editor, DocGenData(editor.label(), 1));
}

IconField& IconMetaData::replace(Object* value, IconCategory category, const IconFieldEdt& editor,
                                 const DocGenData& docData) {
    IconField* iconField = field(category);
    QASSERT_TEXT(iconField != 0, "iconField != nil");
    IconField* replacement = new IconField(value, category, editor, docData);
    fields_[fields_.indexOfSame(*iconField)] = replacement;
    delete iconField;
    return *replacement;
}

IconField& IconMetaData::insertAfter(IconCategory previous, Object* value, IconCategory category,
                                     const IconFieldEdt& editor, const DocGenData& docData) {
    IconField* previousField = field(previous);
    QASSERT_TEXT(previousField != 0, "previousField != nil");
    return insert(new IconField(value, category, editor, docData), fields_.indexOfSame(*previousField) + 1);
}

void IconMetaData::remove(IconField* iconField) {
    QASSERT_TEXT(iconField != 0, "iconField != nil");
    delete fields_.removeSame(*iconField);
}

IconField* IconMetaData::field(const char* category) const {
    for (unsigned i = 0; i < fields_.size(); ++i)
        if (strcmp(fieldAt(i).category(), category) == 0) return &fieldAt(i);
    return 0;
}

Object* IconMetaData::value(const char* category) const {
    IconField* fld = field(category);
    if (!fld) {
        std::cerr << "\nNo field value for " << category << std::endl;
        if (IconField* kind = field(iconcat::CLASS))
            std::cerr << "CLASS value is " << *kind->value() << std::endl;
    }
    QASSERT_TEXT(fld != 0, "fld != nil");
    return fld->value();
}

bool IconMetaData::hasValue(const char* category) const {
    IconField* fld = field(category);
    if (!fld) return false;
    Object* v = fld->value();
    return v != nil && (!v->isKindOf(class_String) || v->size() > 0);
}

IconMetaData& IconMetaData::assign(const IconMetaData& other) {
    QASSERT(fields_.size() == other.fields_.size());
    for (unsigned i = 0; i < fields_.size(); ++i) fieldAt(i) = other.fieldAt(i);
    return *this;
}

IconMetaData& IconMetaData::operator+=(const IconMetaData& other) {
    if (hasValue(iconcat::SECONDARY_ID()) && other.hasValue(iconcat::SECONDARY_ID())) {
        OrderedCltn* item = new OrderedCltn;
        copyFields(other.fields_, *item);
        mergedItems_.add(*item);
        return *this;
    }
    bool wasEmpty = fields_.isEmpty();
    for (unsigned i = 0; i < other.fields_.size(); ++i) {
        const IconField& theirs = other.fieldAt(i);
        if (theirs.isLocal() && !wasEmpty) continue;
        if (IconField* mine = field(theirs.category()))
            *mine += theirs;
        else
            fields_.add(*new IconField(theirs));
    }
    return *this;
}

void IconMetaData::clearCopiedState() {
    Object::clearCopiedState();
    fields_.clearCopiedState();
    mergedItems_.clearCopiedState();
}

void IconMetaData::deepenShallowCopy() {
    Object::deepenShallowCopy();
    fields_.deepenShallowCopy();
    mergedItems_.deepenShallowCopy();
}
