// UnsArray: the class descriptor of the index arrays.
#include "quill/unsarray.h"

DEFINE_CLASS(UnsArray, IntArray, 1, 0)
