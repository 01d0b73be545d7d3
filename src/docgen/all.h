// The document generator in one include: the document tree, its writers and the LaTeX reader.
#ifndef DOCGEN_ALL_H
#define DOCGEN_ALL_H

#include "docgen/asciiwriter.h"
#include "docgen/container.h"
#include "docgen/docwalk.h"
#include "docgen/docwriter.h"
#include "docgen/element.h"
#include "docgen/htmlwriter.h"
#include "docgen/latexreader.h"
#include "docgen/latexwriter.h"
#include "docgen/rtfwriter.h"
#include "docgen/section.h"

#endif
