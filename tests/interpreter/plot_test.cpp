// The language's plot: refused without the window system and for values without a system, and the
// system, title and initial condition that reach the installed opener.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "control/dynop.h"
#include "interpreter/algvar.h"
#include "numtext.h"
#include "quill/orderedc.h"

namespace {

// What the opener was given at each plot.
struct Opening {
    Object* plot;
    unsigned order;
    bool discrete;
    std::string title;
    std::vector<double> initial;
};
std::vector<Opening> openings;

Object* recordOpening(Object* plot, const DynOp& s, Vector& x0, const char* title) {
    std::vector<double> initial;
    for (unsigned i = 0; i < x0.size(); ++i) initial.push_back(x0[i]);
    openings.push_back(Opening{plot, s.order(), s.isDiscreteTime(), title, initial});
    return plot ? plot : new OrderedCltn;
}

// Installs the recording opener for a scope.
class RecordedOpener {
public:
    RecordedOpener() : former(setPlotOpener(recordOpening)) { openings.clear(); }
    ~RecordedOpener() { setPlotOpener(former); }

private:
    PlotOpener former;
};

TEST(PlotTest, refusedWithoutWindowsAndForValuesWithoutASystem) {
    struct Case {
        bool windows;
        const char* statements;
        const char* message;
    } cases[] = {
        {false, "DynOp G;\nG = 1/(s+1); G.plot();",
         "[PARSE ERROR] Run time error, plot needs the window system"},
        {true, "Matrix M(2, 2);\nM.plot();", "[PARSE ERROR] Run time error, a Matrix cannot be plotted"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.statements);
        std::unique_ptr<RecordedOpener> opener(c.windows ? new RecordedOpener : 0);
        ProgramRun refused = runMain(c.statements);
        EXPECT_TRUE(failsWith(refused, c.message)) << refused.message;
    }
}

TEST(PlotTest, systemsAndTransferFunctionsReachTheOpenerWithTheirInitialCondition) {
    RecordedOpener opener;
    ProgramRun run = runMain(
        "DynOp G;\nG = 1/(s*s+3*s+2);\nVector v(2, 1.0);\nv(1) = 2;\nG.setInitialCondition(v);\n"
        "G.plot(); G.plot();\n"
        "RationalFunction H;\nH = 1/(z-0.5);\nH.plot();");
    ASSERT_EQ(run.message, "");
    ASSERT_EQ(openings.size(), 3u);
    EXPECT_EQ(openings[0].plot, nullptr);
    EXPECT_EQ(openings[0].title, "G");
    EXPECT_EQ(openings[0].order, 2u);
    EXPECT_EQ(openings[0].initial, (std::vector<double>{1, 2}));
    EXPECT_NE(openings[1].plot, nullptr);  // the plot made at the first call, kept by the value
    EXPECT_TRUE(openings[2].discrete);
    EXPECT_EQ(openings[2].initial.size(), 1u);
}

}  // namespace
