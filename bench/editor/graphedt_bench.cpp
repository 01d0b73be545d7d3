// The graph editor on generated drawings of 50, 500 and 5,000 rectangles, each joined to its right and
// lower neighbours by links (about 1.2 links a node): load, pick, move one icon with its links and
// paint the window, save. The memory of the process after the load is a counter (kB).
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <QApplication>
#include <QPixmap>
#include <QWidget>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "../benchlib.h"
#include "editor/all.h"
#include "quill/dictnary.h"
#include "trellis/dispatch.h"
#include "trellis/drawarea.h"
#include "trellis/filemenu.h"
#include "trellis/shell.h"

namespace {

const int SPACING = 4;  // cells between the corners of neighbouring rectangles

void startWindows() {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    startLibrary();
}

int columnsFor(int icons) {
    int columns = 1;
    while (columns * columns < icons) ++columns;
    return columns;
}

IconNode& addNode(GraphEditor& editor, int column, int row) {
    IconNode* node = editor.semantic().newIcon("Rectangle", -1, -1);
    node->setPosition(Point(column * SPACING + 1, row * SPACING + 1));
    editor.semantic().uniqueName(*node, editor.editorIcons());
    node->update();
    editor.insertIcon(*node);
    return *node;
}

void addLink(GraphEditor& editor, IconNode& from, IconNode& to) {
    IconArc* link = editor.semantic().newLink("Unlabel");
    FloatPoint p1(from.posX() + 0.5, from.posY() + 0.5), p2(to.posX() + 0.5, to.posY() + 0.5);
    editor.createLink(*link, from, to, p1, p2);
    editor.insertIcon(*link);
}

// A drawing of n rectangles on a square grid; every node but the last links to its right
// neighbour, every fifth also to the one below.
std::string generatedDrawing(int icons) {
    std::string file = "/tmp/tarn_bench_" + std::to_string(icons) + ".edt";
    static std::set<int> made;
    if (!made.insert(icons).second) return file;
    unlink(file.c_str());
    GraphEditor editor(topLevelWidget, "Semantic", "Bench - ", false, false, true);
    int columns = columnsFor(icons);
    editor.semantic().setWidth(columns * SPACING + 4);
    editor.semantic().setHeight(columns * SPACING + 4);
    std::vector<IconNode*> nodes;
    for (int i = 0; i < icons; ++i) nodes.push_back(&addNode(editor, i % columns, i / columns));
    for (int i = 0; i + 1 < icons; ++i) {
        if ((i + 1) % columns) addLink(editor, *nodes[i], *nodes[i + 1]);
        if (i % 5 == 0 && i + columns < icons) addLink(editor, *nodes[i], *nodes[i + columns]);
    }
    editor.gui().fileMenu().saveAs(file.c_str());
    return file;
}

long residentKilobytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word)
        if (word == "VmRSS:") {
            long kb = 0;
            status >> kb;
            return kb;
        }
    return 0;
}

void BM_Load(benchmark::State& state) {
    startWindows();
    std::string file = generatedDrawing(int(state.range(0)));
    for (auto _ : state) {
        GraphEditor editor(topLevelWidget, "Semantic", "Bench - ", false, false, true);
        editor.load(file.c_str());
        benchmark::DoNotOptimize(editor.editorIcons().size());
        state.counters["rss_kB"] = double(residentKilobytes());
    }
}

// One editor on the drawing for the gestures that follow.
struct OpenDrawing {
    explicit OpenDrawing(int icons) : editor(topLevelWidget, "Semantic", "Bench - ", false, false, true) {
        editor.load(generatedDrawing(icons).c_str());
        editor.getShell().realize();
        editor.getShell().resize(900, 700);
        columns = columnsFor(icons);
    }
    GraphEditor editor;
    int columns;
};

void BM_Pick(benchmark::State& state) {
    startWindows();
    OpenDrawing drawing(int(state.range(0)));
    int i = 0, n = int(state.range(0));
    for (auto _ : state) {
        int k = (i++ * 7919) % n;
        FloatPoint cell((k % drawing.columns) * SPACING + 1.5, (k / drawing.columns) * SPACING + 1.5);
        benchmark::DoNotOptimize(drawing.editor.pick(cell));
    }
}

// Press on a rectangle, wait out the drag delay, drag two cells, release, and paint the area.
void BM_MoveAndRedraw(benchmark::State& state) {
    startWindows();
    OpenDrawing drawing(int(state.range(0)));
    DrawArea& area = drawing.editor.gui().drawArea();
    double x = 1.5, y = 1.5;
    for (auto _ : state) {
        state.PauseTiming();
        area.raisePointer(DownGraphic, FloatPoint(x, y), 1, 0);
        drawing.editor.cbackOn(XTimeOut);
        state.ResumeTiming();
        double to = y > 2 ? 1.5 : 3.5;
        area.raisePointer(MoveDownGraphic, FloatPoint(x, (y + to) / 2), 1, 0);
        area.raisePointer(MoveDownGraphic, FloatPoint(x, to), 1, 0);
        area.raisePointer(UpGraphic, FloatPoint(x, to), 1, 0);
        benchmark::DoNotOptimize(area.handle()->grab());
        y = to;
    }
}

void BM_Save(benchmark::State& state) {
    startWindows();
    OpenDrawing drawing(int(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(drawing.editor.save());
}

}  // namespace

BENCHMARK(BM_Load)->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pick)->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MoveAndRedraw)->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Save)->Arg(50)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
