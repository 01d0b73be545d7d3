// CppCommand and ToggleButton: the push button and the two-state button.
#ifndef TRELLIS_BUTTON_H
#define TRELLIS_BUTTON_H

#include "trellis/widget.h"

extern Class class_CppCommand;
extern Class class_ToggleButton;

extern Symbol CppCommandPressed;    // the button was pressed
extern Symbol ToggleButtonChanged;  // the state changed; data the new state, an int

class CppCommand : public CppPrimitive {
    DECLARE_MEMBERS(CppCommand)
public:
    CppCommand(const char* name, CppWidget* parent, const char* label = 0, bool managed = true);
    void setLabel(const char* label);
    String label() const;
    // Presses the button as the user would.
    void press();
};

// A check box, or a radio button: radio buttons with the same parent
// exclude each other.
class ToggleButton : public CppPrimitive {
    DECLARE_MEMBERS(ToggleButton)
public:
    ToggleButton(const char* name, CppWidget* parent, const char* label = 0, bool radio = false);
    bool state() const;
    // Raises ToggleButtonChanged when the state changes.
    void setState(bool on);
    void setLabel(const char* label);
};

#endif
