// The model editors' public headers.
#ifndef MODEL_ALL_H
#define MODEL_ALL_H

#include "model/crossing.h"
#include "model/route.h"

#endif
