// The model editors' public headers.
#ifndef MODEL_ALL_H
#define MODEL_ALL_H

#include "model/blockicon.h"
#include "model/crossing.h"
#include "model/modeldata.h"
#include "model/modelnode.h"
#include "model/route.h"
#include "model/signlink.h"
#include "model/sttrlink.h"
#include "model/termicon.h"
#include "model/titleicon.h"

#endif
