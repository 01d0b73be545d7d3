// The shipped state transition graph: drawn here in code, and the file under examples/ must hold
// the same graph. With TARN_WRITE_EXAMPLES set to a folder the graph is written there instead.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "editor/drawfile.h"
#include "model/stgmake.h"
#include "quill/arrayob.h"
#include "quill/dictnary.h"
#include "quill/objio.h"

namespace {

// A machine started by its controller, with a self-loop on its running state.
void machine(StateGraphMaker& g) {
    ProcessIcon& controller = g.process("Controller", "drives the motor", "speed\nlimit", 48, 36);
    StateIcon& idle = g.state("Idle", "motor stopped", 48, 44);
    StateIcon& running = g.state("Running", "motor turning", 64, 44);
    StateIcon& fault = g.state("Fault", "speed over the limit", 80, 44);
    g.transition(controller, idle, "power on", "speed := 0", BottomSide, TopSide);
    g.transition(idle, running, "start", "limit := 100");
    g.transition(running, running, "tick", "speed := speed + 1");
    g.transition(running, fault, "speed > limit", "alarm()");
    g.transition(fault, idle, "reset", "", BottomSide, BottomSide);
}

std::string nodeName(IconNode* node) {
    return node && node->isKindOf(class_StateIcon)
               ? static_cast<StateIcon*>(node)->stateName().asCharPointer()
               : "?";
}

// The graph as sorted lines: each node with its texts and place, each transition with its ends,
// texts and route.
std::string described(Dictionary& icons) {
    std::vector<std::string> lines;
    OrderedCltn all = icons.asOrderedCltn();
    for (unsigned i = 0; i < all.size(); ++i) {
        std::ostringstream line;
        if (all.at(i)->isKindOf(class_StateIcon)) {
            StateIcon& s = *static_cast<StateIcon*>(all.at(i));
            line << s.className() << ' ' << s.stateName() << '|' << s.description() << '|'
                 << (s.isKindOf(class_ProcessIcon) ? static_cast<ProcessIcon&>(s).variables() : String())
                 << " at " << s.posX() << ',' << s.posY();
        } else {
            TransitionLink& t = *CAST(TransitionLink, all.at(i));
            line << nodeName(t.from()) << " -> " << nodeName(t.to()) << ": " << t << " by";
            for (unsigned k = 0; k < t.points()->size(); ++k) line << ' ' << t.point(int(k));
        }
        lines.push_back(line.str());
    }
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

TEST(ShippedStateGraph, MachineHoldsTheGraphDrawnInCode) {
    StateGraphMaker g;
    machine(g);
    if (const char* folder = getenv("TARN_WRITE_EXAMPLES")) {
        g.save((std::string(folder) + "/machine.stg").c_str());
        return;
    }
    std::ifstream file(std::string(TARN_EXAMPLES) + "/machine.stg");
    String error;
    Object* read = readFromChecked(error, file);
    ASSERT_EQ(std::string(error.asCharPointer()), "");
    ArrayOb& drawing = *CAST(ArrayOb, read);
    ASSERT_TRUE(drawing[1]->isKindOf(class_StateGraphSem));
    Dictionary& icons = *CAST(Dictionary, drawing[0]);
    EXPECT_EQ(described(icons), described(g.icons()));
    deleteDrawing(icons, CAST(Semantic, drawing[1]));
    drawing[0] = drawing[1] = nil;
    read->deepDeleteContents();
    delete read;
}

}  // namespace
