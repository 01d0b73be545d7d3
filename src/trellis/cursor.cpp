// The cursor names of the toolkit and the Qt shapes they stand for.
#include "trellis/cursor.h"

#include <Qt>
#include <cstring>

namespace {

struct CursorName {
    const char* name;
    Qt::CursorShape shape;
};

const CursorName cursorNames[] = {
    {"watch", Qt::WaitCursor},
    {"hand2", Qt::UpArrowCursor},
    {"fleur", Qt::SizeAllCursor},
    {"top_left_corner", Qt::SizeFDiagCursor},
    {"bottom_right_corner", Qt::SizeFDiagCursor},
    {"top_right_corner", Qt::SizeBDiagCursor},
    {"bottom_left_corner", Qt::SizeBDiagCursor},
    {"top_side", Qt::SizeVerCursor},
    {"bottom_side", Qt::SizeVerCursor},
    {"left_side", Qt::SizeHorCursor},
    {"right_side", Qt::SizeHorCursor},
    {"pirate", Qt::ForbiddenCursor},
};

}  // namespace

int cursorShape(const char* name) {
    for (const CursorName& c : cursorNames)
        if (std::strcmp(c.name, name) == 0) return c.shape;
    return Qt::CrossCursor;
}
