// DynamicPanel: the controls, their look-up and checks, the stream form and the ".mim" files.
#include "gui/dynpanel.h"

#include <cstring>
#include <fstream>
#include <ostream>

#include "quill/objio.h"
#include "quill/safefile.h"
#include "trellis/filetest.h"

DEFINE_CLASS(DynamicPanel, Object, 1, 0)

DynamicPanel::DynamicPanel(const char* title, int columns, int rows)
    : title_(title), columns_(columns), rows_(rows) {}

DynamicPanel::DynamicPanel(std::istream& is, Object* where) : Object(is, where), columns_(0), rows_(0) {
    readFrom(is, class_String, &title_);
    columns_ = readNumber<int>(is);
    rows_ = readNumber<int>(is);
    readFrom(is, class_OrderedCltn, &controls);
}

DynamicPanel::DynamicPanel(BinIstream& is, Object* where) : Object(is, where), columns_(0), rows_(0) {
    readFrom(is, class_String, &title_);
    columns_ = readNumber<int>(is);
    rows_ = readNumber<int>(is);
    readFrom(is, class_OrderedCltn, &controls);
}

DynamicPanel::~DynamicPanel() noexcept(false) { controls.deleteContents(); }

void DynamicPanel::storer(std::ostream& os) const {
    Object::storer(os);
    title_.storeOn(os);
    os << columns_ << ' ' << rows_ << '\n';
    controls.storeOn(os);
}

void DynamicPanel::storer(BinOstream& os) const {
    Object::storer(os);
    title_.storeOn(os);
    os << columns_ << rows_;
    controls.storeOn(os);
}

bool DynamicPanel::isEqual(const Object& ob) const {
    if (!ob.isKindOf(class_DynamicPanel)) return false;
    const DynamicPanel& p = static_cast<const DynamicPanel&>(ob);
    return title_.isEqual(p.title_) && columns_ == p.columns_ && rows_ == p.rows_ &&
           controls.isEqual(p.controls);
}

DynamicControl& DynamicPanel::at(int index) const { return *CAST(DynamicControl, controls.at(index)); }

DynamicControl& DynamicPanel::add(const DynamicControl& control) {
    DynamicControl* copy = new DynamicControl(control);
    controls.add(*copy);
    return *copy;
}

DynamicControl* DynamicPanel::find(const char* name) const {
    for (unsigned i = 0; i < size(); ++i)
        if (std::strcmp(at(int(i)).name().asCharPointer(), name) == 0) return &at(int(i));
    return 0;
}

String DynamicPanel::fault() const {
    for (unsigned i = 0; i < size(); ++i) {
        const DynamicControl& c = at(int(i));
        const char* name = c.name().asCharPointer();
        if (c.name().size() == 0) return formatText("control %u has no name", i + 1);
        if (find(name) != &c) return formatText("two controls are named %s", name);
        if (c.x() < 0 || c.y() < 0 || c.width() < 1 || c.height() < 1 || c.x() + c.width() > columns_ ||
            c.y() + c.height() > rows_)
            return formatText("control %s lies outside the panel's %d x %d grid", name, columns_, rows_);
    }
    return String();
}

DynamicPanel* readPanel(const char* fileName, String& message) {
    message = fileName;
    if (!isExistingFile(fileName, message) || !isReadableFile(fileName, message)) return 0;
    std::ifstream in(fileName);
    String error;
    Object* read = readFromChecked(error, in);
    if (!read || read == nil || !read->isKindOf(class_DynamicPanel)) {
        message += "\n\n Bad panel file: ";
        message += read && read != nil ? formatText("it holds a %s", read->className())
                   : error.size()      ? error.asCharPointer()
                                       : "it holds no panel";
        if (read && read != nil) deepDelete(read);
        return 0;
    }
    DynamicPanel* panel = static_cast<DynamicPanel*>(read);
    String fault = panel->fault();
    if (fault.size() == 0) {
        message = "";
        return panel;
    }
    message += "\n\n Bad panel file: ";
    message += fault;
    delete panel;
    return 0;
}

String writePanel(const DynamicPanel& panel, const char* fileName) {
    return writeSafely(fileName, [&](std::ostream& os) { storeObject(os, panel); });
}
