// The scanner and the base parser in one include.
#ifndef REVERSE_ALL_H
#define REVERSE_ALL_H

#include "reverse/basepars.h"
#include "reverse/scanner.h"

#endif
