// CppShell, CppTopLevel and CppDialog: the windows of their own, their events and deferred events.
#ifndef TRELLIS_SHELL_H
#define TRELLIS_SHELL_H

#include "quill/point.h"
#include "trellis/widget.h"

class CallData;
class CppTopLevel;

extern Class class_CppShell;
extern Class class_CppTopLevel;
extern Class class_CppDialog;

// Events of shells.
extern Symbol WinWmMenuSelect;            // a menu entry is highlighted; data its identifier
extern Symbol TopLevelFocusIn;            // the window became active
extern Symbol TopLevelFocusOut;           // the window lost activation
extern Symbol FilesDropped;               // data: an OrderedCltn of String names
extern Symbol WindowManagerCloseRequest;  // the window manager asks the window to close
extern Symbol ClipboardDestroyed;         // another program took the clipboard

// The application's root, made by the toolkit's start.
extern CppTopLevel* topLevelWidget;

// A window of its own. Its managed children fill it.
class CppShell : public CppComposite {
    DECLARE_MEMBERS(CppShell)
public:
    CppShell(const char* name, CppWidget* parent, const char* title = 0);
    ~CppShell() noexcept(false) override;

    // Realises the children, takes the size of the largest when the program
    // gave none, and shows the window.
    void realize() override;
    void resize(int width, int height) override;
    int hasParentWidget() const override;
    void add(CppWidget& child) override;

    void setTitle(const char* title);
    String title() const;
    // The icon shown when the window is minimised; a file that can't be read
    // leaves the toolkit's icon.
    void setIcon(const char* fileName);
    // Hides the window; it can be realised again.
    void close();
    void raise();
    // Sizes the managed children to the window; a form lays its children
    // out again, as it does when the window first appears.
    void fitChildren();
    // The window manager asks the window to close: WindowManagerCloseRequest
    // when someone listens, else the process ends with code 0.
    virtual void closeRequested();

    // Queues event with its data (which the shell then owns), to be raised on
    // this shell from the dispatch loop, not from within the caller.
    void postEvent(const Symbol& event, CallData* callData = 0);
    // Where the last files were dropped, in the window.
    const Point& dropPoint() const { return dropAt; }
    void setDropPoint(const Point& p) { dropAt = p; }

    // Every shell alive, in order of creation.
    static const OrderedCltn& shells();

protected:
    enum Kind { PLAIN, TOP_LEVEL, DIALOG };
    CppShell(const char* name, CppWidget* parent, const char* title, Kind kind);
    // Whether realising shows the window.
    virtual bool showsOnRealize() const { return true; }

private:
    void build(const char* title, Kind kind);

    Point dropAt;
};

// The one root of the application. Its window appears only when it holds a
// widget of its own; shells under it are windows apart.
class CppTopLevel : public CppShell {
    DECLARE_MEMBERS(CppTopLevel)
public:
    // A second top level is refused.
    CppTopLevel(const char* name, const char* title = 0);
    ~CppTopLevel() noexcept(false) override;

protected:
    bool showsOnRealize() const override;
};

// A dialogue window: shown by popup, hidden by popdown.
class CppDialog : public CppShell {
    DECLARE_MEMBERS(CppDialog)
public:
    enum Grab { GRAB_NONE = 0, GRAB_NONEXCLUSIVE = 1, GRAB_EXCLUSIVE = 2 };
    CppDialog(const char* name, CppWidget* parent, const char* title = 0);

    // Shows the dialogue; an exclusive grab makes it modal to the application.
    virtual void popup(int grab = GRAB_NONE);
    virtual void popdown();
    bool isUp() const;
    // Pops up with an exclusive grab, runs a nested loop until exitLoop
    // ends it, pops down and answers the loop's value.
    int runModal();

    // Without a listener, closing pops the dialogue down and ends its
    // modal loop with 0.
    void closeRequested() override;

protected:
    bool showsOnRealize() const override { return false; }

private:
    bool modal;  // runModal is waiting for this dialogue
};

#endif
