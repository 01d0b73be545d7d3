// The enumerations of Parameter: the process-wide table from a type name to its value texts, and
// the reads and writes of a parameter's value by its enumeration.
#include "control/param.h"
#include "quill/dictnary.h"
#include "quill/lookupky.h"
#include "quill/orderedc.h"

namespace {

OrderedCltn* listOf(const char* typeName) {
    String key(typeName);
    Dictionary& table = Parameter::enumTable();
    return table.includesKey(key) ? CAST(OrderedCltn, table.atKey(key)) : 0;
}

}  // namespace

// Its clearing at the end of the program is left to the program.
Dictionary& Parameter::enumTable() {
    static Dictionary* table = new Dictionary;
    return *table;
}

OrderedCltn& Parameter::enumValues(const char* typeName, OrderedCltn& result) {
    if (const OrderedCltn* list = listOf(typeName))
        for (unsigned i = 0; i < list->size(); ++i) result.add(*new String(*CAST(String, list->at(int(i)))));
    return result;
}

// The copy is made before the former list goes, which may be values itself.
void Parameter::addEnum(const char* typeName, const OrderedCltn& values) {
    OrderedCltn* list = new OrderedCltn;
    for (unsigned i = 0; i < values.size(); ++i) list->add(*new String(values.at(int(i))->asCharPointer()));
    removeEnums(typeName);
    enumTable().atPut(*new String(typeName), *list);
}

void Parameter::copyEnum(const char* newName, const char* oldName) {
    const OrderedCltn* old = listOf(oldName);
    addEnum(newName, old ? *old : OrderedCltn());
}

void Parameter::addEnumValue(const char* typeName, const char* value) {
    OrderedCltn* list = listOf(typeName);
    if (!list) {
        addEnum(typeName, OrderedCltn());
        list = listOf(typeName);
    }
    if (list->indexOf(String(value)) < 0) list->add(*new String(value));
}

void Parameter::removeEnums(const char* typeName) {
    OrderedCltn* list = listOf(typeName);
    if (!list) return;
    LookupKey* pair = CAST(LookupKey, enumTable().removeKey(String(typeName)));
    list->deleteContents();
    delete list;
    delete pair->key();
    delete pair;
}

const String* Parameter::enumEntry(int index) const {
    const OrderedCltn* list = listOf(type_.asCharPointer());
    if (!list || index < 0 || unsigned(index) >= list->size()) return 0;
    return CAST(String, list->at(index));
}

int Parameter::enumIndex() const {
    const OrderedCltn* list = listOf(type_.asCharPointer());
    return list ? list->indexOf(value_) : -1;
}

String Parameter::enumName(int index) const {
    const String* entry = enumEntry(index);
    return entry ? *entry : String();
}

void Parameter::setEnum(int index) {
    if (const String* entry = enumEntry(index)) value_ = *entry;
}

void Parameter::setEnumName(const char* text) {
    const OrderedCltn* list = listOf(type_.asCharPointer());
    if (list && list->indexOf(String(text)) >= 0) value_ = text;
}
