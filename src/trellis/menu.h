// MenuBar, MotifMenu with PulldownMenu and PopupMenu, and ButtonMenu: menus of entries in the entry grammar.
#ifndef TRELLIS_MENU_H
#define TRELLIS_MENU_H

#include "trellis/button.h"

class QAction;

extern Class class_MenuBar;
extern Class class_MotifMenu;
extern Class class_PulldownMenu;
extern Class class_PopupMenu;
extern Class class_ButtonMenu;

extern Symbol MenuPressed;  // an entry was chosen; data an Integer, its identifier
extern Symbol MenuDown;     // the menu opens
extern Symbol MenuHidden;   // the menu closed, after the MenuPressed of the choice that closed it

class MenuBar : public CppComposite {
    DECLARE_MEMBERS(MenuBar)
public:
    MenuBar(const char* name, CppWidget* parent);
    void add(CppWidget& child) override;
};

// A list of entries "label | accelerator" (see entry.h). Entries are named
// by their label without "&"; a menu without entries holds the single
// disabled entry "--empty--". Unknown names are reported on the error
// stream, and the menu goes on.
class MotifMenu : public CppComposite {
    DECLARE_MEMBERS(MotifMenu)
public:
    ~MotifMenu() noexcept(false) override;

    // Answers the entry's identifier.
    int addChoice(const char* entry);
    void addSeparator();
    // A separator that shows the text: a heading, not an entry.
    void addTitle(const char* text);
    void modifyChoice(const char* oldName, const char* newEntry);
    void disableChoice(const char* name);
    void enableChoice(const char* name);
    void removeChoice(const char* name);
    bool hasChoice(const char* name) const;
    bool isEnabled(const char* name) const;
    int choiceCount() const;  // the entries, "--empty--" and separators not counted
    // The name of the entry with that identifier, empty when there is none.
    String choiceName(int identifier) const;
    // The name of the entry of a MenuPressed.
    String choiceOf(Cback& cb) const;
    // Chooses the entry as the user would: MenuPressed with its identifier.
    void choose(const char* name);
    // The key sequence of the entry's accelerator, as portable text.
    String keysOf(const char* name) const;

    // A submenu becomes an entry that opens it.
    void add(CppWidget& child) override;

protected:
    MotifMenu(const char* name, CppWidget* parent, const char* title);

private:
    // The entry of that name; an absent one is reported behind the text
    // given, when there is one.
    QAction* findChoice(const char* name, const char* report) const;
    void reportMissing(const char* name) const;
    void showEmptyEntry();

    int nextIdentifier;
};

// A menu of a menu bar, or a submenu of a menu.
class PulldownMenu : public MotifMenu {
    DECLARE_MEMBERS(PulldownMenu)
public:
    PulldownMenu(const char* name, CppWidget* parent, const char* title = 0);
};

// A menu that opens where it is asked to.
class PopupMenu : public MotifMenu {
    DECLARE_MEMBERS(PopupMenu)
public:
    PopupMenu(const char* name, CppWidget* parent, const char* title = 0);
    // Opens at (x, y) of the parent widget, or at the pointer without a parent.
    void popup(int x, int y);
};

// A button that opens its menu; the accelerator is a translation such as
// "Meta<Key>B".
class ButtonMenu : public CppCommand {
    DECLARE_MEMBERS(ButtonMenu)
public:
    ButtonMenu(const char* name, CppWidget* parent, const char* label, const char* translation = 0);
    ~ButtonMenu() noexcept(false) override;
    PopupMenu& menu() const { return *menu_; }

private:
    PopupMenu* menu_;
};

#endif
