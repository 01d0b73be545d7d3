// IconField's value, copying and merging; the shared DocGenData and IconFieldEdt of plain fields.
#include "editor/iconfld.h"

#include <cstring>
#include <ostream>

#include "editor/iconnode.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/symbol.h"

DEFINE_CLASS(DocGenData, Object, 1, 0)
DEFINE_CLASS(IconFieldEdt, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(IconField, Object, 1, 0)

namespace {

// The values a field can hold without the document library.
bool isFieldValue(const Object* value) {
    return value->isKindOf(class_String) || value->isKindOf(class_Symbol) ||
           value->isKindOf(class_OrderedCltn) || value->isKindOf(class_IconNode);
}

}  // namespace

// DocGenData

const DocGenData& DocGenData::none() {
    static const DocGenData* shared = new DocGenData;
    return *shared;
}

void DocGenData::clearCopiedState() {
    Object::clearCopiedState();
    label_.clearCopiedState();
}

// IconFieldEdt

const IconFieldEdt& IconFieldEdt::notEditable() {
    static const IconFieldEdt* shared = new IconFieldEdt;
    return *shared;
}

void IconFieldEdt::printOn(std::ostream& os) const {
    os << "IconFieldEdt [\n\tlabel = " << (label_ ? label_ : "NULL")
       << "\n\tparam = " << (param_ ? param_ : "NULL") << "\n]";
}

void IconFieldEdt::clearCopiedState() {
    Object::clearCopiedState();
    text_.clearCopiedState();
}

// IconField

IconField::IconField(IconCategory name, Object* value)
    : IconField(value, name, IconFieldEdt::notEditable(), DocGenData::none()) {}

IconField::IconField(Object* value, IconCategory name, const IconFieldEdt& editor, const DocGenData& docData)
    : category_(0), value_(value), flags(0), docData_(docData), editor_(editor) {
    QASSERT_TEXT(name != 0, "name != 0");
    category_ = name();
    QASSERT_TEXT(category_ != 0, "category != 0");
    QASSERT_TEXT(value != 0, "value != 0");
    QASSERT_TEXT(validObject(value), "validObject( value )");
    QASSERT_TEXT(validObject(&editor), "validObject( &editor )");
    QASSERT_TEXT(validObject(&docData), "validObject( &docData )");
    QASSERT_TEXT(isFieldValue(value), "Invalid type for icon field value");
}

IconField::IconField(const IconField& field)
    : Object(field),
      category_(field.category_),
      value_(field.isDynamic() ? field.value_ : field.value_->deepCopy()),
      flags(field.flags),
      docData_(field.docData_),
      editor_(field.editor_) {}

IconField::~IconField() noexcept(false) {
    if (!isDynamic()) delete value_;
}

IconField& IconField::operator=(const IconField& rhs) {
    QASSERT_TEXT(strcmp(category_, rhs.category_) == 0, "strcmp( category_, rhs.category_ ) == 0");
    QASSERT(value_ != 0 && rhs.value_ != 0);
    QASSERT_TEXT(isDynamic() == rhs.isDynamic() && (isDynamic() || value_->isA() == rhs.value_->isA()),
                 "both values are IconNodes or of the same class");
    if (isDynamic() || &rhs == this) return *this;
    Object* copy = rhs.value_->deepCopy();
    delete value_;
    value_ = copy;
    return *this;
}

IconField& IconField::operator+=(const IconField& rhs) {
    QASSERT_TEXT(strcmp(category_, rhs.category_) == 0, "strcmp( category_, rhs.category_ ) == 0");
    QASSERT(value_ != 0 && rhs.value_ != 0);
    if (isLocal() || !docData_.isValid() || isTextualSection()) return *this;
    if (!value_->isKindOf(class_String) || !rhs.value_->isKindOf(class_String)) return *this;
    if (value_->size() > 0) return *this;
    // The copy stands for rhs's text: a field owns its value.
    Object* copy = rhs.value_->deepCopy();
    delete value_;
    value_ = copy;
    return *this;
}

Object* IconField::value(bool resolve) const {
    if (resolve && isDynamic()) return static_cast<IconNode*>(value_)->getIconFieldValue(category_);
    return value_;
}

void IconField::setLocal(bool local) { flags = local ? flags | LOCAL : flags & ~unsigned(LOCAL); }

bool IconField::isDynamic() const { return value_->isKindOf(class_IconNode); }

bool IconField::isTextualSection() const {
    for (IconCategory c : {iconcat::CLASS, iconcat::SECTION, iconcat::SUBSECTION, iconcat::FORMAT,
                           iconcat::IS_TITLE, iconcat::SECTIONS})
        if (strcmp(category_, c()) == 0) return true;
    return false;
}

void IconField::printOn(std::ostream& os) const {
    os << "IconField [\n\tvalue class = " << value_->className() << "\n\tvalue = ";
    value_->printOn(os);
    os << "\n\tcategory = " << category_ << "\n\teditor = ";
    editor_.printOn(os);
    os << "\n\tdocData = ";
    docData_.printOn(os);
    os << "\n\tflags = " << flags << "\n]";
}

void IconField::clearCopiedState() {
    Object::clearCopiedState();
    docData_.clearCopiedState();
    editor_.clearCopiedState();
}

void IconField::deepenShallowCopy() {
    Object::deepenShallowCopy();
    if (!isDynamic()) value_ = value_->deepCopy();
}
