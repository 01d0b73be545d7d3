// StateTransSem: the block diagram's fields, stream form, the hooks of the graph editor and the
// events of its icons.
#include "model/stsem.h"

#include <cmath>
#include <cstring>
#include <iostream>

#include "algebra/shortnum.h"
#include "control/discdyn.h"
#include "control/workspc.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconlist.h"
#include "model/blockicon.h"
#include "model/modeldata.h"
#include "model/signlink.h"
#include "model/termicon.h"
#include "model/titleicon.h"
#include "quill/cback.h"
#include "quill/dictnary.h"
#include "quill/filename.h"
#include "quill/objio.h"
#include "trellis/drawarea.h"
#include "trellis/resource.h"

DEFINE_CLASS(StateTransSem, BaseStateTransSem, 1, 0)

namespace {

const int boardWidth = 150, boardHeight = 110;
const Symbol* const iconEvents[] = {&IconChanging, &IconChanged, &AskAnalyse};

}  // namespace

StateTransSem::StateTransSem() : randomSource(50, 100, 9676722), weightMatrix(Matrix::diagonal(1, 1.0)) {
    setWidth(boardWidth);
    setHeight(boardHeight);
}

StateTransSem::StateTransSem(std::istream& is, Object* where)
    : BaseStateTransSem(is, where), randomSource(50, 100, 9676722), weightMatrix(Matrix::diagonal(1, 1.0)) {
    readFields(is);
}

StateTransSem::StateTransSem(BinIstream& is, Object* where)
    : BaseStateTransSem(is, where), randomSource(50, 100, 9676722), weightMatrix(Matrix::diagonal(1, 1.0)) {
    Object* read = readFrom(is);
    title = read != nil && read->isKindOf(class_TitleIcon) ? CAST(TitleIcon, read) : 0;
    for (OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) readFrom(is, class_OrderedCltn, c);
    is >> digits >> continuous >> samplingTime;
    readFrom(is, class_Matrix, &weightMatrix);
    if (title) connectEvents(*title, true);
    plot.addCback(PlotUpdateRequest, cbackMethod<&StateTransSem::plotUpdate>, *this);
}

void StateTransSem::readFields(std::istream& is) {
    Object* read = readFrom(is);
    title = read != nil && read->isKindOf(class_TitleIcon) ? CAST(TitleIcon, read) : 0;
    for (OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) readFrom(is, class_OrderedCltn, c);
    is >> digits >> continuous >> samplingTime;
    is >> std::ws;
    // Files written before the output weighting end here.
    if (is.peek() != std::char_traits<char>::eof()) readFrom(is, class_Matrix, &weightMatrix);
    if (title) connectEvents(*title, true);
    plot.addCback(PlotUpdateRequest, cbackMethod<&StateTransSem::plotUpdate>, *this);
}

StateTransSem::~StateTransSem() noexcept(false) {
    for (OrderedCltn* c : {&blocks, &sums, &inputs, &outputs})
        for (unsigned i = 0; i < c->size(); ++i) connectEvents(*CAST(IconNode, c->at(i)), false);
    if (title) connectEvents(*title, false);
    plot.removeCback(PlotUpdateRequest, cbackMethod<&StateTransSem::plotUpdate>, *this);
    delete identPoles;
    for (OrderedCltn* c : {&blocks, &sums, &inputs, &outputs}) c->removeAll();
}

void StateTransSem::storer(std::ostream& os) const {
    BaseStateTransSem::storer(os);
    (title ? static_cast<const Object*>(title) : nil)->storeOn(os);
    for (const OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) c->storeOn(os);
    os << digits << ' ' << continuous << ' ' << samplingTime << ' ';
    weightMatrix.storeOn(os);
}

void StateTransSem::storer(BinOstream& os) const {
    BaseStateTransSem::storer(os);
    (title ? static_cast<const Object*>(title) : nil)->storeOn(os);
    for (const OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) c->storeOn(os);
    os << digits << continuous << samplingTime;
    weightMatrix.storeOn(os);
}

// ---------------------------------------------------------------- events of the icons

void StateTransSem::connectEvents(IconNode& icon, bool on) {
    static const CbackMethod handlers[] = {cbackMethod<&StateTransSem::iconChanging>,
                                           cbackMethod<&StateTransSem::iconChanged>,
                                           cbackMethod<&StateTransSem::askAnalyse>};
    for (int i = 0; i < 3; ++i) {
        icon.removeCback(*iconEvents[i], handlers[i], *this);
        if (on) icon.addCback(*iconEvents[i], handlers[i], *this);
    }
}

void StateTransSem::iconChanging(Cback&) {
    std::cout << "title changing" << std::endl;
    if (editable()) graphEditor()->setChanged(graphEditor()->isChanged());
}

void StateTransSem::askAnalyse(Cback&) { std::cout << "title changed in askAnalyse" << std::endl; }

void StateTransSem::iconChanged(Cback&) {
    if (!title) return;
    double period = title->samplingTime();
    if (period > 0) {
        continuous = 0;
        samplingTime = period;
    }
    if (graphEditor()) setModified(true);
}

// ---------------------------------------------------------------- hooks of the editor

void StateTransSem::setEditorSizes() {
    bool shower = graphEditor()->isReadOnly();
    const char* prefix = shower ? "stateTransShower" : "stateTransEditor";
    auto size = [prefix](const char* what, int value) {
        return integerResource((std::string(prefix) + what).c_str(), value);
    };
    graphEditor()->gui().setDrawSizes(size("DrawWidth", shower ? 500 : 600), size("DrawHeight", 450),
                                      size("MinWidth", shower ? 650 : 350),
                                      size("MinHeight", shower ? 550 : 300));
}

OrderedCltn& StateTransSem::iconNames(OrderedCltn& cltn) {
    for (const char* name : {"Input", "Output", "Block", "Block from Menu", "Block from Workspace", "Sum"})
        cltn.add(*new String(name));
    return cltn;
}

OrderedCltn& StateTransSem::linkNames(OrderedCltn& cltn) {
    cltn.add(*new String("Signal"));
    return cltn;
}

OrderedCltn& StateTransSem::initialIcons(OrderedCltn& cltn) {
    String base = graphEditor() ? ::baseName(graphEditor()->baseName().asCharPointer()) : String("");
    title = new TitleIcon(base.asCharPointer());
    title->setPosition(Point(71, 53));
    connectEvents(*title, true);
    cltn.add(*title);
    if (graphEditor()) graphEditor()->gui().drawArea().setOrigin(FloatPoint(0.3 * width(), 0.3 * height()));
    return cltn;
}

IconNode* StateTransSem::newIcon(const char* name, int, int) {
    if (strcmp(name, "Input") == 0) return new InputSignalIcon;
    if (strcmp(name, "Output") == 0) return new OutputSignalIcon;
    if (strcmp(name, "Sum") == 0) return new SumIcon;
    if (strcmp(name, "Block") == 0) {
        if (!title) {
            showWarning("Warning, the editor has not been initialized");
            return 0;
        }
        return new BlockIcon;
    }
    if (strcmp(name, "Block from Menu") == 0) {
        BlockIcon* block = new BlockIcon(true);
        if (block->chooseBlockFile()) return block;
        delete block;
        return 0;
    }
    if (strcmp(name, "Block from Workspace") == 0) return blockFromWorkspace();
    return 0;
}

// Asks the name of a workspace object: a Matrix makes a constant block, a system a dynamic one.
IconNode* StateTransSem::blockFromWorkspace() {
    String name;
    if (!askValue("Block from Workspace", "Workspace name", name)) return 0;
    Object* object = globalWorkspace().get(name.asCharPointer());
    BlockIcon* block = 0;
    if (object && object->isKindOf(class_DynOp)) {
        block = new BlockIcon;
        block->setFromOperator(*CAST(DynOp, object), name.asCharPointer());
    } else if (object && object->isKindOf(class_Matrix)) {
        block = new BlockIcon;
        block->setFromGain(*CAST(Matrix, object), name.asCharPointer(), continuous ? 0.0 : samplingTime);
    } else {
        showWarning("Warning, the object is of wrong type");
    }
    return block;
}

// A drawing begun before it had a file takes the file's name for its title.
void StateTransSem::fileCreated() {
    GraphEditor* editor = graphEditor();
    if (!title || !editor || title->titleName() != "no-file" || editor->baseName() == "no-file") return;
    title->unbuildIcon();
    title->setTitleName(::baseName(editor->baseName().asCharPointer()));
    title->buildIcon();
    editor->gui().refresh();
}

int StateTransSem::clampPosition(IconNode& icon, Point& point) {
    if (!icon.isKindOf(class_TitleIcon)) return BaseStateTransSem::clampPosition(icon, point);
    point.x(std::max(1, std::min(point.x(), width() - 9)));
    point.y(std::max(1, std::min(point.y(), height() - 3)));
    return 1;
}

const char* StateTransSem::checkLink(IconNode& from, IconNode& to, const Class&, const FloatPoint&,
                                     const FloatPoint&) {
    static String message;
    if (from.isKindOf(class_OutputSignalIcon)) return "From an output icon cannot start a link";
    if (to.isKindOf(class_InputSignalIcon)) return "To an input icon cannot arrive a link";
    if (to.isKindOf(class_BlockIcon) || to.isKindOf(class_OutputSignalIcon)) {
        OrderedCltn incoming;
        if (!to.fromLinks(incoming).isEmpty()) {
            message =
                String("Icon ") + static_cast<ModelNode&>(to).nodeName() + " allows only one input link";
            return message.asCharPointer();
        }
    }
    return 0;
}

// Disconnected and taken out of the collections, which must never hold a deleted icon.
void StateTransSem::deleteIcon(IconNode* icon) {
    if (icon) iconRemoved(*icon);
    delete icon;
}

const char* StateTransSem::openIcon(IconNode& icon) {
    if (!icon.isKindOf(class_BlockIcon) || !static_cast<BlockIcon&>(icon).isDynamic()) return 0;
    std::unique_ptr<DynOp> model(static_cast<BlockIcon&>(icon).blockOperator());
    std::cout << static_cast<BlockIcon&>(icon).nodeName().asCharPointer() << " " << *model << std::endl;
    return 0;
}

namespace {

// A title, block, input, output or sum.
bool isDiagramNode(const Object& o) {
    for (const Class* c : {&class_BlockIcon, &class_TitleIcon, &class_InputSignalIcon,
                           &class_OutputSignalIcon, &class_SumIcon})
        if (o.isMemberOf(*c)) return true;
    return false;
}

}  // namespace

int StateTransSem::canPaste(const OrderedCltn& cltn) {
    for (unsigned i = 0; i < cltn.size(); ++i)
        if (!isDiagramNode(*cltn.at(i)) && !cltn.at(i)->isMemberOf(class_SignalLink)) return 0;
    return 1;
}

void StateTransSem::iconInserted(IconNode& icon) {
    connectEvents(icon, true);
    if (icon.isKindOf(class_InputSignalIcon) && !holdsSame(inputs, icon)) inputs.add(icon);
    if (icon.isKindOf(class_OutputSignalIcon) && !holdsSame(outputs, icon)) outputs.add(icon);
    if (icon.isKindOf(class_SumIcon) && !holdsSame(sums, icon)) sums.add(icon);
    if (icon.isKindOf(class_TitleIcon) && !title) title = CAST(TitleIcon, &icon);
    if (!icon.isKindOf(class_BlockIcon) || holdsSame(blocks, icon)) return;
    const char* refusal = insertBlock(static_cast<BlockIcon&>(icon));
    if (refusal && graphEditor()) showError(refusal);
    blocks.add(icon);
}

// The first block sets the system's label; a later one must be of the same time domain.
const char* StateTransSem::insertBlock(BlockIcon& block) {
    static String message;
    if (blocks.isEmpty()) {
        continuous = block.isDiscrete() ? 0 : 1;
        samplingTime = block.isDiscrete() ? block.samplingTime() : 0.0;
        if (title) title->setSystemLabel(systemLabel(samplingTime).asCharPointer());
        return 0;
    }
    const char* reason = 0;
    if (block.isDiscrete() && continuous)
        reason = " is discrete, this system is continuous,\nthe new block has to be deleted";
    else if (!block.isDiscrete() && !continuous)
        reason = " is continuous, this system is discrete,\nthe new block has to be deleted";
    else if (block.isDiscrete() && std::fabs(block.samplingTime() - samplingTime) > 1e-12 * samplingTime)
        reason = " has a different sampling period than this system one,\nthe new block has to be deleted";
    if (!reason) return 0;
    message = String("The new block \"") + block.nodeName() + "\"" + reason;
    return message.asCharPointer();
}

String StateTransSem::systemLabel(double period) const {
    if (period <= 0) return "Continuous System";
    return String("Discrete System ") + shortNumber(period).c_str();
}

void StateTransSem::iconRemoved(IconNode& icon) {
    connectEvents(icon, false);
    if (!isDiagramNode(icon) && !icon.isKindOf(class_IconArc))
        std::cerr << icon.name().asCharPointer() << " a class icon" << std::endl;
    if (&icon == title) title = 0;
    for (OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) dropSame(*c, icon);
}

void StateTransSem::clearDrawing() {
    BaseStateTransSem::clearDrawing();
    if (!title) return;
    connectEvents(*title, false);
    title = 0;
    for (OrderedCltn* c : {&inputs, &outputs, &blocks, &sums}) c->removeAll();
}

IconNode* StateTransSem::relinkTarget(IconArc&, int, IconNode&, IconNode&, const FloatPoint&,
                                      const FloatPoint& p2, int) {
    IconNode* nearest = 0;
    double best = 0;
    for (OrderedCltn* c : {&inputs, &outputs, &blocks, &sums})
        for (unsigned i = 0; i < c->size(); ++i) {
            ModelNode& node = *CAST(ModelNode, c->at(i));
            FloatPoint at = node.linkToPoint(p2, p2);
            double d = std::hypot(at.x() - p2.x(), at.y() - p2.y());
            if (!nearest || d < best) {
                nearest = &node;
                best = d;
            }
        }
    return nearest;
}

const Class& StateTransSem::linkClass(const char*) { return class_SignalLink; }

const char* StateTransSem::fileExtension() { return ".bdg"; }

// ---------------------------------------------------------------- the model file without a window

DiagramFile::DiagramFile(const char* fileName) : drawing(fileName), message_(drawing.message()) {
    if (drawing.semantic() && !semantic()) message_ = String("Bad ArrayOb in file ") + fileName;
}

StateTransSem* DiagramFile::semantic() const {
    Semantic* read = drawing.semantic();
    return read && read->isKindOf(class_StateTransSem) ? static_cast<StateTransSem*>(read) : 0;
}
