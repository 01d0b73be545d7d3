// Block diagrams made in code, as the editor makes them: icons placed and inserted into the
// semantic, links routed between them and given their dialogue's values. Examples, tests and
// benchmarks draw with it.
#ifndef MODEL_DIAGMAKE_H
#define MODEL_DIAGMAKE_H

#include <string>

#include "model/blockicon.h"
#include "model/signlink.h"
#include "model/stsem.h"
#include "model/termicon.h"
#include "model/titleicon.h"
#include "quill/dictnary.h"

class Semantic;

// Writes a drawing made in code as the editor stores it: its icons, its semantic and a view
// opened at three tenths of the board.
void saveDrawing(const char* fileName, Dictionary& icons, Semantic& semantic);

class DiagramMaker {
public:
    explicit DiagramMaker(const char* name = "Model");
    ~DiagramMaker();
    DiagramMaker(const DiagramMaker&) = delete;
    DiagramMaker& operator=(const DiagramMaker&) = delete;

    StateTransSem& semantic() { return *sem; }
    TitleIcon& title() { return *title_; }
    InputSignalIcon& input(const char* name, int dim, int x, int y);
    OutputSignalIcon& output(const char* name, int x, int y);
    SumIcon& sum(const char* name, int x, int y);
    BlockIcon& block(const char* name, const DynOp& system, int x, int y);
    // Where a link enters its destination: the left side, or from above or below for a link
    // that runs back.
    enum Entry { FromLeft, FromAbove, FromBelow };
    // A link as its dialogue sets it: name, sign ("-" or empty) and multiplexing.
    SignalLink& link(ModelNode& from, ModelNode& to, const char* sign = "", const char* mux = "",
                     const char* name = "", Entry entry = FromLeft);

    // The model after the check; the check's reports land in reports instead of the error stream.
    std::unique_ptr<DynOp> build(std::string* reports = 0);
    // The drawing as the editor stores it.
    void save(const char* fileName);

private:
    void place(ModelNode& node, const char* name, int x, int y);

    StateTransSem* sem;
    TitleIcon* title_;
    Dictionary* icons;
};

#endif
