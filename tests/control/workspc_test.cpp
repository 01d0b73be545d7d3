// Workspace: the named store and its two lists, the Matlab script text, and model files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "../quill/killwrit.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

class WorkspaceTest : public ScratchTest {
protected:
    void TearDown() override {
        Workspace::closeMatlab();
        Workspace::setMatlabDirectory("");
        ScratchTest::TearDown();
    }
    std::string path(const char* name) const { return directory + "/" + name; }
};

// One disturbance, one control, one objective, one measure, with D12 and D21 not zero.
DynOp extended() {
    return DynOp(mat(1, 1, {-1}), mat(1, 2, {1, 1}), mat(2, 1, {1, 1}), mat(2, 2, {0, 1, 1, 0}), 1, 1);
}

TEST_F(WorkspaceTest, StoresCopiesAndListsNamesByKind) {
    Workspace w;
    DynOp plant = extended();
    w.store("plant", plant);
    w.store("gain", Matrix::diagonal(2, 1.0));
    ASSERT_EQ(w.extendedSystems().size(), 1u);
    EXPECT_TRUE(*w.extendedSystems()[0] == "plant");
    EXPECT_TRUE(w.get("plant")->isEqual(plant));
    EXPECT_NE(w.get("plant"), &plant);

    // A second object under a name replaces the first, in the store and in its list.
    w.store("plant", Matrix(1, 1));
    EXPECT_EQ(w.extendedSystems().size(), 0u);
    EXPECT_EQ(w.others().size(), 2u);
    EXPECT_TRUE(w.get("plant")->isKindOf(class_Matrix));
    w.store("gain", plant);
    EXPECT_TRUE(*w.extendedSystems()[0] == "gain");

    Object* missing = 0;
    EXPECT_EQ(consoleOf([&] { missing = w.get("other"); }), "the name doesn't exists\n");
    EXPECT_EQ(missing, nil);
}

TEST_F(WorkspaceTest, StructuralCheckWantsAPartitionedPlant) {
    EXPECT_TRUE(structuralCheck(extended()));
    EXPECT_TRUE(structuralCheck(DiscDynOp(extended(), true, 0.1)));
    EXPECT_FALSE(structuralCheck(DynOp(extended(), 0, 1, 0)));
    EXPECT_FALSE(structuralCheck(Matrix(2, 2)));
    DynOp noFeedthrough(mat(1, 1, {-1}), mat(1, 2, {1, 1}), mat(2, 1, {1, 1}), mat(2, 2, {0, 0, 1, 0}), 1, 1);
    EXPECT_FALSE(structuralCheck(noFeedthrough));
}

TEST_F(WorkspaceTest, MatlabScriptLines) {
    Workspace::setMatlabDirectory(directory.c_str());
    DynOp s(mat(1, 1, {-1}), mat(1, 1, {2}), mat(1, 1, {3}), mat(1, 1, {0.5}));
    Workspace::writeMatlab(s, "G", 0.1);
    Workspace::writeMatlab(DiscDynOp(s, true, 0.2), "H", 0.1);
    Workspace::writeMatlab(mat(1, 2, {1, 2}), "K");
    EXPECT_EQ(consoleOf([] { Workspace::writeMatlab(String("x"), "S"); }),
              "warning: component \"S\" has not been loaded\n");
    Workspace::writeMatlab(DynOp(mat(1, 1, {4})), "P");
    Workspace::closeMatlab();
    std::string matrix = [](double x) {
        std::ostringstream os;
        os << mat(1, 1, {x}).precision(16);
        return os.str();
    }(-1);
    std::string text = fileText(path("TarnOut.m"));
    std::string expectedStart = "AG = " + matrix + ";\n";
    EXPECT_EQ(text.substr(0, expectedStart.size()), expectedStart);
    for (const char* line :
         {"G = ss(AG,BG,CG,DG);\n", "G_D = c2d(G, 0.1, 'zho');\n", "[a_G, b_G, c_G, d_G] = ssdata(G_D);\n",
          "H = ss(AH,BH,CH,DH, 0.2);\n", "K  [\n               1                2\n];\n", "AP =  [\n];\n",
          "DP =  [\n               4\n];\n", "P = ss(AP,BP,CP,DP);\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
    EXPECT_EQ(text.find("H_D"), std::string::npos);

    // The script is made anew after closeMatlab.
    Workspace::writeMatlab(mat(1, 1, {7}), "M");
    Workspace::closeMatlab();
    EXPECT_EQ(fileText(path("TarnOut.m")), "M  [\n               7\n];\n");
}

// Both were written in place: a full disk or a killed process lost the old file.
TEST_F(WorkspaceTest, KilledWritersOfScriptsAndModelsLeaveTheOldFile) {
    Matrix big(100, 100);
    Workspace::setMatlabDirectory(directory.c_str());
    EXPECT_EQ(oldFileSurvives(path("TarnOut.m"),
                              [&] {
                                  Workspace::writeMatlab(big, "M");
                                  Workspace::closeMatlab();
                              }),
              "");
    EXPECT_EQ(
        oldFileSurvives(path("plant.dyn"),
                        [&] { consoleOf([&] { Algebra().storeToFile(big, path("plant.dyn").c_str()); }); }),
        "");
    std::string console = consoleOf([&] { Algebra().storeToFile(big, "/dev/full"); });
    EXPECT_EQ(console, "[CANNOT_WRITE] cannot write file /dev/full: No space left on device\n");
}

TEST_F(WorkspaceTest, MatlabWithoutDirectoryWarnsEachTime) {
    Workspace::setMatlabDirectory(path("absent").c_str());
    std::string warning = "Warning the working directory for Matlab doesn't exists\n";
    EXPECT_EQ(consoleOf([] { Workspace::writeMatlab(Matrix(1, 1), "M"); }), warning);
    EXPECT_EQ(consoleOf([] { Workspace::writeMatlab(Matrix(1, 1), "M"); }), warning);
    EXPECT_NE(access(path("absent/TarnOut.m").c_str(), F_OK), 0);
}

TEST_F(WorkspaceTest, ModelFilesReadBackOrAreRefused) {
    Algebra files;
    DiscDynOp discrete(extended(), true, 0.5);
    ASSERT_TRUE(files.storeToFile(discrete, path("plant.dyn").c_str()));
    ASSERT_TRUE(files.storeToFile(mat(2, 1, {1, 2}), path("m.mat").c_str()));
    ASSERT_TRUE(files.storeToFile(RationalFunction(), path("f.rat").c_str()));
    Object* read = Workspace::readModelFile(path("plant.dyn").c_str());
    EXPECT_TRUE(read->isEqual(discrete));
    delete read;
    read = Workspace::readModelFile(path("m.mat").c_str());
    EXPECT_TRUE(read->isKindOf(class_Matrix));
    delete read;
    read = Workspace::readModelFile(path("f.rat").c_str());
    EXPECT_TRUE(read->isKindOf(class_RationalFunction));
    delete read;

    // Another class under the extension, a damaged file, a missing one.
    std::rename(path("m.mat").c_str(), path("m.dyn").c_str());
    std::string console = consoleOf([&] { read = Workspace::readModelFile(path("m.dyn").c_str()); });
    EXPECT_EQ(read, nil);
    EXPECT_EQ(console, "[RDWRONGCLASS] Tried to read object of wrong class: expected DynOp, was Matrix\n");
    std::string text = fileText(path("plant.dyn"));
    std::ofstream(path("cut.dyn")) << text.substr(0, text.size() / 2);
    console = consoleOf([&] { read = Workspace::readModelFile(path("cut.dyn").c_str()); });
    EXPECT_EQ(read, nil);
    EXPECT_NE(console.find("[RD"), std::string::npos) << console;
    EXPECT_EQ(Workspace::readModelFile(path("none.dyn").c_str()), nil);
}

TEST(ExamplesTest, ShippedModelsReadBack) {
    std::string dir = TARN_EXAMPLES;
    Object* plant = Workspace::readModelFile((dir + "/twomass.dyn").c_str());
    ASSERT_TRUE(plant->isMemberOf(class_DynOp));
    EXPECT_TRUE(structuralCheck(*plant) == false);  // D12 and D21 are zero: a plant, not a design problem
    EXPECT_EQ(static_cast<DynOp*>(plant)->order(), 4u);
    Object* sampled = Workspace::readModelFile((dir + "/twomassd.dyn").c_str());
    ASSERT_TRUE(sampled->isMemberOf(class_DiscDynOp));
    DiscDynOp again(*static_cast<DynOp*>(plant), false, 0.05);
    const DiscDynOp& stored = *static_cast<DiscDynOp*>(sampled);
    EXPECT_EQ(stored.getSamplingTime(), 0.05);
    EXPECT_LT(Algebra().normF(stored.getA() - again.getA()) + Algebra().normF(stored.getB() - again.getB()),
              1e-14);
    Object* gain = Workspace::readModelFile((dir + "/gain.dyn").c_str());
    EXPECT_TRUE(static_cast<DynOp*>(gain)->isStaticGain());
    delete plant;
    delete sampled;
    delete gain;
}

}  // namespace
