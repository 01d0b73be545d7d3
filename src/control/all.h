// Dynamical systems, the workspace and the robust design in one include.
#ifndef CONTROL_ALL_H
#define CONTROL_ALL_H

#include "control/askparam.h"
#include "control/designopt.h"
#include "control/discdyn.h"
#include "control/dynop.h"
#include "control/extsys.h"
#include "control/freqresp.h"
#include "control/hinfric.h"
#include "control/lmi.h"
#include "control/muxparse.h"
#include "control/optgram.h"
#include "control/param.h"
#include "control/paramcl.h"
#include "control/rcdesign.h"
#include "control/response.h"
#include "control/robctrl.h"
#include "control/structck.h"
#include "control/workspc.h"

#endif
