// Semantic: the base kind of drawing, the forwarders to the editor and the placing rules.
#include "editor/semantic.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "editor/chessbrd.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconnode.h"
#include "quill/arrayob.h"
#include "quill/cback.h"
#include "quill/dictnary.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "trellis/menu.h"
#include "trellis/resource.h"

DEFINE_CLASS(Semantic, Object, 1, 0)

Semantic::Semantic() : width_(30), height_(30), modified(false), editor(0) {}

Semantic::Semantic(std::istream& is, Object* where) : Object(is, where), modified(false), editor(0) {
    is >> width_ >> height_;
}

Semantic::Semantic(BinIstream& is, Object* where)
    : Object(is, where), width_(0), height_(0), modified(false), editor(0) {}

void Semantic::storer(std::ostream& os) const {
    Object::storer(os);
    os << ' ' << width_ << ' ' << ' ' << height_ << ' ';
}

void Semantic::storer(BinOstream& os) const { Object::storer(os); }

GraphEditor& Semantic::attached() const {
    QASSERT(editor != 0);
    return *editor;
}

void Semantic::showError(const char* text) const { attached().gui().showError(text); }
void Semantic::showWarning(const char* text) const { attached().gui().showWarning(text); }
bool Semantic::askQuestion(const char* text) const { return attached().gui().askQuestion(text); }
void Semantic::showMessage(const char* text) const { attached().gui().showMessage(text); }
void Semantic::clearMessage() const { attached().gui().clearMessage(); }

void Semantic::setStatus(const char* text) const {
    if (editor) editor->gui().setStatus(text);
}

bool Semantic::isModified() const { return modified || (editor && editor->isChanged()); }

void Semantic::setModified(bool flag) {
    modified = flag;
    if (editor) editor->setChanged(flag);
}

bool Semantic::editable() const { return editor && !editor->isReadOnly(); }

void Semantic::openFile(const char* name) { attached().setFileName(name, true); }

void Semantic::attachEditor(Object& ob) { editor = CAST(GraphEditor, &ob); }

// ---------------------------------------------------------------- the menus

void Semantic::setEditorSizes() {
    attached().gui().setDrawSizes(
        integerResource("graphicEditorDrawWidth", 700), integerResource("graphicEditorDrawHeight", 550),
        integerResource("graphicEditorMinWidth", 450), integerResource("graphicEditorMinHeight", 400));
}

IconNode* Semantic::newIcon(const char*, int, int) { return new IconNode; }

OrderedCltn& Semantic::iconNames(OrderedCltn& cltn) {
    cltn.add(*new String("Rectangle"));
    return cltn;
}

OrderedCltn& Semantic::initialIcons(OrderedCltn& cltn) { return cltn; }

namespace {

struct DocumentCommand {
    const char* text;
    const char* mnemonic;
    const char* accelerator;
    int kind;  // the document kind, or -1 for the view
};

const DocumentCommand documentCommands[] = {
    {"Create Document (ASCII)", "A", "Alt+A", DOCUMENT_ASCII},
    {"Create Document (Latex)", "L", "Alt+L", DOCUMENT_LATEX},
    {"Create Document (HTML)", "H", "Alt+H", DOCUMENT_HTML},
    {"Create Document (RTF)", "R", "Alt+R", DOCUMENT_RTF},
    {"View   Document (ASCII)", "W", "Alt+W", -1},
};

}  // namespace

void Semantic::addCommand(OrderedCltn& cltn, const char* text, const char* mnemonic,
                          const char* accelerator) {
    if (!*mnemonic && !*accelerator) {
        cltn.add(*new String(text));
        return;
    }
    ArrayOb* row = new ArrayOb(3);
    (*row)[0] = new String(text);
    if (*mnemonic) (*row)[1] = new String(mnemonic);
    if (*accelerator) (*row)[2] = new String(accelerator);
    cltn.add(*row);
}

void Semantic::commandNames(OrderedCltn& cltn) {
    for (const DocumentCommand& command : documentCommands)
        addCommand(cltn, command.text, command.mnemonic, command.accelerator);
}

void Semantic::enableDocumentCommands(bool flag) {
    for (const DocumentCommand& command : documentCommands)
        attached().gui().enableCommand(command.text, flag);
}

const char* Semantic::executeCommand(const char* name) {
    for (const DocumentCommand& command : documentCommands) {
        if (strcmp(name, command.text) != 0) continue;
        if (command.kind >= 0) return createDocument(command.kind);
        return viewDocument(DOCUMENT_ASCII);
    }
    return 0;
}

const char* Semantic::viewFile(const char* fileName, const char* title) {
    FILE* file = fopen(fileName, "r");
    if (!file) return formatText("Cannot open file %s", fileName);
    String text;
    char line[4096];
    bool first = true;
    while (fgets(line, sizeof line, file)) {
        size_t n = strlen(line);
        while (n && (line[n - 1] == '\n' || line[n - 1] == '\r')) line[--n] = 0;
        if (!first) text += "\r\n";
        text += line;
        first = false;
    }
    fclose(file);
    attached().openChildEditor("TextShower", text.asCharPointer(), title, nil);
    return 0;
}

// ---------------------------------------------------------------- placing

const char* Semantic::checkCollision(IconNode& icon, const OrderedCltn& collisions) {
    if (collisions.isEmpty() || icon.isKindOf(class_IconArc)) return 0;
    for (unsigned i = 0; i < collisions.size(); ++i) {
        Object* member = collisions.at(i);
        if (member == &icon) continue;
        if (!member->isKindOf(class_IconArc)) return "IconNode cannot place over another IconNode";
    }
    return 0;
}

int Semantic::clampPosition(IconNode& icon, Point& point) {
    int right = width_ - int(icon.iconWidth()) - 1;
    int bottom = height_ - int(icon.iconHeight()) - 1;
    if (point.x() < 0) point.x(0);
    if (point.x() > right) point.x(right);
    if (point.y() < 0) point.y(0);
    if (point.y() > bottom) point.y(bottom);
    return 1;
}

void Semantic::uniqueName(IconNode& icon, const Dictionary& icons) {
    while (icons.includesKey(icon.name()) && icons.atKey(icon.name()) != &icon)
        icon.setName(formatText("%ld", atol(icon.name().asCharPointer()) + 1));
}

int Semantic::findPlace(IconNode& icon, int x0, int y0, int x1, int y1, int stepX, int stepY) {
    for (int y = y0; y <= y1; y += stepY)
        for (int x = x0; x <= x1; x += stepX) {
            icon.setPosition(Point(x, y));
            if (!attached().checkPlace(icon)) return 1;
        }
    std::cerr << "No more position for insert the " << icon.className() << icon << std::endl;
    return 0;
}

int Semantic::needsPlacing(IconNode& icon) {
    prepareIcon(icon);
    Point position = icon.position();
    return position.x() == 0 && position.y() == 0;
}

int Semantic::snapPosition(IconNode& icon, FloatPoint& point) {
    Point cell(int(point.x()), int(point.y()));
    int result = clampPosition(icon, cell);
    point = FloatPoint(cell.x(), cell.y());
    return result;
}

void Semantic::copyIconData(IconNode& newIcon, IconNode& oldIcon) {
    if (newIcon.isKindOf(class_IconArc)) return;
    Point old = oldIcon.position();
    FloatPoint place(old.x(), old.y());
    if (snapPosition(newIcon, place))
        newIcon.setPosition(Point(int(place.x()), int(place.y())));
    else
        needsPlacing(newIcon);
}

int Semantic::resizeIcon(IconNode& icon, double width, double height) {
    QASSERT_TEXT(icon.canScale(), "icon->canScale()");
    if (icon.posX() + width >= width_) width = width_ - icon.posX() - 1;
    if (icon.posY() + height >= height_) height = height_ - icon.posY() - 1;
    icon.iconWidth(float(width));
    icon.iconHeight(float(height));
    return 1;
}

int Semantic::resizeFont(IconNode& icon, double scale) {
    QASSERT_TEXT(icon.canScaleFont(), "icon->canScaleFont()");
    icon.iconFontScale(float(scale));
    return 1;
}

int Semantic::canPaste(const OrderedCltn& cltn) {
    for (unsigned i = 0; i < cltn.size(); ++i)
        if (!cltn.at(i)->isKindOf(class_IconNode)) return 0;
    return 1;
}

// ---------------------------------------------------------------- links

OrderedCltn& Semantic::linkNames(OrderedCltn& cltn) {
    cltn.add(*new String("Unlabel"));
    cltn.add(*new String("With label"));
    return cltn;
}

void Semantic::linksFromIcon(IconNode&, OrderedCltn& cltn) { linkNames(cltn); }

const Class& Semantic::linkClass(const char* name) {
    return strcmp(name, "Unlabel") == 0 ? class_IconArc : class_ClassArc;
}

IconArc* Semantic::newLink(const char* name) { return CAST(IconArc, linkClass(name).create()); }

void Semantic::deleteLink(IconArc* link) { delete link; }

const char* Semantic::checkLink(IconNode&, IconNode&, const Class&, const FloatPoint&, const FloatPoint&) {
    return 0;
}

const char* Semantic::checkNewLink(IconNode& from, IconNode& to, IconArc& link, const FloatPoint& p1,
                                   const FloatPoint& p2) {
    return checkLink(from, to, *link.isA(), p1, p2);
}

const char* Semantic::canLinkFrom(IconNode& icon, IconArc& link, const FloatPoint& point) {
    const char* message = icon.linkFromMessage(point, link);
    return message ? message : icon.canBeLinkFrom(point, *link.isA());
}

const char* Semantic::canLinkTo(IconNode& icon, IconArc& link, const FloatPoint& point) {
    const char* message = icon.linkToMessage(point, link);
    return message ? message : icon.canBeLinkTo(point, *link.isA());
}

namespace {

float clampCoordinate(float value, int extent) {
    if (value < 0.01f) return 0.01f;
    if (value > extent - 0.01f) return extent - 0.01f;
    return value;
}

}  // namespace

OrderedCltn* Semantic::placeLink(IconArc& link, IconNode& from, IconNode& to, const FloatPoint& p1,
                                 const FloatPoint& p2) {
    FloatPoint start = from.linkFromPoint(p1, p2);
    FloatPoint end = to.linkToPoint(p1, p2);
    OrderedCltn polyline;
    from.routeLink(polyline, to, start, end, *isA());
    OrderedCltn* others = 0;
    if (!polyline.isEmpty() && polyline.last()->isKindOf(class_OrderedCltn))
        others = CAST(OrderedCltn, polyline.removeLast());
    for (unsigned i = 0; i < polyline.size(); ++i) {
        FloatPoint* point = CAST(FloatPoint, polyline.at(i));
        *point = FloatPoint(clampCoordinate(point->x(), width_), clampCoordinate(point->y(), height_));
    }
    // An arc without points adopts the list's; one with points copies them.
    bool adopted = link.points()->isEmpty();
    link.setPoints(polyline);
    if (!adopted) polyline.deleteContents();
    return others;
}

IconNode* Semantic::relinkTarget(IconArc&, int, IconNode&, IconNode&, const FloatPoint&, const FloatPoint&,
                                 int) {
    return 0;
}

String& Semantic::linkTitle(String& result, IconArc& link) { return link.iconDescription(result); }

// ---------------------------------------------------------------- icon hooks

void Semantic::childEditorEvent(Object& child, Cback&, Object*, Object*) { (void)CAST(GraphEditor, &child); }
void Semantic::deleteIcon(IconNode* icon) { delete icon; }
const char* Semantic::openIcon(IconNode&) { return 0; }
void Semantic::fileSaved() {}
void Semantic::fileLoaded() {}
void Semantic::fileCreated() {}
void Semantic::clearDrawing() {}
void Semantic::iconInserted(IconNode&) {}
void Semantic::prepareIcon(IconNode&) {}
void Semantic::iconMoved(IconNode&) {}
void Semantic::iconRemoved(IconNode&) {}
void Semantic::iconDragged(IconNode& icon, const FloatPoint&) { iconMoved(icon); }
void Semantic::moveStarted(IconNode&) {}
void Semantic::moveEnded(IconNode&) {}
void Semantic::zoomCenter(double, double, double) {}

IconNode* Semantic::transformIcon(IconNode* icon, const char* className) {
    QASSERT_TEXT(icon != 0, "icon!=0");
    if (strcmp(className, "ClassArc") == 0) return new ClassArc;
    if (strcmp(className, "IconArc") == 0) return new IconArc;
    QASSERT_TEXT(false, "transformIcon: no transformation to that class");
    return 0;
}

void Semantic::transformNames(IconNode& icon, OrderedCltn& cltn) {
    if (icon.isA() == &class_IconArc)
        cltn.add(*new String("ClassArc"));
    else if (icon.isA() == &class_ClassArc)
        cltn.add(*new String("IconArc"));
}

String& Semantic::commentFileName(String& result, IconNode&) {
    result = "edit_";
    result += attached().baseName();
    return result;
}

const char* Semantic::fileExtension() { return ".edt"; }
