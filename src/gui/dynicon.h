// DynamicIcon, the widgets that show one control of a dynamic panel, and the kinds of them.
#ifndef GUI_DYNICON_H
#define GUI_DYNICON_H

#include "gui/dynctrl.h"
#include "quill/symbol.h"

class Cback;
class CppForm;
class CppLabel;
class CppWidget;

extern Class class_DynamicIcon;

extern Symbol DynamicIconSelected;  // raised on the panel's window when a control is pressed or changed;
                                    // call data: the control's name, a String

// The icon keeps its control's value in step with what the widget shows: text gives the value, setText
// changes it without raising DynamicIconSelected; the user's press or change raises it on the owner.
class DynamicIcon : public Object {
    DECLARE_MEMBERS(DynamicIcon)
public:
    // The icon of the control's kind, its widgets placed in form at unit pixels a grid step.
    static DynamicIcon* make(DynamicControl& control, CppForm& form, int unit, Object& owner);

    DynamicControl& control() const { return control_; }
    virtual String text() const;
    virtual void setText(const char* text);
    // What the user's click or Return does.
    virtual void press();
    // A trend's points, a console's text, a cycling button's next value; other kinds answer false.
    virtual bool addPoint(double value);
    virtual bool clearPoints();
    virtual bool append(const char* text);
    bool cycleNext();
    void setEnabled(bool on);
    void setVisible(bool on);
    CppWidget& widget() const { return *widget_; }

protected:
    DynamicIcon(DynamicControl& control, Object& owner);
    // Shows the control's value in the widget.
    virtual void show() = 0;
    // Places the caption and the widget in the control's box, colours the widget and shows the value.
    void place(CppForm& form, CppWidget* widget, int unit);
    // Raises DynamicIconSelected with the control's name.
    void raise();
    void pressed(Cback& cb);

private:
    DynamicControl& control_;
    Object& owner;
    CppWidget* widget_;
    CppLabel* caption;
};

#endif
