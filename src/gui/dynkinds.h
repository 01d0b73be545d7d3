// The makers of the icons of each family of kinds, for DynamicIcon::make.
#ifndef GUI_DYNKINDS_H
#define GUI_DYNKINDS_H

class CppForm;
class DynamicControl;
class DynamicIcon;
class Object;
class QWidget;

// Command and cycling buttons, toggles, text and number fields, consoles, labels, value displays, groups.
DynamicIcon* makeTextIcon(DynamicControl& control, CppForm& form, int unit, Object& owner);
// Sliders, level bars and histograms.
DynamicIcon* makeGaugeIcon(DynamicControl& control, CppForm& form, int unit, Object& owner);
DynamicIcon* makeTrendIcon(DynamicControl& control, CppForm& form, int unit, Object& owner);

// The control's colours on the widget: the background of buttons, fields and labels, the text alike.
void applyColours(QWidget& widget, const DynamicControl& control);

#endif
