// GraphEdtGui: the window of a graph editor (menus, palette, drawing area, bottom box, status) and its
// events.
#ifndef EDITOR_GRAPHGUI_H
#define EDITOR_GRAPHGUI_H

#include "quill/orderedc.h"
#include "quill/point.h"
#include "quill/quillstr.h"
#include "quill/symbol.h"

class CppForm;
class CppGraphic;
class CppLabel;
class CppShell;
class CppWidget;
class DrawArea;
class FileMenu;
class FormDialog;
class MenuBar;
class PopupMenu;
class PulldownMenu;
class ButtonBox;
class ButtonMenu;
class MotifMenu;
class ResizeDialog;
class ZoomMenu;

extern Class class_GraphEdtGui;

// Raised on the window for its dependents (the editor).
extern Symbol GraphEdtGuiNew;         // File, New
extern Symbol GraphEdtGuiLoad;        // a file was read; data an Assoc of the object read and an error String
extern Symbol GraphEdtGuiSave;        // Save or Save As; data an Integer the editor sets to 0 on failure
extern Symbol GraphEdtGuiQuit;        // the window ends
extern Symbol GraphEdtGuiPrint;       // the drawing was printed
extern Symbol GraphEdtGuiEdit;        // an entry of the edit menu; data its text
extern Symbol GraphEdtGuiOpti;        // an entry of the command menu; data its text
extern Symbol GraphEdtGuiCmnd;        // the double click choice changed
extern Symbol GraphEdtGuiIcon;        // an icon was chosen in the icon menu or the palette; data its name
extern Symbol GraphEdtGuiLink;        // a link kind was chosen
extern Symbol GraphEdtGuiMenu;        // the icon or canvas popup closed; data the entry text, or nil
extern Symbol GraphEdtGuiStatusMenu;  // the double click choice; data the entry text
extern Symbol GraphEdtGuiTransfMenu;  // the transform popup closed; data the entry text, or nil
extern Symbol GraphEdtGuiLinksMenu;   // the link submenu of the popup; data the entry text, or nil
extern Symbol GraphEdtGuiResize;      // "Apply" of the resize dialog
extern Symbol GraphEdtGuiHelp;        // help asked; data the topic text
extern Symbol GraphEdtGuiReset;  // the busy mark was cleared at the user's word: the editor resets its state

// A dynamic icon's share of the pointer events of a read-only window: the
// hook answers true when an icon at the world point took the event, and the
// drawing is then redrawn. None until the dynamic graphics install one.
typedef bool (*DrawEventHook)(DrawArea& area, const Symbol& event, const FloatPoint& world);
// Answers the former hook.
DrawEventHook setDrawEventHook(DrawEventHook hook);

class GraphEdtGui : public Object {
    DECLARE_MEMBERS(GraphEdtGui)
public:
    // The window under parent, the form of the editor's shell.
    GraphEdtGui(CppShell& shell, CppForm& parent, const char* title, const char* fileFilter, bool readOnly,
                bool fromFile, const char* fileName);
    ~GraphEdtGui() noexcept(false) override;

    // The menus that the drawing's kind gives: entries are Strings; a
    // command may be an ArrayOb of menu text, mnemonic and accelerator
    // ("Alt+A"), and an icon entry an ArrayOb of Strings, a submenu's title
    // and its entries. The icon menu ends in "Paste" and "Icons Palette".
    void buildMenus(const OrderedCltn& iconNames, const OrderedCltn& linkNames,
                    const OrderedCltn& commandNames);

    // The file.
    const String& fileName() const;
    void setFileName(const char* name);
    bool hasFile() const;
    bool fromFile() const { return fromFile_; }
    void setModified(bool flag);
    bool modified() const;
    // Reads the drawing (an ArrayOb) and raises GraphEdtGuiLoad, or
    // GraphEdtGuiNew with the reader's message shown; unless silent the box
    // "Opening " + name comes first. Answers whether a drawing was read.
    bool openFile(const char* name, bool silent = false);
    // Inside GraphEdtGuiSave: writes the drawing into the file being saved.
    bool store(const Object& drawing);
    FileMenu& fileMenu() const { return *file; }

    // Boxes and the status label.
    void showError(const char* text);
    void showWarning(const char* text);
    bool askQuestion(const char* text, bool byDefault = true);
    void showMessage(const char* text);
    void clearMessage();
    void setStatus(const char* text);
    String status() const;

    // The drawing area, its world and zoom.
    CppGraphic& graphic() const { return *drawing; }
    DrawArea& drawArea() const;
    void setWorld(const FloatRect& world);
    void redraw();
    void refresh();
    // Scrolls so that the world point is in view (a drag near an edge).
    void ensureVisible(const FloatPoint& point);
    void setZoom(double zoom);
    double zoom() const;
    // The zoom that shows the whole world in the window.
    void fitToWindow();
    // The size of the drawing area and the least size of the window.
    void setDrawSizes(int width, int height, int minWidth, int minHeight);
    // Shows the help topic of the keyword.
    void help(const char* keyword);
    // The "watch" cursor while on is set, the normal one after.
    void setWatchCursor(bool on);

    // Popups. Each ends in one event, with nil when closed without a choice:
    // the icon popup in GraphEdtGuiLinksMenu or GraphEdtGuiTransfMenu for an
    // entry of its submenus, else GraphEdtGuiMenu; the canvas popup in
    // GraphEdtGuiMenu; the transform popup in GraphEdtGuiTransfMenu.
    void popupIcon(const char* description, const OrderedCltn& linkNames, const OrderedCltn& transformNames,
                   bool mayCut, bool mayCopy, bool mayResize);
    void popupCanvas();
    void popupTransform(const OrderedCltn& names);
    // The last popup, or null: tests choose its entries.
    PopupMenu* openPopup() const { return popup; }

    // Menu entries: the edit menu's by name, and the command menu's.
    void setMenuEntry(const char* name, bool sensitive);
    void enableCommand(const char* name, bool sensitive);
    PulldownMenu& editMenu() const { return *edit; }
    PulldownMenu& commandMenu() const { return *option; }
    ButtonMenu& iconMenu() const { return *icons; }
    ButtonMenu& linkMenu() const { return *links; }
    ButtonMenu& choiceMenu() const { return *choice; }

    // The palette "IconDialog", built with the menus.
    FormDialog* palette() const { return paletteDialog; }

    // The choices of the bottom box. The current icon's place: its entry in
    // its menu, and its submenu's place among the icon names, -1 for the
    // top level; at the top level both count the icon names.
    const String& currentIcon() const { return iconName; }
    int iconIndex() const { return iconIndex_; }
    int menuIndex() const { return menuIndex_; }
    const String& currentLink() const { return linkName; }
    // The double click choice: "Open", "Modify", "Comment", "Transform" or
    // "Link". Choosing it raises GraphEdtGuiStatusMenu with the text, then
    // GraphEdtGuiCmnd.
    const String& commandLabel() const { return commandName; }
    void setCommandLabel(const char* name);
    void setCurrentLink(const char* name);

    bool isReadOnly() const { return readOnly; }
    // The editor is in a critical action: the edit, command and icon menus
    // refuse, the file menu offers to clear the mark (GraphEdtGuiReset), the
    // window does not close.
    void setBusy(bool flag) { busy = flag; }
    bool isBusy() const { return busy; }
    void setShowerChildren(bool flag) { showerChildren = flag; }

    // The resize dialog "ResizeDialog": the rows that are sensitive, the
    // present values and the smallest of the targets.
    void openResizeDialog(bool width, bool height, bool font, double w, double h, double fontScale);
    // The increments the dialog gives, at "Apply".
    void resizeValues(double& dw, double& dh, double& dfont) const;
    ResizeDialog* resizeDialog() const { return resizer; }

private:
    friend class GraphFileMenu;

    // Whether the file menu's entry (empty for the window's close) may act.
    bool fileMenuMayAct(const String& entry);
    void buildLayout();
    CppForm& buildBottomBox();
    void buildEditMenu();
    ButtonMenu* bottomChoice(CppForm& box, CppWidget*& before, const char* name, const char* label,
                             const char* translation, CppLabel*& shown, const char* text);
    void buildIconMenu(const OrderedCltn& names);
    void buildPalette(const OrderedCltn& names);
    void addPaletteButton(ButtonBox& box, const char* name, MotifMenu& menu);
    // Answers false, with the box, while busy.
    bool mayEdit();
    void editChosen(Cback& cb);
    void commandChosen(Cback& cb);
    void iconChosen(Cback& cb);
    void paletteChosen(Cback& cb);
    void linkChosen(Cback& cb);
    void choiceChosen(Cback& cb);
    void viewChosen(Cback& cb);

    // A new popup; the one before is kept until the next, since it may be
    // reporting its choice still.
    PopupMenu& newPopup(const char* name, const char* title, const Symbol& closedEvent);
    void reportChoices(MotifMenu& menu, const Symbol& event);
    void popupChosen(Cback& cb);
    void popupClosed(Cback& cb);

    void loadDrawing(Cback& cb);
    void saveDrawing(Cback& cb);
    void printed(Cback& cb);
    void newDrawing(Cback& cb);
    void ended(Cback& cb);
    void zoomed(Cback& cb);
    void wheeled(Cback& cb);
    void drawEvent(Cback& cb);
    void resizeApplied(Cback& cb);

    CppShell& shell;
    CppForm& form;
    MenuBar* menuBar;
    CppGraphic* drawing;
    FileMenu* file;
    PulldownMenu* edit;
    PulldownMenu* option;
    PulldownMenu* view;
    ZoomMenu* zoomMenu;
    PopupMenu* popup;
    PopupMenu* retiredPopup;
    const Symbol* popupClosedEvent;  // raised with nil when the popup closes without a choice
    bool popupAnswered;
    ButtonMenu* choice;
    ButtonMenu* links;
    ButtonMenu* icons;
    CppLabel* choiceLabel;
    CppLabel* linkLabel;
    CppLabel* iconLabel;
    CppLabel* statusLabel;
    FormDialog* paletteDialog;
    ResizeDialog* resizer;
    OrderedCltn iconMenus;  // per entry of the icon names, its submenu or nil
    String iconName;
    int iconIndex_;
    int menuIndex_;
    String linkName;
    String commandName;
    bool readOnly;
    bool busy;
    bool showerChildren;
    bool fromFile_;
    String fileFilter;
    String savingTo;  // the file that store writes, during GraphEdtGuiSave
    bool loaded;      // the last read gave a drawing
    String formCursor;
    String areaCursor;
    bool watching;
};

#endif
