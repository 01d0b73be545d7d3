// ModelData: the name and the texts of a block's model, and their stream forms.
#include "model/modeldata.h"

#include <ostream>

#include "quill/objio.h"

DEFINE_CLASS(ModelData, LookupKey, 1, 0)

Symbol IconChanging("IconChanging");
Symbol IconChanged("IconChanged");
Symbol AskAnalyse("AskAnalyse");

ModelData::ModelData(const char* name) : LookupKey(*new String(name)) {}

ModelData::ModelData(const ModelData& other) : LookupKey(*new String(other.name())) { *this = other; }

ModelData& ModelData::operator=(const ModelData& other) {
    setName(other.name().asCharPointer());
    aText = other.aText;
    bText = other.bText;
    cText = other.cText;
    dText = other.dText;
    x0Text = other.x0Text;
    changed = other.changed;
    return *this;
}

ModelData::ModelData(std::istream& is, Object* where) : LookupKey(is, where) { readTexts(is); }

ModelData::ModelData(BinIstream& is, Object* where) : LookupKey(is, where) { readTexts(is); }

// A key that is not a String (an old or damaged stream) becomes an empty name.
template <class Stream>
void ModelData::readTexts(Stream& is) {
    if (!key_->isKindOf(class_String)) key_ = new String;
    for (String* text : {&aText, &bText, &cText, &dText, &x0Text}) readFrom(is, class_String, text);
}

ModelData::~ModelData() noexcept(false) { delete key_; }

void ModelData::storer(std::ostream& os) const {
    LookupKey::storer(os);
    for (const String* text : {&aText, &bText, &cText, &dText, &x0Text}) text->storeOn(os);
}

void ModelData::storer(BinOstream& os) const {
    LookupKey::storer(os);
    for (const String* text : {&aText, &bText, &cText, &dText, &x0Text}) text->storeOn(os);
}

void ModelData::clearCopiedState() {
    LookupKey::clearCopiedState();
    for (String* text : {&aText, &bText, &cText, &dText, &x0Text}) text->clearCopiedState();
}
