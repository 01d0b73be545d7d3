// The board: growth of rows and cells, shared cells, the pick rule, and positions out of range.
#include "editor/chessbrd.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "editor/iconarc.h"
#include "quill/quillerr.h"

namespace {

// One-cell icons, owned by the test.
struct Icons {
    std::vector<std::unique_ptr<IconNode>> all;
    template <class T = IconNode>
    T& at(int x, int y) {
        T* icon = new T;
        icon->setPosition(Point(x, y));
        icon->geoIcon()->add(*new Point(0, 0));
        all.emplace_back(icon);
        return *icon;
    }
};

// 70 rows and a row of 20 cells: both levels outgrow their first arrays,
// and every cell still reads back its icon.
TEST(ChessBoardTest, growsBeyondItsFirstRowsAndCells) {
    ChessBoard board(10, 10);
    Icons icons;
    for (int x = 69; x >= 0; --x) board.add(icons.at(x, 0));
    for (int y = 1; y < 20; ++y) EXPECT_EQ(y >= 10, board.add(icons.at(5, y)));
    EXPECT_EQ(70, board.width());
    EXPECT_EQ(20, board.height());
    for (int x = 0; x < 70; ++x) EXPECT_EQ(Point(x, 0), board.iconAt(x, 0)->position());
    for (int y = 0; y < 20; ++y) EXPECT_EQ(Point(5, y), board.iconAt(Point(5, y))->position());
    EXPECT_EQ(nullptr, board.at(70, 0));
    board.clear();
    EXPECT_EQ(nullptr, board.at(5, 5));
}

// A cell holds icons in the order they came; the node wins a click over the
// links, and links alone take turns.
TEST(ChessBoardTest, sharedCellsAndThePick) {
    ChessBoard board;
    Icons icons;
    IconArc& first = icons.at<IconArc>(3, 7);
    IconArc& second = icons.at<IconArc>(3, 7);
    IconNode& node = icons.at(3, 7);
    board.add(first);
    board.add(node);
    board.add(second);
    EXPECT_EQ(3, board.countAt(3, 7));
    EXPECT_EQ(3, board.countAt(Point(7, 3)));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(&node, board.iconAt(3, 7));
    board.remove(node);
    std::vector<IconNode*> picks;
    for (int i = 0; i < 4; ++i) picks.push_back(board.iconAt(3, 7));
    EXPECT_EQ((std::vector<IconNode*>{&first, &second, &first, &second}), picks);
    board.remove(second);
    EXPECT_EQ(1, board.countAt(3, 7));
    EXPECT_TRUE(board.at(3, 7)->isKindOf(class_OrderedCltn));
    EXPECT_TRUE(board.isOnBoard(first));
    EXPECT_FALSE(board.isOnBoard(second));
    OrderedCltn hits;
    board.collisionWith(second, hits);
    EXPECT_EQ(1u, hits.size());
}

std::vector<std::string> reports;
int keepReport(int, const char* text) {
    reports.push_back(text);
    return 1;
}

// A cell at a negative place is reported, and the icon's other cells go on.
TEST(ChessBoardTest, negativePositionsAreReported) {
    ChessBoard board;
    Icons icons;
    IconNode& wide = icons.at(-1, 2);
    wide.geoIcon()->add(*new Point(1, 0));
    ErrorReportHook former = errorReportHook;
    errorReportHook = keepReport;
    reports.clear();
    board.add(wide);
    errorReportHook = former;
    EXPECT_EQ(std::vector<std::string>{"[POSITION_ERROR] add[-1][2] is out of range"}, reports);
    EXPECT_EQ(&wide, board.iconAt(0, 2));
    EXPECT_EQ(nullptr, board.at(-1, 2));
    IconNode bare;
    EXPECT_FALSE(board.isOnBoard(bare));
}

}  // namespace
