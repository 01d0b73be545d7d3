// State transition graphs: a graph of every kind stored and read back, the dialogue rows of its
// nodes and links, self-loops and their spacing, and the text of a syntax report.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../quill/iotest.h"
#include "editor/drawfile.h"
#include "model/stevent.h"
#include "model/stgmake.h"
#include "quill/dictnary.h"
#include "quill/quillerr.h"
#include "texts.h"
#include "trellis/drawprim.h"

namespace {

// The member of the class among the icons, with the name given to it, or the only one.
template <class T>
T* find(const OrderedCltn& icons, const Class& cls, const char* name = 0) {
    for (unsigned i = 0; i < icons.size(); ++i) {
        if (!icons.at(i)->isMemberOf(cls)) continue;
        T* icon = static_cast<T*>(icons.at(i));
        if constexpr (std::is_base_of<StateIcon, T>::value)
            if (name && str(icon->stateName()) != name) continue;
        if constexpr (std::is_same<TransitionLink, T>::value)
            if (name && str(icon->firingRule()) != name) continue;
        return icon;
    }
    return nullptr;
}

std::vector<FloatPoint> pointsOf(const IconArc& link) {
    std::vector<FloatPoint> points;
    for (unsigned i = 0; i < link.points()->size(); ++i) points.push_back(link.point(int(i)));
    return points;
}

TEST(StateGraphStream, EveryKindReadsBackAsItWasDrawn) {
    StateGraphMaker g;
    StateIcon& idle = g.state("Idle", "waiting", 10, 10);
    ProcessIcon& ctl = g.process("Ctl", "the controller", "", 30, 10);
    g.transition(idle, ctl, "", "");
    g.transition(ctl, idle, "  go ", " x := 1", BottomSide, BottomSide);
    g.transition(idle, idle, "tick", "");

    std::string error;
    Dictionary* read = CAST(Dictionary, readText(storedText(g.icons()), &error));
    ASSERT_TRUE(error.empty()) << error;
    OrderedCltn icons = read->asOrderedCltn();
    StateIcon* state = find<StateIcon>(icons, class_StateIcon);
    ProcessIcon* process = find<ProcessIcon>(icons, class_ProcessIcon);
    ASSERT_TRUE(state && process);
    EXPECT_EQ(str(state->stateName()), "Idle");
    EXPECT_EQ(str(state->description()), "waiting");
    EXPECT_EQ(str(process->stateName()), "Ctl");
    EXPECT_EQ(str(process->variables()), "");
    EXPECT_EQ(state->position(), Point(10, 10));

    TransitionLink* empty = find<TransitionLink>(icons, class_TransitionLink, "");
    TransitionLink* go = find<TransitionLink>(icons, class_TransitionLink, "go");
    TransitionLink* tick = find<TransitionLink>(icons, class_TransitionLink, "tick");
    ASSERT_TRUE(empty && go && tick);
    EXPECT_EQ(str(go->actions()), "x := 1");
    std::ostringstream printed;
    printed << *go << "|" << *tick << "|" << *empty;
    EXPECT_EQ(printed.str(), "go, x := 1|tick, |");
    empty->update();
    EXPECT_EQ(str(empty->iconLabel()->text), "");
    EXPECT_EQ(str(go->iconLabel()->text), "go, x := 1");
    EXPECT_EQ(pointsOf(*tick),
              pointsOf(*find<TransitionLink>(g.icons().asOrderedCltn(), class_TransitionLink, "tick")));
    deleteDrawing(*read, new StateGraphSem);
}

TEST(StateGraphStream, EventPrintsItsTimeAndKeepsItsState) {
    String state("Idle");
    StateTransEvent event(2.5, &state);
    std::ostringstream printed;
    printed << event;
    EXPECT_EQ(printed.str(), "Event at        2.5");
    Object* read = readText(storedText(event));
    ASSERT_TRUE(read && read->isKindOf(class_StateTransEvent));
    StateTransEvent* back = static_cast<StateTransEvent*>(read);
    EXPECT_EQ(back->time(), 2.5);
    EXPECT_EQ(str(*CAST(String, back->state())), "Idle");
    EXPECT_EQ(back->event(), nil);
    delete back->state();
    delete back;
}

TEST(StateGraphDialogue, RowsOfEachKindAndWhatConfirmKeeps) {
    StateIcon state;
    ProcessIcon process;
    TransitionLink link;
    OrderedCltn points;
    points.add(*new FloatPoint(0, 0));
    points.add(*new FloatPoint(4, 0));
    link.setPoints(points);
    struct Case {
        IconNode* icon;
        std::vector<std::string> labels, entered, kept;
    } cases[] = {
        {&state, {"State  Name", "Description"}, {" Idle ", "d"}, {" Idle ", "d"}},
        {&process, {"Process Name", "Description", "Variables"}, {"P", "", "a\nb "}, {"P", "", "a\nb "}},
        {&link, {"Firing Rule", "Actions"}, {" x > 1 ", " y := 0"}, {"x > 1", "y := 0"}},
    };
    for (Case& c : cases) {
        SCOPED_TRACE(c.labels[0]);
        OrderedCltn labels, values;
        int count = -1, status = 0;
        EXPECT_EQ(iconParameters(*c.icon, 0, labels, values, count), 1);
        EXPECT_EQ(texts(labels), c.labels);
        EXPECT_EQ(count, 0);
        values.deleteContents();
        for (const std::string& v : c.entered) values.add(*new String(v.c_str()));
        EXPECT_EQ(str(checkParameters(*c.icon, 0, values, status)), "");
        EXPECT_EQ(status, 1);
        labels.deleteContents();
        iconParameters(*c.icon, 1, labels, values, count);
        values.deleteContents();
        iconParameters(*c.icon, 0, labels, values, count);
        EXPECT_EQ(texts(values), c.kept);
        labels.deleteContents();
        values.deleteContents();
    }
}

TEST(StateGraphRoutes, SelfLoopsRiseOverTheTopAndSpreadOut) {
    StateGraphMaker g;
    StateIcon& s = g.state("S", "", 20, 20);
    TransitionLink& loop = g.transition(s, s, "a", "");
    std::vector<FloatPoint> first = pointsOf(loop);
    std::vector<FloatPoint> second = pointsOf(g.transition(s, s, "b", ""));
    ASSERT_EQ(first.size(), 5u);
    ASSERT_EQ(second.size(), 5u);
    for (const std::vector<FloatPoint>* loop : {&first, &second}) {
        EXPECT_EQ(loop->front().y(), 20);
        EXPECT_EQ(loop->back().y(), 20);
        EXPECT_LT(loop->front().x(), loop->back().x());
        EXPECT_EQ((*loop)[2].x(), 24);  // centred on the node
    }
    EXPECT_EQ(first[1].y(), 19);
    // The text stands centred over the loop's top.
    const DrawString& text = *loop.iconLabel();
    EXPECT_FLOAT_EQ(text.x + text.width / 2, 24);
    EXPECT_LT(text.y + text.height, 19);
    // One step further out: wider by half a cell each side, higher by the node's height.
    EXPECT_EQ(second[1].y(), first[1].y() - 2);
    EXPECT_EQ(second.front().x(), first.front().x() - 0.5);
    EXPECT_EQ(second.back().x(), first.back().x() + 0.5);

    // Loops left behind by a move are counted, but no longer centre the new one.
    Polyline stale{FloatPoint(1, 1), FloatPoint(1, 0), FloatPoint(2, 0), FloatPoint(3, 0), FloatPoint(3, 1)};
    Polyline moved = selfRoute(FloatRect(40, 40, 8, 2), {stale});
    EXPECT_EQ(moved[2], FloatPoint(44, 37));
}

TEST(StateGraphSyntax, ReportJoinsProcessExpectedFoundAndRest) {
    std::string text = str(StateGraphSem::syntaxText("Ctl", ";", ")", "x := 1"));
    EXPECT_EQ(text, "Syntax error in process Ctl\n\n Expected: ;\n\n Was: )\n\n Rest Of Line\nx := 1");
    std::ostringstream reports;
    ErrorReportHook hook = errorReportHook;
    errorReportHook = 0;
    setReportStreams(&reports, 0);
    StateGraphSem().reportSyntax("Ctl", ";", ")", "x := 1");
    setReportStreams(0, &std::cerr);
    errorReportHook = hook;
    EXPECT_NE(reports.str().find(text), std::string::npos) << reports.str();
}

}  // namespace
