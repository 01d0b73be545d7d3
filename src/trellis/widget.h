// CppWidget, CppComposite and CppPrimitive: the tree of named widgets, each standing on one Qt widget.
#ifndef TRELLIS_WIDGET_H
#define TRELLIS_WIDGET_H

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"
#include "quill/symbol.h"

class QWidget;
class OrderedCltn;
class CppShell;

extern Class class_CppWidget;
extern Class class_CppComposite;
extern Class class_CppPrimitive;

// Events that every widget may raise.
extern Symbol WidgetResize;  // the window changed its size
extern Symbol FocusInCback;  // the window took the input focus

// The abstract root of all widgets. The Qt widget is made by the concrete
// class's constructor, hidden; realising a shell shows it with its managed
// children. Widgets can't be stored: a window is rebuilt by the code that
// builds it.
class CppWidget : public Object {
    DECLARE_MEMBERS(CppWidget)
public:
    ~CppWidget() noexcept(false) override;

    virtual void realize();
    // Answers non-zero when the key was consumed. key is a Qt key code.
    virtual int keyEvent(int key, bool isUp);
    virtual void notify();
    // Realises a managed child of a realised parent first. A root answers
    // screen coordinates, a child coordinates in its parent.
    virtual void getGeometry(int& x, int& y, int& width, int& height);
    virtual void move(int x, int y);
    virtual void resize(int width, int height);
    // 0 for a shell: it ends the walks of keys and cursors.
    virtual int hasParentWidget() const;
    // Takes the input focus when the focus flag is set.
    virtual void setFocus();
    // Gives the widget its preferred size unless the program sized it.
    virtual void sizeToFit();

    QWidget* handle() const { return window; }
    CppWidget* parent() const { return parent_; }
    const Symbol& name() const { return name_; }
    bool isManaged() const { return managed != 0; }
    bool isRealized() const { return realized != 0; }
    void setFocusFlag(bool flag) { focusFlag = flag; }
    void manage();
    void unmanage();
    void setSensitive(bool sensitive);
    bool isSensitive() const;
    // The shell that holds this widget: the walk up through hasParentWidget.
    CppShell* shell();

    // Sets the cursor by its name (see cursor.cpp); a null name gives back
    // the parent's. Answers the name of the previous one, empty for none.
    String setCursor(const char* cursorName);

    // The size that shows text in the widget's font: the average character
    // width times the longest line plus extraColumns, the line height times
    // the lines plus extraRows.
    void textSize(const char* text, int extraColumns, int extraRows, int& width, int& height) const;

protected:
    CppWidget(const char* name, CppWidget* parent, bool managed = true);
    // Called once by the class that makes the Qt widget: registers it in the
    // handle table and hands this widget to its parent's add.
    void setHandle(QWidget* w);
    // The Qt widget that the children's Qt widgets stand in.
    QWidget* parentContainer() const;
    // Set when the program gave the widget its size; sizeToFit leaves it.
    bool sizedByProgram;

private:
    friend class CppComposite;

    QWidget* window;
    CppWidget* parent_;
    Symbol name_;
    int focusFlag;
    int managed;
    int realized;
    String cursor;  // empty: the parent's cursor is in force
};

// A widget with children, in the order they were added.
class CppComposite : public CppWidget {
    DECLARE_MEMBERS(CppComposite)
public:
    ~CppComposite() noexcept(false) override;

    // Realises itself, then each managed child.
    void realize() override;
    virtual void add(CppWidget& child);
    virtual void removeChild(CppWidget& child);
    virtual QWidget* childContainer() const;
    // The child of that name, or null.
    virtual CppWidget* childNamed(const char* name) const;
    virtual int childCount() const;

protected:
    CppComposite(const char* name, CppWidget* parent, bool managed = true);
    // The widget at position i of the list; CppForm keeps pairs there.
    virtual CppWidget* widgetAt(int i) const;

    OrderedCltn* children;
};

// The base of the leaf widgets.
class CppPrimitive : public CppWidget {
    DECLARE_MEMBERS(CppPrimitive)
protected:
    CppPrimitive(const char* name, CppWidget* parent, bool managed = true);
};

// The widget of a Qt widget (or of the nearest of its parents that has
// one), or nil.
Object* widgetOfHandle(const QWidget* handle);

#endif
