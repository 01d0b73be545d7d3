// DynamicControl, one control of a dynamic panel: its name, kind, place, label, values and colours.
#ifndef GUI_DYNCTRL_H
#define GUI_DYNCTRL_H

#include <initializer_list>

#include "quill/object.h"
#include "quill/orderedc.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

extern Class class_DynamicControl;

// Place and size are in grid units of the panel; the caption, when labelWidth is above 0, takes that
// many units at the left of the box and the control the rest. Colours are colour names, empty for the
// window's own. minimum and maximum bound a slider, a level bar and a histogram.
class DynamicControl : public Object {
    DECLARE_MEMBERS(DynamicControl)
public:
    // The order of the kind words; stored by word, so that the files read as text.
    enum Kind {
        COMMAND,
        CYCLE,
        TOGGLE,
        TEXT,
        NUMBER,
        LABEL,
        VALUE,
        SLIDER,
        LEVEL,
        HISTOGRAM,
        TREND,
        CONSOLE,
        GROUP,
        KINDS
    };

    DynamicControl();
    DynamicControl(const char* name, Kind kind, int x, int y, int width, int height, const char* label = "",
                   const char* value = "");
    DynamicControl(const DynamicControl& c);
    DynamicControl& operator=(const DynamicControl&) = delete;
    // Stream form: name, kind word, label, value, the five numbers of the place and caption, the cycle,
    // minimum and maximum, the two colours. An unknown kind word raises BAD_PANEL.
    DynamicControl(std::istream& is, Object* where);
    DynamicControl(BinIstream& is, Object* where);
    ~DynamicControl() noexcept(false) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    bool isEqual(const Object& ob) const override;
    void printOn(std::ostream& os) const override;  // name (kind word) = value

    static const char* kindWord(Kind kind);
    static int kindOfWord(const char* word);  // -1 for a word that names no kind

    const String& name() const { return name_; }
    Kind kind() const { return kind_; }
    int x() const { return x_; }
    int y() const { return y_; }
    int width() const { return width_; }
    int height() const { return height_; }
    int labelWidth() const { return labelWidth_; }
    const String& label() const { return label_; }
    // What the control's own widget shows: the value, or the label while there is no value and the
    // label is not a caption beside the widget.
    const String& shownText() const { return value_.size() || labelWidth_ > 0 ? value_ : label_; }
    const String& value() const { return value_; }
    const OrderedCltn& cycle() const { return cycle_; }
    double minimum() const { return minimum_; }
    double maximum() const { return maximum_; }
    const String& foreground() const { return foreground_; }
    const String& background() const { return background_; }

    void setValue(const char* text) { value_ = text; }
    void setLabel(const char* text) { label_ = text; }
    // The values of a cycling button, in order; an empty value becomes the first.
    DynamicControl& setCycle(std::initializer_list<const char*> values);
    // The value after the current one in the cycle, the first after the last or after a value that
    // is not in it; the value itself when the cycle is empty.
    String nextInCycle() const;
    DynamicControl& setCaption(int width);
    DynamicControl& setRange(double minimum, double maximum);
    DynamicControl& setColours(const char* foreground, const char* background = "");

private:
    template <class Stream>
    void readFields(Stream& is);
    template <class Stream>
    void storeFields(Stream& os) const;

    String name_;
    Kind kind_;
    String label_;
    String value_;
    int x_, y_, width_, height_, labelWidth_;
    OrderedCltn cycle_;  // owns its Strings
    double minimum_, maximum_;
    String foreground_, background_;
};

#endif
