// Dynamical systems and their workspace in one include.
#ifndef CONTROL_ALL_H
#define CONTROL_ALL_H

#include "control/discdyn.h"
#include "control/dynop.h"
#include "control/structck.h"
#include "control/workspc.h"

#endif
