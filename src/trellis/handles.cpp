// The handle tables hWnd2Widget and hWnd2Menu with their messages.
#include "trellis/handles.h"

#include <iostream>

#include "quill/quillerr.h"
#include "trellis/widget.h"

HandleTable hWnd2Widget("hWnd2Widget");
HandleTable hWnd2Menu("hWnd2Menu");

namespace {

void printWidget(const char* classWord, Object* ob) {
    std::cerr << classWord << ob->className();
    if (ob->isKindOf(class_CppWidget)) std::cerr << " name == " << static_cast<CppWidget*>(ob)->name().name();
    std::cerr << std::endl;
}

}  // namespace

void HandleTable::add(const void* handle, Object& widget) {
    auto found = table.find(handle);
    if (found != table.end()) {
        std::cerr << "hWnd == " << handle << std::endl;
        printWidget("Class == ", found->second);
        printWidget("thisClass == ", &widget);
        QASSERT_TEXT(false, formatText("hWnd already present in dictionary %s", name));
    }
    table[handle] = &widget;
}

void HandleTable::remove(const void* handle) {
    if (table.erase(handle) == 0) std::cerr << "hWnd not present in dictionary " << name << std::endl;
}

Object* HandleTable::find(const void* handle) const {
    auto found = table.find(handle);
    return found == table.end() ? nil : found->second;
}

Object* menuOfHandle(const QWidget* handle) { return hWnd2Menu.find(handle); }
