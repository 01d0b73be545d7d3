// The reader of the LaTeX subset that comments may be written in.
#ifndef DOCGEN_LATEXREADER_H
#define DOCGEN_LATEXREADER_H

#include <iostream>

#include "docgen/section.h"

// Reads text into into: \section, \subsection and \subsubsection (starred too)
// as nested sections; itemize and enumerate; \textbf, \emph, \texttt; \noindent;
// "\~{}" for a tilde and "\\" for a paragraph break; the escaped reserved characters
// (\%, \&, \_, \#, \$, \{, \}); inline math kept as text; % comments dropped.
// The text is read element by element (paragraphs, lists, headings): an element
// with unbalanced braces, an unknown environment or an \end without its \begin
// is written to errors between a line "-----" and a line "=====", after
// "Error parsing Latex!", and left out; the others are kept.
// Answers false when an element was left out.
bool readLatex(const std::string& text, Section& into, std::ostream& errors = std::cerr);

#endif
