// The two panels of the robust design mode, as they ship in "RobustControl.mim" and "ExtendedSystem.mim".
#ifndef GUI_DSGNMIM_H
#define GUI_DSGNMIM_H

class DynamicPanel;

// New panels, owned by the caller, with the controls' starting values.
DynamicPanel* makeRobustControlPanel();
DynamicPanel* makeExtendedSystemPanel();

#endif
