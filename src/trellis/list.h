// CppList and ComboBox: the list of texts to choose from, and the field with a drop-down list.
#ifndef TRELLIS_LIST_H
#define TRELLIS_LIST_H

#include "trellis/widget.h"

extern Class class_CppList;
extern Class class_ComboBox;

extern Symbol ListCback;        // an entry was chosen; data its index, an int
extern Symbol ListActivated;    // an entry was double-clicked or entered; data its index, an int
extern Symbol ComboBoxChanged;  // an entry was chosen or typed; data its index, an int (-1 for typed text)

class CppList : public CppPrimitive {
    DECLARE_MEMBERS(CppList)
public:
    CppList(const char* name, CppWidget* parent, int rows = 8, int columns = 20);
    void addItem(const char* text);
    void removeAll();
    int itemCount() const;
    String itemText(int index) const;
    // Selects the entry and raises ListCback; -1 clears the selection.
    void select(int index);
    int selectedIndex() const;  // -1 when none
    // Selects the entry and raises ListActivated, as a double click does.
    void activate(int index);
    void sizeToFit() override;

private:
    int rows;
    int columns;
};

class ComboBox : public CppPrimitive {
    DECLARE_MEMBERS(ComboBox)
public:
    ComboBox(const char* name, CppWidget* parent, bool editable = true);
    void addItem(const char* text);
    void removeAll();
    int itemCount() const;
    String itemText(int index) const;
    String text() const;
    void setText(const char* text);
    int currentIndex() const;
    void setCurrentIndex(int index);
};

#endif
