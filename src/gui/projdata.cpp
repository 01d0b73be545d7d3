// ProjectData: the controls' texts by name, as string parameters.
#include "gui/projdata.h"

#include "quill/objio.h"

DEFINE_CLASS(ProjectData, Object, 1, 0)

ProjectData::ProjectData(std::istream& is, Object* where) : Object(is, where) {
    readFrom(is, class_ParametersCltn, &values);
}

ProjectData::ProjectData(BinIstream& is, Object* where) : Object(is, where) {
    readFrom(is, class_ParametersCltn, &values);
}

void ProjectData::storer(std::ostream& os) const {
    Object::storer(os);
    values.storeOn(os);
}

void ProjectData::storer(BinOstream& os) const {
    Object::storer(os);
    values.storeOn(os);
}

const String* ProjectData::get(const char* control) const {
    for (unsigned i = 0; i < values.size(); ++i)
        if (values.at(int(i)).name() == control) return &values.at(int(i)).value();
    return 0;
}

void ProjectData::set(const char* control, const char* text) {
    for (unsigned i = 0; i < values.size(); ++i)
        if (values.at(int(i)).name() == control) return values.at(int(i)).setValue(text);
    values.add(Parameter(control, text));
}
