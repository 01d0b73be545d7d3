// ExtendedSystemPanel, the panel "ExtendedSystem.mim" of the design: the extended system composed
// from its component models, named by workspace object or model file, and written as "Tot.dyn".
#ifndef GUI_EXTPANEL_H
#define GUI_EXTPANEL_H

#include "quill/quillstr.h"

class DynamicPanelWindow;
class GraphMainLib;

class ExtendedSystemPanel {
public:
    // The panel file lies in directory; it opens on show().
    ExtendedSystemPanel(const char* directory, GraphMainLib& owner);
    ExtendedSystemPanel(const ExtendedSystemPanel&) = delete;
    ExtendedSystemPanel& operator=(const ExtendedSystemPanel&) = delete;
    ~ExtendedSystemPanel();

    void show();
    void close();
    DynamicPanelWindow* window() const { return panel; }
    void press(const char* control);
    // Composes the components named in the panel; false after the message of the first fault.
    bool composeModel();

private:
    void clearModel();
    void switchDomain();
    void discretize();

    String file;
    GraphMainLib& owner;
    DynamicPanelWindow* panel = 0;
};

#endif
