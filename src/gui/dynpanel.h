// DynamicPanel, the panel of a ".mim" file: a title, a grid and the controls on it.
#ifndef GUI_DYNPANEL_H
#define GUI_DYNPANEL_H

#include "gui/dynctrl.h"

extern Class class_DynamicPanel;

// Owns its controls. A ".mim" file is the text object stream of one panel.
class DynamicPanel : public Object {
    DECLARE_MEMBERS(DynamicPanel)
public:
    DynamicPanel(const char* title = "", int columns = 40, int rows = 30);
    DynamicPanel(const DynamicPanel&) = delete;
    DynamicPanel& operator=(const DynamicPanel&) = delete;
    // Stream form: the title, columns and rows, the embedded OrderedCltn of the controls.
    DynamicPanel(std::istream& is, Object* where);
    DynamicPanel(BinIstream& is, Object* where);
    ~DynamicPanel() noexcept(false) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    bool isEqual(const Object& ob) const override;

    const String& title() const { return title_; }
    int columns() const { return columns_; }
    int rows() const { return rows_; }
    unsigned size() const override { return controls.size(); }
    DynamicControl& at(int index) const;  // INDEXRANGE outside
    // Takes a copy; answers it.
    DynamicControl& add(const DynamicControl& control);
    // The control of that name, or null.
    DynamicControl* find(const char* name) const;
    // What makes the panel unusable: a control without a name, two of one name, or one outside the
    // grid; empty when there is none.
    String fault() const;

private:
    String title_;
    int columns_;
    int rows_;
    OrderedCltn controls;
};

// The panel of a ".mim" file, or null with the reason in message: a missing or unreadable file, a
// stream that is not a panel, or a panel with a fault.
DynamicPanel* readPanel(const char* fileName, String& message);
// Writes the panel whole or not at all; answers the reason of a failure, empty on success.
String writePanel(const DynamicPanel& panel, const char* fileName);

#endif
