// ChessBoard, the graph editor's index of which icons cover which cell.
#ifndef EDITOR_CHESSBRD_H
#define EDITOR_CHESSBRD_H

#include "quill/object.h"
#include "quill/qclass.h"

class IconNode;
class Point;

extern Class class_ChessBoard;

// A cell that holds nothing (null), one icon, or an OrderedCltn of the
// icons that cover it, in the order they came.
struct BoardCell {
    int y;
    Object* obj;
};

// One x slice of the board: its cells sorted by ascending y.
struct BoardRow {
    int x;
    int colSize;
    int colCapac;
    BoardCell** cols;
};

// A sparse grid: the rows that hold anything, sorted by ascending x, each
// with its cells. Both levels are sorted arrays searched linearly, and grow
// by doubling. The board owns its rows, cells and collections, not the
// icons. It is rebuilt, never stored.
class ChessBoard : public Object {
    DECLARE_MEMBERS(ChessBoard)
public:
    ChessBoard(int width = 50, int height = 50);
    ChessBoard(const ChessBoard&) = delete;
    ChessBoard& operator=(const ChessBoard&) = delete;
    ~ChessBoard() noexcept(false) override;

    // Adds ob to the cell (x, y), or removes it.
    void addOrRemove(int x, int y, Object* ob, bool toAdd);
    // What the cell holds; null for an empty or negative cell.
    Object* at(int x, int y) const;
    // The icon a click picks: a node before links, and on a crossing of
    // links each of them in turn; null when the cell is empty.
    IconNode* iconAt(int x, int y) const;
    IconNode* iconAt(const Point& p) const;
    // Registers the icon's cells; answers whether the extents grew.
    bool add(IconNode& icon);
    IconNode& remove(IconNode& icon);
    // Frees rows, cells and collections; the row array stays.
    void clear();
    int countAt(int x, int y) const;
    // Note the order: the point's y is taken as x, and its x as y.
    int countAt(const Point& p) const;
    // Fills result with each icon, once, under the icon's cells.
    void collisionWith(IconNode& icon, OrderedCltn& result) const;
    // Whether the icon is registered at its first cell.
    bool isOnBoard(IconNode& icon) const;
    int width() const { return width_; }
    int height() const { return height_; }

private:
    // The position of the first row at x or beyond.
    int rowIndex(int x) const;
    void addCellObject(BoardCell& cell, Object* ob);
    void removeCellObject(BoardCell& cell, Object* ob);
    // Calls f with each absolute cell of the icon that is not negative; a
    // negative one is reported as out of range for the operation.
    template <class F>
    void forEachCell(IconNode& icon, const char* operation, F f) const;

    int width_;
    int height_;
    BoardRow** rows;
    int rowSize;
    int rowCapac;
};

#endif
