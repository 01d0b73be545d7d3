// StateTransSem, the block diagram: inputs, outputs, blocks, sums and signal links, from which
// one state-space model is checked, built, analysed and saved.
#ifndef MODEL_STSEM_H
#define MODEL_STSEM_H

#include <memory>
#include <string>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/vector.h"
#include "editor/drawfile.h"
#include "gui/plot.h"
#include "model/bstsem.h"
#include "model/network.h"
#include "quill/orderedc.h"
#include "quill/random.h"

class BlockIcon;
class Dictionary;
class IntArray;
class InputSignalIcon;
class ModelNode;
class OutputSignalIcon;
class SignalLink;
class SumIcon;
class TitleIcon;

extern Class class_StateTransSem;

// The names that a built model carries: its inputs, outputs and states, and how the title's
// lists split the inputs into disturbances and controls and the outputs into objectives and
// measures. Without a split every input is a disturbance and every output an objective.
struct ModelNames {
    std::vector<std::string> inputs, outputs, states;
    // The blocks' initial states in the order of the states, zero where a block gives none.
    std::vector<double> initialState;
    int disturbances = 0, objectives = 0;
    bool isPure() const { return disturbances == int(inputs.size()) && objectives == int(outputs.size()); }
};

class StateTransSem : public BaseStateTransSem {
    DECLARE_MEMBERS(StateTransSem)
public:
    using Command = void (StateTransSem::*)();
    // A command of the menu: its text, mnemonic, accelerator and action.
    struct CommandRow {
        const char* text;
        const char* mnemonic;
        const char* accelerator;
        Command action;
    };

    StateTransSem();
    // Stream form: the base, the title, the collections inputs, outputs, blocks and sums, digits,
    // continuous, the sampling time, and the output weighting matrix when the stream holds it.
    StateTransSem(std::istream& is, Object* where);
    StateTransSem(BinIstream& is, Object* where);
    ~StateTransSem() noexcept(false) override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // The hooks of the graph editor.
    void setEditorSizes() override;
    OrderedCltn& iconNames(OrderedCltn& cltn) override;
    OrderedCltn& linkNames(OrderedCltn& cltn) override;
    OrderedCltn& initialIcons(OrderedCltn& cltn) override;
    IconNode* newIcon(const char* name, int menu, int entry) override;
    void fileCreated() override;
    int clampPosition(IconNode& icon, Point& point) override;
    const char* checkLink(IconNode& from, IconNode& to, const Class& linkClass, const FloatPoint& p1,
                          const FloatPoint& p2) override;
    void deleteIcon(IconNode* icon) override;
    const char* openIcon(IconNode& icon) override;
    int canPaste(const OrderedCltn& cltn) override;
    void iconInserted(IconNode& icon) override;
    void iconRemoved(IconNode& icon) override;
    void clearDrawing() override;
    IconNode* relinkTarget(IconArc& link, int end, IconNode& from, IconNode& to, const FloatPoint& p1,
                           const FloatPoint& p2, int flag) override;
    const Class& linkClass(const char* name) override;
    const char* fileExtension() override;
    void commandNames(OrderedCltn& cltn) override;
    const char* executeCommand(const char* name) override;

    // The checks of the drawing, reported on the error stream in their order; true when none
    // reported an error. With print, "Model consistency OK" ends a clean check.
    bool checkConsistency(bool print);
    // The model of the drawing as it stands after checkConsistency. With save it goes to its
    // model file (modelFile, or the title's name), with print its Matlab lines to the console;
    // a positive samplingTime discretises it. Names of the result: lastNames().
    std::unique_ptr<DynOp> buildSystem(bool save, bool print, double samplingTime = 0.0);
    const ModelNames& lastNames() const { return names; }
    // The Matlab lines of a model: its matrices, the names as comment lines, and the ss line.
    static void writeMatlab(std::ostream& os, const DynOp& model, const ModelNames& names);
    // The entries of an output weighting diagonal, separated by blanks or ";", as one row; a
    // text that is not numbers leaves message set.
    static Matrix parseDiagonal(const char* text, std::string& message);

    // Where buildSystem saves; empty for "<title name>[<period>].dyn" in the working directory.
    std::string modelFile;

    TitleIcon* titleIcon() const { return title; }
    bool isContinuous() const { return continuous != 0; }
    double systemSamplingTime() const { return samplingTime; }
    const OrderedCltn& blockIcons() const { return blocks; }

private:
    friend class DiagramBuilder;
    friend class ConsistencyCheck;

    void connectEvents(IconNode& icon, bool on);
    void iconChanging(Cback& cb);
    void iconChanged(Cback& cb);
    void askAnalyse(Cback& cb);
    void plotUpdate(Cback& cb);
    void readFields(std::istream& is);
    const char* insertBlock(BlockIcon& block);
    String systemLabel(double period) const;
    IconNode* blockFromWorkspace();
    void saveBuilt(const DynOp& model, double period);

    void replot();
    // The commands, each run inside the guard that reports a TarnException.
    void runCommand(Command command);
    void setTolerances();
    void setOutputWeighting();
    void setDiscrete();
    void setContinuous();
    void checkCommand();
    void generateModel();
    void generateTransferFunction();
    void saveModel();
    void saveDiscretized();
    void matlabFormat();
    void systemPoles();
    void plotResults();
    void poleAssignment();
    void stateObserver();
    void structureClosedLoop();
    void showVersion();
    void nothing();
    std::unique_ptr<DynOp> checkedModel();
    void designFeedback(bool control);
    void placeControl(const DynOp& model, const Matrix& poles, const IntArray& columns);
    void placeObserver(const DynOp& model, const Matrix& poles, const IntArray& rows);
    static void saveResult(const DynOp& system, const char* fileName);
    // Dialogues of rows of a label and a value, named name (else by their title); false when
    // cancelled or without a window.
    bool askValues(const char* title, std::vector<std::pair<const char*, String>>& rows,
                   const char* name = 0);
    bool askValue(const char* title, const char* label, String& value, const char* name = 0);
    void storeInWorkspace(const DynOp& model);

    static const CommandRow commands[];
    int digits = 1;
    int continuous = 1;
    double samplingTime = 0.0;
    RandomLinear randomSource;
    Matrix weightMatrix;
    TitleIcon* title = 0;
    Vector* identPoles = 0;
    Plot plot;
    OrderedCltn blocks, sums, inputs, outputs;
    ModelNames names;
};

// A block diagram file read without a window: its semantic with the icons it refers to, all
// owned until the end.
class DiagramFile {
public:
    explicit DiagramFile(const char* fileName);
    // Null when the file cannot be read or holds no block diagram; message() tells why.
    StateTransSem* semantic() const;
    const String& message() const { return message_; }

private:
    DrawingFile drawing;
    String message_;
};

#endif
