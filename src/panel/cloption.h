// The options of the headless modes: texts and numbers checked against their range.
#ifndef PANEL_CLOPTION_H
#define PANEL_CLOPTION_H

#include <initializer_list>
#include <string>

#include "quill/quillstr.h"

// The option's text, or fallback when it is not given.
String textOption(const char* name, const char* fallback);

// The option's text into value when it is one of texts (fallback when the option is not given);
// false after the line that names the option and the texts it accepts.
bool choiceOption(const char* name, std::string& value, std::initializer_list<const char*> texts,
                  const char* fallback);

// The admissible values of a numeric option: above low (or from it, when closed), up to high.
struct Range {
    double low;
    bool closed;
    double high;
    bool integer;
};

// The option's value into value when it is given; false after the line that names the option,
// when it is not a number or lies outside range.
bool numberOption(const char* name, double& value, const Range& range);

#endif
