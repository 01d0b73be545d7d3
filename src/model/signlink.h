// SignalLink, the link of a block diagram: a named vector signal with a sign and an optional multiplexing.
#ifndef MODEL_SIGNLINK_H
#define MODEL_SIGNLINK_H

#include "control/muxparse.h"
#include "model/sttrlink.h"

class ModelNode;

extern Class class_SignalLink;

// The signal runs from outputs of the source node to inputs of the
// destination. The multiplexing text "dest range,source range" routes part
// of the source's outputs to part of the destination's inputs. Wrong indices
// and dimensions that do not match are warnings on the error stream: the
// consistency check of the diagram is where they count.
class SignalLink : public StateTransLink {
    DECLARE_MEMBERS(SignalLink)
public:
    SignalLink() {}
    // Stream form: StateTransLink's, then the name, the sign, the signal
    // dimension, the multiplexing and the input and output dimensions. Older
    // streams end after the signal dimension or after the multiplexing.
    SignalLink(std::istream& is, Object* where);
    SignalLink(BinIstream& is, Object* where);
    ~SignalLink() noexcept(false) override;

    String signalName() const { return signalName_; }
    String sign() const { return sign_; }
    String multiplexing() const { return multiplexing_; }
    // -1 for the sign "-", else +1.
    int signValue() const;
    int signalDimension() const { return signalDimension_; }
    void setSignalDimension(int n) { signalDimension_ = n; }
    bool isSettled() const { return settled != 0; }
    void setSettled(bool flag) { settled = flag; }
    bool hasMultiplexing() const { return multiplexing_.size() > 0; }
    // The source's outputs and the destination's inputs, as last seen.
    void setInputDimension(int n) { inputDimension_ = n; }
    void setOutputDimension(int n) { outputDimension_ = n; }
    int inputDimension() const { return inputDimension_; }
    int outputDimension() const { return outputDimension_; }
    // Whether both indices of the source (destination) range are at most n.
    bool checkSourceIndices(int n);
    bool checkDestIndices(int n);
    // The ranges of the multiplexing, 1-based; 0 when it cannot be read.
    void sourceIndices(int& first, int& last);
    void destIndices(int& first, int& last);
    void allIndices(int& sf, int& sl, int& df, int& dl);

    // Rows: name, sign, multiplexing and the dimensions (shown only). Mode 1
    // takes the entries and works out the dimensions from the end nodes,
    // giving a dimension to an end that has none.
    int iconParameters(int mode, OrderedCltn& labels, OrderedCltn& values, int& count) override;
    // The same for a link of which only the source end is a model node: the
    // link's own dimension is compared with the node's.
    int iconParametersTo(int mode, OrderedCltn& labels, OrderedCltn& values, int& count);
    // Stores the entries; a multiplexing narrower than the inputs of the
    // destination block is refused with the advice to use a sum.
    String checkParameters(int mode, const OrderedCltn& values, int& status) override;
    String& iconDescription(String& result) override;
    bool hasComment() override;
    void buildIcon() override;
    // The name, and under it the lines of the multiplexing.
    void defaultComment() override;

    void printOn(std::ostream& os) const override;  // name, sign, multiplexing, dimension
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    Multiplexing parsed() const;
    void fillRows(OrderedCltn& labels, OrderedCltn& values, int& count) const;
    void takeEntries();
    void applyMultiplexing(ModelNode* source, ModelNode* dest);
    void applyWhole(ModelNode* source, ModelNode* dest);
    void addCommentLine(const String& text, int line);

    String nameEntry, signEntry, muxEntry;
    int signalDimension_ = 0;
    int inputDimension_ = 0;
    int outputDimension_ = 0;
    int settled = 0;
    String signalName_;
    String sign_;
    String multiplexing_;
};

#endif
