// DiagramMaker: block diagrams made in code.
#include "model/diagmake.h"

#include <fstream>
#include <iostream>
#include <sstream>

#include "quill/arrayob.h"
#include "quill/integer.h"

DiagramMaker::DiagramMaker(const char* name)
    : sem(new StateTransSem), title_(new TitleIcon(name)), icons(new Dictionary) {
    title_->setPosition(Point(71, 53));
    title_->update();
    icons->add(*title_);
    sem->iconInserted(*title_);
}

DiagramMaker::~DiagramMaker() { deleteDrawing(*icons, sem); }

void DiagramMaker::place(ModelNode& node, const char* name, int x, int y) {
    node.setNodeName(name);
    node.setPosition(Point(x, y));
    node.update();
    icons->add(node);
    sem->iconInserted(node);
}

InputSignalIcon& DiagramMaker::input(const char* name, int dim, int x, int y) {
    InputSignalIcon* in = new InputSignalIcon;
    in->setOutputDimension(dim);
    place(*in, name, x, y);
    return *in;
}

OutputSignalIcon& DiagramMaker::output(const char* name, int x, int y) {
    OutputSignalIcon* out = new OutputSignalIcon;
    place(*out, name, x, y);
    return *out;
}

SumIcon& DiagramMaker::sum(const char* name, int x, int y) {
    SumIcon* s = new SumIcon;
    place(*s, name, x, y);
    return *s;
}

BlockIcon& DiagramMaker::block(const char* name, const DynOp& system, int x, int y) {
    BlockIcon* b = new BlockIcon;
    b->setFromOperator(system, name);
    place(*b, name, x, y);
    return *b;
}

SignalLink& DiagramMaker::link(ModelNode& from, ModelNode& to, const char* sign, const char* mux,
                               const char* name, Entry entry) {
    SignalLink* l = new SignalLink;
    FloatRect a = from.box(), b = to.box();
    FloatPoint p1(a.x() + a.width(), a.y() + a.height() / 2), p2(b.x(), b.y() + b.height() / 2);
    if (entry != FromLeft)
        p2 = FloatPoint(b.x() + b.width() / 2, entry == FromAbove ? b.y() : b.y() + b.height());
    delete sem->placeLink(*l, from, to, p1, p2);
    from.addToLink(*l);
    to.addFromLink(*l);
    l->setFrom(&from);
    l->setTo(&to);
    l->update();
    OrderedCltn labels, values;
    for (const char* v : {name, sign, mux}) values.add(*new String(v));
    int status = 0, count = 0;
    l->checkParameters(0, values, status);
    l->iconParameters(1, labels, values, count);
    values.deleteContents();
    l->release();
    l->update();
    icons->add(*l);
    return *l;
}

std::unique_ptr<DynOp> DiagramMaker::build(std::string* reports) {
    std::stringstream errors;
    std::streambuf* old = std::cerr.rdbuf(errors.rdbuf());
    sem->checkConsistency(false);
    std::unique_ptr<DynOp> model = sem->buildSystem(false, false);
    std::cerr.rdbuf(old);
    if (reports) *reports = errors.str();
    return model;
}

void saveDrawing(const char* fileName, Dictionary& icons, Semantic& semantic) {
    ArrayOb drawing(6);
    drawing[0] = &icons;
    drawing[1] = &semantic;
    // The scroll state: origin and size of the view, as fractions of the board.
    Float x(0.3), width(1.0), y(0.3), height(1.0);
    drawing[2] = &x;
    drawing[3] = &width;
    drawing[4] = &y;
    drawing[5] = &height;
    std::ofstream file(fileName);
    drawing.storeOn(file);
    for (int i = 0; i < 6; ++i) drawing[i] = nil;
}

void DiagramMaker::save(const char* fileName) { saveDrawing(fileName, *icons, *sem); }
