// RunDialog, the panel's "Run Program Dialog": the file to run, "TraceOff", "Run" and "Browse".
#ifndef PANEL_RUNDLG_H
#define PANEL_RUNDLG_H

#include <string>
#include <vector>

#include "trellis/formdlg.h"

class Cback;

extern Class class_RunDialog;

class RunDialog : public ParamDialog {
    DECLARE_MEMBERS(RunDialog)
public:
    explicit RunDialog(CppWidget* parent);

    // The words of the command that the fields give: the file (from the work directory when it
    // names no folder), then "-traceOff" when the toggle is set; empty without a file.
    std::vector<std::string> command() const;
    // Modal until "Run" or "Cancel": the command, empty when cancelled.
    std::vector<std::string> askCommand();

    CppText& fileField() const { return rowField(0); }
    ToggleButton& traceOff() const { return *trace; }
    CppCommand& browseButton() const { return *browse; }

private:
    void browsePressed(Cback& cb);

    ToggleButton* trace;
    CppCommand* browse;
};

#endif
