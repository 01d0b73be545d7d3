// ChessBoard: the sorted rows and cells, adding and removing icons, picking and collisions.
#include "editor/chessbrd.h"

#include <cstring>

#include "editor/iconarc.h"
#include "quill/objalloc.h"
#include "quill/orderedc.h"
#include "quill/point.h"
#include "quill/quillerr.h"

DEFINE_CLASS(ChessBoard, Object, 1, 0)

namespace {

enum { FIRST_ROWS = 64, FIRST_CELLS = 16 };

template <class T>
T** newSlots(int capacity) {
    return static_cast<T**>(objectCalloc(capacity, sizeof(T*)));
}

// Puts item at index, shifting the later ones up; a full array doubles.
template <class T>
void insertSlot(T**& slots, int& size, int& capacity, int index, T* item) {
    if (size == capacity) {
        T** grown = newSlots<T>(2 * capacity);
        memcpy(grown, slots, size * sizeof(T*));
        objectFree(slots);
        slots = grown;
        capacity *= 2;
    }
    memmove(slots + index + 1, slots + index, (size - index) * sizeof(T*));
    slots[index] = item;
    ++size;
}

int cellIndex(const BoardRow& row, int y) {
    int i = 0;
    while (i < row.colSize && row.cols[i]->y < y) ++i;
    return i;
}

// The pick among links only, shared by every board of the program: clicking
// again where the last pick was steps to the next link of the cell.
int lastIndex = 0;
const Object* lastPicked = 0;

Object* rotatePick(const OrderedCltn& links) {
    int size = int(links.size());
    if (lastIndex < size) {
        const Object* seen = links[lastIndex++];
        if (seen != lastPicked)
            lastIndex = 0;
        else if (lastIndex == size)
            lastIndex = 0;
    } else {
        lastIndex = 0;
    }
    lastPicked = links[lastIndex];
    return links[lastIndex];
}

bool isCollection(const Object* ob) { return ob->isMemberOf(class_OrderedCltn); }

void addOnce(OrderedCltn& result, Object* ob) {
    if (result.indexOfSame(*ob) < 0) result.add(*ob);
}

// Reported, not raised: the operation goes on with the other cells.
void reportPositionError(const char* operation, int x, int y) {
    reportError(SEV_ERROR, formatText(errorText(GENERICERR), "POSITION_ERROR", operation,
                                      formatText("[%d][%d] is out of range", x, y), ""));
}

}  // namespace

ChessBoard::ChessBoard(int width, int height)
    : width_(width),
      height_(height),
      rows(newSlots<BoardRow>(FIRST_ROWS)),
      rowSize(0),
      rowCapac(FIRST_ROWS) {}

ChessBoard::~ChessBoard() noexcept(false) {
    clear();
    objectFree(rows);
}

int ChessBoard::rowIndex(int x) const {
    int i = 0;
    while (i < rowSize && rows[i]->x < x) ++i;
    return i;
}

void ChessBoard::addOrRemove(int x, int y, Object* ob, bool toAdd) {
    QASSERT_TEXT(x >= 0 && y >= 0, "x >= 0 && y >= 0");
    QASSERT_TEXT(ob != 0, "ob != 0");
    int i = rowIndex(x);
    if (i == rowSize || rows[i]->x != x) {
        QASSERT(toAdd);
        BoardRow* row = new BoardRow{x, 0, FIRST_CELLS, newSlots<BoardCell>(FIRST_CELLS)};
        insertSlot(row->cols, row->colSize, row->colCapac, 0, new BoardCell{y, ob});
        insertSlot(rows, rowSize, rowCapac, i, row);
        return;
    }
    BoardRow& row = *rows[i];
    int j = cellIndex(row, y);
    if (j == row.colSize || row.cols[j]->y != y) {
        QASSERT(toAdd);
        insertSlot(row.cols, row.colSize, row.colCapac, j, new BoardCell{y, ob});
        return;
    }
    BoardCell& cell = *row.cols[j];
    if (!cell.obj) {
        QASSERT(toAdd);
        cell.obj = ob;
        return;
    }
    QASSERT_TEXT(validObject(cell.obj), "validObject(col->obj)");
    if (toAdd)
        addCellObject(cell, ob);
    else
        removeCellObject(cell, ob);
}

// A second icon makes the cell a collection, which stays one when it shrinks.
void ChessBoard::addCellObject(BoardCell& cell, Object* ob) {
    if (isCollection(cell.obj)) {
        static_cast<OrderedCltn*>(cell.obj)->add(*ob);
        return;
    }
    OrderedCltn* both = new OrderedCltn(4);
    both->add(*cell.obj);
    both->add(*ob);
    cell.obj = both;
}

void ChessBoard::removeCellObject(BoardCell& cell, Object* ob) {
    if (!isCollection(cell.obj)) {
        QASSERT_TEXT(cell.obj == ob, "col->obj == ob");
        cell.obj = 0;
        return;
    }
    OrderedCltn* cltn = static_cast<OrderedCltn*>(cell.obj);
    QASSERT_TEXT(cltn->indexOfSame(*ob) >= 0, "cltn->includes(*ob)");
    cltn->removeSame(*ob);
    if (!cltn->isEmpty()) return;
    delete cltn;
    cell.obj = 0;
}

Object* ChessBoard::at(int x, int y) const {
    if (x < 0 || y < 0) return 0;
    int i = rowIndex(x);
    if (i == rowSize || rows[i]->x != x) return 0;
    const BoardRow& row = *rows[i];
    int j = cellIndex(row, y);
    return j < row.colSize && row.cols[j]->y == y ? row.cols[j]->obj : 0;
}

IconNode* ChessBoard::iconAt(int x, int y) const {
    Object* ob = at(x, y);
    if (!ob) return 0;
    if (!isCollection(ob)) return CAST(IconNode, ob);
    const OrderedCltn& icons = *static_cast<OrderedCltn*>(ob);
    for (int i = int(icons.size()) - 1; i >= 0; --i)
        if (!icons[i]->isKindOf(class_IconArc)) return CAST(IconNode, icons[i]);
    return CAST(IconNode, rotatePick(icons));
}

IconNode* ChessBoard::iconAt(const Point& p) const { return iconAt(p.x(), p.y()); }

template <class F>
void ChessBoard::forEachCell(IconNode& icon, const char* operation, F f) const {
    Point origin = icon.position();
    const OrderedCltn& cells = *icon.geoIcon();
    for (unsigned i = 0; i < cells.size(); ++i) {
        Point p = origin + *CAST(Point, cells.at(i));
        if (p.x() < 0 || p.y() < 0)
            reportPositionError(operation, p.x(), p.y());
        else
            f(p.x(), p.y());
    }
}

bool ChessBoard::add(IconNode& icon) {
    bool grew = false;
    forEachCell(icon, "add", [&](int x, int y) {
        addOrRemove(x, y, &icon, true);
        if (x >= width_) {
            width_ = x + 1;
            grew = true;
        }
        if (y >= height_) {
            height_ = y + 1;
            grew = true;
        }
    });
    return grew;
}

IconNode& ChessBoard::remove(IconNode& icon) {
    forEachCell(icon, "remove", [&](int x, int y) { addOrRemove(x, y, &icon, false); });
    return icon;
}

// A collection is freed only when alive: a cell may still point at an icon
// deleted meanwhile, and that pointer is not followed.
void ChessBoard::clear() {
    for (int i = 0; i < rowSize; ++i) {
        BoardRow* row = rows[i];
        for (int j = 0; j < row->colSize; ++j) {
            Object* ob = row->cols[j]->obj;
            if (ob && validObject(ob) && isCollection(ob)) delete ob;
            delete row->cols[j];
        }
        objectFree(row->cols);
        delete row;
        rows[i] = 0;
    }
    rowSize = 0;
}

int ChessBoard::countAt(int x, int y) const {
    Object* ob = at(x, y);
    if (!ob) return 0;
    return isCollection(ob) ? int(ob->size()) : 1;
}

int ChessBoard::countAt(const Point& p) const { return countAt(p.y(), p.x()); }

void ChessBoard::collisionWith(IconNode& icon, OrderedCltn& result) const {
    result.removeAll();
    forEachCell(icon, "collisionWith", [&](int x, int y) {
        Object* ob = at(x, y);
        if (!ob) return;
        QASSERT_TEXT(validObject(ob), "validObject( ob )");
        if (!isCollection(ob)) return addOnce(result, ob);
        const OrderedCltn& icons = *static_cast<OrderedCltn*>(ob);
        for (unsigned i = 0; i < icons.size(); ++i) addOnce(result, icons[i]);
    });
}

bool ChessBoard::isOnBoard(IconNode& icon) const {
    if (icon.geoIcon()->isEmpty()) return false;
    Point p = icon.position() + *CAST(Point, icon.geoIcon()->first());
    Object* ob = at(p.x(), p.y());
    if (!ob) return false;
    return isCollection(ob) ? static_cast<OrderedCltn*>(ob)->indexOfSame(icon) >= 0 : ob == &icon;
}
