// ProjectData, the saved state of the design panel: the text of each control, by name, kept in
// "project.gui" so that a design is taken up the next day where it stopped.
#ifndef GUI_PROJDATA_H
#define GUI_PROJDATA_H

#include "control/paramcl.h"

extern Class class_ProjectData;

class ProjectData : public Object {
    DECLARE_MEMBERS(ProjectData)
public:
    ProjectData() {}
    // Stream form: the controls' texts as string parameters.
    ProjectData(std::istream& is, Object* where);
    ProjectData(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // Replaces the text of the control, or adds it.
    void set(const char* control, const char* text);
    // The saved text of the control, null when none was saved.
    const String* get(const char* control) const;
    unsigned size() const { return values.size(); }
    const Parameter& at(unsigned i) const { return values.at(int(i)); }

private:
    ParametersCltn values;
};

#endif
