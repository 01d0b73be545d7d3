// The handle tables: from a Qt widget or menu to the toolkit object that stands on it.
#ifndef TRELLIS_HANDLES_H
#define TRELLIS_HANDLES_H

#include <unordered_map>

class Object;
class QWidget;

// Keys are the addresses of Qt objects, values the widgets; the table owns
// neither. Its name appears in the messages.
class HandleTable {
public:
    explicit HandleTable(const char* name) : name(name) {}
    // A handle already present prints both widgets and raises the assertion
    // "hWnd already present in dictionary <name>".
    void add(const void* handle, Object& widget);
    // An absent handle is reported on the error stream.
    void remove(const void* handle);
    Object* find(const void* handle) const;  // nil when absent

private:
    const char* name;
    std::unordered_map<const void*, Object*> table;
};

extern HandleTable hWnd2Widget;
extern HandleTable hWnd2Menu;

// The menu widget of a Qt menu, or nil.
Object* menuOfHandle(const QWidget* handle);

#endif
