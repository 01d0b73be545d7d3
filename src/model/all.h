// The model editors' public headers.
#ifndef MODEL_ALL_H
#define MODEL_ALL_H

#include "model/blockicon.h"
#include "model/bstsem.h"
#include "model/crossing.h"
#include "model/diagmake.h"
#include "model/modeldata.h"
#include "model/modelnode.h"
#include "model/network.h"
#include "model/nodegeom.h"
#include "model/route.h"
#include "model/signlink.h"
#include "model/stateicn.h"
#include "model/stevent.h"
#include "model/stgsem.h"
#include "model/stpar.h"
#include "model/stsem.h"
#include "model/stticon.h"
#include "model/sttrlink.h"
#include "model/termicon.h"
#include "model/titleicon.h"
#include "model/trnslink.h"

#endif
