// The interpreted language in one include: program tree, values, numeric values, parser, executer and
// runner.
#ifndef INTERPRETER_ALL_H
#define INTERPRETER_ALL_H

#include "interpreter/algvar.h"
#include "interpreter/arrayvar.h"
#include "interpreter/charvar.h"
#include "interpreter/codeelem.h"
#include "interpreter/codepars.h"
#include "interpreter/discvar.h"
#include "interpreter/dynvar.h"
#include "interpreter/executer.h"
#include "interpreter/expressn.h"
#include "interpreter/floatvar.h"
#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/intvar.h"
#include "interpreter/modvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/ostrmvar.h"
#include "interpreter/polyvar.h"
#include "interpreter/ratvar.h"
#include "interpreter/runner.h"
#include "interpreter/scalar.h"
#include "interpreter/statemnt.h"
#include "interpreter/stringvr.h"
#include "interpreter/submvar.h"
#include "interpreter/subvvar.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"
#include "interpreter/vectvar.h"
#include "interpreter/winvar.h"
#include "interpreter/zpkout.h"

#endif
