// The indentation level of a stream, kept in a word that the stream itself carries.
#include "quill/indent.h"

#include <ostream>

namespace {

const int UNIT = 2;

int slot() {
    static const int index = std::ios_base::xalloc();
    return index;
}

}  // namespace

void indentMore(std::ostream& os) { ++os.iword(slot()); }

void indentLess(std::ostream& os) {
    long& level = os.iword(slot());
    if (level > 0) --level;
}

int indentLevel(const std::ostream& os) { return int(const_cast<std::ostream&>(os).iword(slot())); }

void writeIndentation(std::ostream& os) {
    for (long i = os.iword(slot()) * UNIT; i > 0; --i) os.put(' ');
}
