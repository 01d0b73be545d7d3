// BlockIcon, a node of the block diagram that holds a linear model given by the texts of its four matrices.
#ifndef MODEL_BLOCKICON_H
#define MODEL_BLOCKICON_H

#include <string>
#include <vector>

#include "algebra/matrix.h"
#include "model/modeldata.h"
#include "model/modelnode.h"

class Cback;
class DynOp;

extern Class class_BlockIcon;

// The model is kept as text (blockData) and turned into an operator on
// demand. A block loaded from a ".dyn" file ("Block from Menu") or taken from
// the workspace holds the operator's matrices printed to 17 digits.
class BlockIcon : public ModelNode {
    DECLARE_MEMBERS(BlockIcon)
public:
    explicit BlockIcon(bool fromMenu = false);
    // Stream form: ModelNode's, then the file name, the model data, the
    // discrete flag and the sampling time. A stream that ends after the model
    // data is an older, continuous block.
    BlockIcon(std::istream& is, Object* where);
    BlockIcon(BinIstream& is, Object* where);
    ~BlockIcon() noexcept(false) override;

    // A new DynOp, or DiscDynOp for a discrete block; the caller owns it.
    // A matrix whose sizes do not fit is reported on the error stream and
    // left out: the operator keeps what is valid. An empty or zero A with a
    // zero B makes a pure gain.
    DynOp* blockOperator();
    // The initial state as a column of the block's order; a text of another
    // length is reported on the error stream and gives an empty matrix.
    Matrix initialStateVector();
    bool isDiscrete() const { return discrete != 0; }
    double samplingTime() const { return samplingTime_; }
    void setSampling(bool isDiscrete, double samplingTime);
    // The block has states: its A is neither empty nor zero.
    bool isDynamic();
    ModelData& blockData() { return blockData_; }
    const String& initialState() const { return blockData_.x0Text; }
    const String& blockFile() const { return blockFile_; }
    bool isFromMenu() const { return fromMenu != 0; }
    bool isWorkspaceLinked() const { return workspaceLinked != 0; }
    void setWorkspaceLinked(bool flag) { workspaceLinked = flag; }
    bool isFileLoaded() const { return fileLoaded != 0; }

    // Takes the operator's matrices (17 significant digits), its dimensions
    // and its time domain; name becomes the block's name.
    void setFromOperator(const DynOp& op, const char* name);
    // A constant block of gain D, discrete when samplingTime is positive.
    void setFromGain(const Matrix& D, const char* name, double samplingTime);
    // Reads a DynOp (or DiscDynOp, ExtendedSystem) from the file: null, or
    // the message, which also goes to the error stream. The file's base name
    // becomes the block's name and joins usedNames.
    const char* loadBlockFile(const char* fileName);
    // The file window, opened in the folder of HOME: false when the user
    // cancels or the file is refused.
    bool chooseBlockFile();
    // FileMenuLoad of the loader's window: the file named by the event's data.
    void fileChosen(Cback& cb);
    // The names of the blocks loaded from files, in order.
    static std::vector<std::string>& usedNames();

    // Rows: name, A, B, C, D, X0 and the dimensions (shown, not read back).
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // A model whose matrices do not fit is an error the user may ignore.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    void drawIcon() override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    void applyEntries();
    // The size faults of the model's matrices as quoted parts of a dialogue's
    // message; empty when they fit.
    static String sizeMessage(const ModelData& data);

    int fromMenu = 0;
    int workspaceLinked = 0;
    String nameEntry, aEntry, bEntry, cEntry, dEntry, x0Entry;
    String blockFile_;
    ModelData blockData_;
    double samplingTime_ = 0.0;
    int discrete = 0;
    int fileLoaded = 0;
    String loadMessage;
};

#endif
