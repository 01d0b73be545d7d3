// GraphEdtGui's menus: the edit, command and icon menus, the bottom box's choices, the palette and the
// popups.
#include <cctype>
#include <cstring>
#include <initializer_list>

#include "editor/graphgui.h"
#include "quill/arrayob.h"
#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/quillerr.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/formdlg.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

namespace {

const int GAP = 4;
const char* const CONCLUDE_BEFORE = "The editor have some critical action started\n\n  Conclude it before.";
// Null stands for a separator.
const char* const editEntries[] = {
    "Undo | Ctrl+Z", "Redo | Ctrl+Shift+Z",    0, "Cu&t  | Ctrl+X", "Copy  | Ctrl+C", 0, "Paste | Ctrl+V", 0,
    "Select All",    "Resize Icon... | Ctrl+R"};
const char* const doubleClickChoices[] = {"Open", "Modify", "Comment", "Transform", "Link"};

const char* textOf(Object* ob) { return ob == nil ? "" : CAST(String, ob)->asCharPointer(); }

// The label with "&" before the mnemonic's letter: the same letter first,
// else the letter in the other case.
String markMnemonic(const char* text, const char* mnemonic) {
    String label(text);
    if (!*mnemonic || std::strchr(text, '&')) return label;
    const char* at = std::strchr(text, *mnemonic);
    for (const char* p = text; !at && *p; ++p)
        if (std::tolower(static_cast<unsigned char>(*p)) ==
            std::tolower(static_cast<unsigned char>(*mnemonic)))
            at = p;
    if (!at) return label;
    return String(label.left(unsigned(at - text))) + "&" + (at);
}

// A command: a String, or a row of menu text, mnemonic and accelerator
// ("Alt+A"), either of the last two nil. The menu turns the accelerator into
// its translation ("Meta<Key>A").
String commandEntry(Object* command) {
    if (!command->isKindOf(class_ArrayOb)) return String(textOf(command));
    const ArrayOb& row = *static_cast<ArrayOb*>(command);
    String entry = markMnemonic(textOf(row[0]), row.size() > 1 ? textOf(row[1]) : "");
    const char* accelerator = row.size() > 2 ? textOf(row[2]) : "";
    if (*accelerator) entry += String(" | ") + accelerator;
    return entry;
}

void addEntries(MotifMenu& menu, const OrderedCltn& names) {
    for (unsigned i = 0; i < names.size(); ++i) menu.addChoice(textOf(names.at(i)));
}

int choiceIdentifier(Cback& cb) { return CAST(Integer, cb.callData->asObject())->value(); }

void closeDialog(Cback& cb) { CAST(CppDialog, cb.userData)->popdown(); }

}  // namespace

void GraphEdtGui::buildEditMenu() {
    edit = new PulldownMenu("EditMenu", menuBar, "Edit");
    for (const char* entry : editEntries)
        if (entry)
            edit->addChoice(entry);
        else
            edit->addSeparator();
    edit->addCback(MenuPressed, cbackMethod<&GraphEdtGui::editChosen>, *this);
}

// "DblClk", the frame of the double click choice, the link and icon choices, the status.
CppForm& GraphEdtGui::buildBottomBox() {
    CppForm* box = new CppForm("BottomBox", &form);
    CppLabel* doubleClick = new CppLabel("DblClk", box);
    box->attachAt(*doubleClick, GAP, GAP + 4);
    CppForm* frame = new CppForm("FrameBox", box);
    box->attachHorizontal(doubleClick, frame, GAP);
    box->attachVertical(box, frame, 0);
    CppWidget* before = frame;
    choice = bottomChoice(*frame, before, "CmndMenu", "Command", "Meta<Key>B", choiceLabel, "Open");
    choiceLabel->setFramed(true);
    for (const char* entry : doubleClickChoices) choice->menu().addChoice(entry);
    choice->menu().addCback(MenuPressed, cbackMethod<&GraphEdtGui::choiceChosen>, *this);
    before = frame;
    links = bottomChoice(*box, before, "LinkMenu", "Link", "Meta<Key>L", linkLabel, "");
    links->menu().addCback(MenuPressed, cbackMethod<&GraphEdtGui::linkChosen>, *this);
    icons = bottomChoice(*box, before, "IconMenu", "Icon To Insert", "Meta<Key>I", iconLabel, "");
    statusLabel = new CppLabel("StatusLabel", box, "");
    box->attachHorizontal(before, statusLabel, 2 * GAP);
    box->attachHorizontal(statusLabel, box, GAP);
    box->attachVertical(box, statusLabel, GAP + 4);
    return *box;
}

// A label that shows the choice, then the button of its menu, right of before.
ButtonMenu* GraphEdtGui::bottomChoice(CppForm& box, CppWidget*& before, const char* name, const char* label,
                                      const char* translation, CppLabel*& shown, const char* text) {
    shown = new CppLabel(formatText("%sLabel", name), &box, text);
    int width, height;
    shown->textSize("", 14, 0, width, height);
    shown->resize(width, height);
    box.attachHorizontal(before, shown, 2 * GAP);
    box.attachVertical(&box, shown, GAP + 4);
    ButtonMenu* button = new ButtonMenu(name, &box, label, translation);
    box.attachHorizontal(shown, button, GAP);
    box.attachVertical(&box, button, GAP);
    box.attachVertical(button, &box, GAP);
    before = button;
    return button;
}

void GraphEdtGui::buildMenus(const OrderedCltn& iconNames, const OrderedCltn& linkNames,
                             const OrderedCltn& commandNames) {
    for (unsigned i = 0; i < commandNames.size(); ++i)
        option->addChoice(commandEntry(commandNames.at(i)).asCharPointer());
    addEntries(links->menu(), linkNames);
    if (!linkNames.isEmpty()) setCurrentLink(textOf(linkNames.at(0)));
    buildIconMenu(iconNames);
    buildPalette(iconNames);
}

// Strings are entries; an ArrayOb of Strings is a submenu, its title first.
void GraphEdtGui::buildIconMenu(const OrderedCltn& names) {
    QASSERT_TEXT(!names.isEmpty(), "!cltn.isEmpty()");
    PopupMenu& menu = icons->menu();
    for (unsigned i = 0; i < names.size(); ++i) {
        Object* entry = names.at(i);
        if (!entry->isKindOf(class_ArrayOb)) {
            menu.addChoice(textOf(entry));
            iconMenus.add(*nil);
            continue;
        }
        const ArrayOb& row = *static_cast<ArrayOb*>(entry);
        PulldownMenu* submenu = new PulldownMenu("IconSubMenu", &menu, textOf(row[0]));
        for (unsigned j = 1; j < row.size(); ++j) submenu->addChoice(textOf(row[j]));
        submenu->addCback(MenuPressed, cbackMethod<&GraphEdtGui::iconChosen>, *this);
        iconMenus.add(*submenu);
    }
    menu.addChoice("Paste");
    menu.addChoice("Icons Palette");
    menu.addCback(MenuPressed, cbackMethod<&GraphEdtGui::iconChosen>, *this);
}

// A button for each icon of the menus; pressing it chooses the icon in its menu.
void GraphEdtGui::buildPalette(const OrderedCltn& names) {
    paletteDialog = new FormDialog("IconDialog", &shell, "Icons Palette");
    CppForm& f = paletteDialog->form();
    ButtonBox* box = new ButtonBox("IconBox", &f);
    f.attachAt(*box, GAP, GAP);
    for (unsigned i = 0; i < names.size(); ++i) {
        Object* entry = names.at(i);
        if (!entry->isKindOf(class_ArrayOb)) {
            addPaletteButton(*box, textOf(entry), icons->menu());
            continue;
        }
        const ArrayOb& row = *static_cast<ArrayOb*>(entry);
        for (unsigned j = 1; j < row.size(); ++j)
            addPaletteButton(*box, textOf(row[j]), *CAST(MotifMenu, iconMenus.at(i)));
    }
    CppCommand* close = new CppCommand("Close", &f);
    f.attachHorizontal(&f, close, GAP);
    f.attachVertical(box, close, GAP);
    f.attachVertical(close, &f, GAP);
    close->addCback(CppCommandPressed, closeDialog, paletteDialog);
}

void GraphEdtGui::addPaletteButton(ButtonBox& box, const char* name, MotifMenu& menu) {
    CppCommand* button = new CppCommand(formatText("button%d", box.childCount()), &box, name);
    button->addCback(CppCommandPressed, cbackMethod<&GraphEdtGui::paletteChosen>, *this, &menu);
}

// The menus' choices

bool GraphEdtGui::mayEdit() {
    if (busy) showError(CONCLUDE_BEFORE);
    return !busy;
}

void GraphEdtGui::editChosen(Cback& cb) {
    QASSERT_TEXT(edit == cb.owner, "editMenu == cb.owner()");
    if (!mayEdit()) return;
    CallData data(edit->choiceOf(cb).asCharPointer());
    cbackOn(GraphEdtGuiEdit, &data);
}

void GraphEdtGui::commandChosen(Cback& cb) {
    QASSERT_TEXT(option == cb.owner, "optionMenu == cb.owner()");
    if (!mayEdit()) return;
    CallData data(option->choiceOf(cb).asCharPointer());
    cbackOn(GraphEdtGuiOpti, &data);
}

// An icon is the current one, by its menu (-1 for the top level) and its
// place there; "Paste" passes on, "Icons Palette" opens the palette.
void GraphEdtGui::iconChosen(Cback& cb) {
    if (!mayEdit()) return;
    MotifMenu& menu = *CAST(MotifMenu, cb.owner);
    String name = menu.choiceOf(cb);
    bool top = &menu == &icons->menu();
    if (top && name == "Icons Palette") {
        paletteDialog->popup();
        return;
    }
    if (!top || name != "Paste") {
        menuIndex_ = iconMenus.indexOfSame(menu);
        iconIndex_ = choiceIdentifier(cb) - 1;
        iconName = name;
        iconLabel->setText(name.asCharPointer());
    }
    CallData data(name.asCharPointer());
    cbackOn(GraphEdtGuiIcon, &data);
}

void GraphEdtGui::paletteChosen(Cback& cb) {
    CAST(MotifMenu, cb.userData)->choose(CAST(CppCommand, cb.owner)->label().asCharPointer());
}

void GraphEdtGui::linkChosen(Cback& cb) {
    setCurrentLink(links->menu().choiceOf(cb).asCharPointer());
    cbackOn(GraphEdtGuiLink);
}

void GraphEdtGui::choiceChosen(Cback& cb) {
    setCommandLabel(choice->menu().choiceOf(cb).asCharPointer());
    CallData data(commandName.asCharPointer());
    cbackOn(GraphEdtGuiStatusMenu, &data);
    cbackOn(GraphEdtGuiCmnd);
}

void GraphEdtGui::setCommandLabel(const char* name) {
    commandName = name;
    choiceLabel->setText(name);
}

void GraphEdtGui::setCurrentLink(const char* name) {
    linkName = name;
    linkLabel->setText(name);
}

void GraphEdtGui::setMenuEntry(const char* name, bool sensitive) {
    if (sensitive)
        edit->enableChoice(name);
    else
        edit->disableChoice(name);
}

void GraphEdtGui::enableCommand(const char* name, bool sensitive) {
    if (sensitive)
        option->enableChoice(name);
    else
        option->disableChoice(name);
}

// Popups

PopupMenu& GraphEdtGui::newPopup(const char* name, const char* title, const Symbol& closedEvent) {
    delete retiredPopup;
    retiredPopup = popup;
    popup = new PopupMenu(name, 0, title);
    if (title) popup->addTitle(title);
    popup->addCback(MenuHidden, cbackMethod<&GraphEdtGui::popupClosed>, *this);
    popupClosedEvent = &closedEvent;
    popupAnswered = false;
    return *popup;
}

// Each choice of the menu raises the event with the entry.
void GraphEdtGui::reportChoices(MotifMenu& menu, const Symbol& event) {
    menu.addCback(MenuPressed, cbackMethod<&GraphEdtGui::popupChosen>, *this, const_cast<Symbol*>(&event));
}

void GraphEdtGui::popupIcon(const char* description, const OrderedCltn& linkNames,
                            const OrderedCltn& transformNames, bool mayCut, bool mayCopy, bool mayResize) {
    PopupMenu& menu = newPopup("IconPopup", description, GraphEdtGuiMenu);
    for (const char* entry : {"Open", "Modify...", "Comment"}) menu.addChoice(entry);
    PulldownMenu* linkMenu = new PulldownMenu("Link", &menu);
    addEntries(*linkMenu, linkNames);
    reportChoices(*linkMenu, GraphEdtGuiLinksMenu);
    PulldownMenu* transformMenu = new PulldownMenu("Transform", &menu);
    addEntries(*transformMenu, transformNames);
    reportChoices(*transformMenu, GraphEdtGuiTransfMenu);
    for (const char* entry : {"Cut", "Copy", "Resize..."}) menu.addChoice(entry);
    reportChoices(menu, GraphEdtGuiMenu);
    const struct {
        const char* entry;
        bool sensitive;
    } flags[] = {{"Link", !linkNames.isEmpty()},
                 {"Transform", !transformNames.isEmpty()},
                 {"Cut", mayCut},
                 {"Copy", mayCopy},
                 {"Resize...", mayResize}};
    for (const auto& flag : flags)
        if (!flag.sensitive) menu.disableChoice(flag.entry);
    menu.popup(0, 0);
}

void GraphEdtGui::popupCanvas() {
    PopupMenu& menu = newPopup("Popup", 0, GraphEdtGuiMenu);
    for (const char* entry : {"Paste", "Copy", "Cut"}) menu.addChoice(entry);
    reportChoices(menu, GraphEdtGuiMenu);
    menu.popup(0, 0);
}

void GraphEdtGui::popupTransform(const OrderedCltn& names) {
    PopupMenu& menu = newPopup("TransformPopup", "Transform To", GraphEdtGuiTransfMenu);
    addEntries(menu, names);
    reportChoices(menu, GraphEdtGuiTransfMenu);
    menu.popup(0, 0);
}

void GraphEdtGui::popupChosen(Cback& cb) {
    popupAnswered = true;
    CallData data(CAST(MotifMenu, cb.owner)->choiceOf(cb).asCharPointer());
    cbackOn(*CAST(Symbol, cb.userData), &data);
}

// A popup that closes without a choice reports nil.
void GraphEdtGui::popupClosed(Cback& cb) {
    if (cb.owner != popup || popupAnswered) return;
    popupAnswered = true;
    CallData data(*nil);
    cbackOn(*popupClosedEvent, &data);
}
