// GraphEdtGui: the window's widget tree, its file cycle, boxes and status, and the view of the drawing.
#include "editor/graphgui.h"

#include <QWidget>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <initializer_list>

#include "editor/resizdlg.h"
#include "quill/arrayob.h"
#include "quill/assoc.h"
#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/objio.h"
#include "quill/safefile.h"
#include "trellis/ask.h"
#include "trellis/button.h"
#include "trellis/drawarea.h"
#include "trellis/filemenu.h"
#include "trellis/filetest.h"
#include "trellis/form.h"
#include "trellis/graphic.h"
#include "trellis/help.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/printdlg.h"
#include "trellis/shell.h"
#include "trellis/zoommenu.h"

DEFINE_ABSTRACT_CLASS(GraphEdtGui, Object, 1, 0)

Symbol GraphEdtGuiNew("GraphEdtGuiNew");
Symbol GraphEdtGuiLoad("GraphEdtGuiLoad");
Symbol GraphEdtGuiSave("GraphEdtGuiSave");
Symbol GraphEdtGuiQuit("GraphEdtGuiQuit");
Symbol GraphEdtGuiPrint("GraphEdtGuiPrint");
Symbol GraphEdtGuiEdit("GraphEdtGuiEdit");
Symbol GraphEdtGuiOpti("GraphEdtGuiOpti");
Symbol GraphEdtGuiCmnd("GraphEdtGuiCmnd");
Symbol GraphEdtGuiIcon("GraphEdtGuiIcon");
Symbol GraphEdtGuiLink("GraphEdtGuiLink");
Symbol GraphEdtGuiMenu("GraphEdtGuiMenu");
Symbol GraphEdtGuiStatusMenu("GraphEdtGuiStatusMenu");
Symbol GraphEdtGuiTransfMenu("GraphEdtGuiTransfMenu");
Symbol GraphEdtGuiLinksMenu("GraphEdtGuiLinksMenu");
Symbol GraphEdtGuiResize("GraphEdtGuiResize");
Symbol GraphEdtGuiHelp("GraphEdtGuiHelp");
Symbol GraphEdtGuiReset("GraphEdtGuiReset");

// The window's file menu: its entries and the window's close ask the window first.
class GraphFileMenu : public FileMenu {
    DECLARE_MEMBERS(GraphFileMenu)
public:
    GraphFileMenu(GraphEdtGui& gui, CppShell& shell, MenuBar& bar, const char* prefix, const char* extension)
        : FileMenu(gui, shell, bar, prefix, extension, WITH_SAVE, PRINT | QUIT), gui(gui) {}

protected:
    bool mayAct(const String& entry) override { return gui.fileMenuMayAct(entry); }

private:
    GraphEdtGui& gui;
};

DEFINE_ABSTRACT_CLASS(GraphFileMenu, FileMenu, 1, 0)

namespace {

const double CELL_PIXELS = 20;   // window pixels of a cell at zoom 1
const double WHEEL_ZOOM = 1.25;  // zoom factor of one wheel step with Control held
const double EDGE = 1;           // a point nearer the edge than this, in cells, scrolls into view
const char* const CONCLUDE_IT = "The editor is in a critical action\n\n  Conclude it.";
const char* const RESET_STATUS = "The editor is in a critical action\n\n  Want reset this status ?";
const char* const CHILDREN_OPEN = "Some child editor opened\n\nContinue ?";

DrawEventHook drawEventHook = 0;

const FloatPoint& pointOf(Cback& cb) { return *CAST(FloatPoint, cb.callData->asObject()); }

const char* orNull(const String& name) { return name.size() ? name.asCharPointer() : 0; }

}  // namespace

DrawEventHook setDrawEventHook(DrawEventHook hook) {
    DrawEventHook former = drawEventHook;
    drawEventHook = hook;
    return former;
}

GraphEdtGui::GraphEdtGui(CppShell& shell, CppForm& parent, const char* title, const char* fileFilter,
                         bool readOnly, bool fromFile, const char* fileName)
    : shell(shell),
      form(parent),
      menuBar(new MenuBar("MenuBar", &parent)),
      drawing(0),
      file(0),
      edit(0),
      option(0),
      view(0),
      zoomMenu(0),
      popup(0),
      retiredPopup(0),
      popupClosedEvent(0),
      popupAnswered(true),
      choice(0),
      links(0),
      icons(0),
      choiceLabel(0),
      linkLabel(0),
      iconLabel(0),
      statusLabel(0),
      paletteDialog(0),
      resizer(0),
      iconIndex_(-1),
      menuIndex_(-1),
      commandName("Open"),
      readOnly(readOnly),
      busy(false),
      showerChildren(false),
      fromFile_(fromFile),
      fileFilter(fileFilter ? fileFilter : ""),
      loaded(false),
      watching(false) {
    String prefix(title && *title ? formatText("%s - ", title) : "");
    file =
        new GraphFileMenu(*this, shell, *menuBar, prefix.asCharPointer(), this->fileFilter.asCharPointer());
    file->setDialogTexts("Open File Selection", "File name to Open", "Save File Selection",
                         "File name to Save");
    file->setFileName(fileName);
    buildEditMenu();
    option = new PulldownMenu("OptionMenu", menuBar, "C&ommand");
    option->addCback(MenuPressed, cbackMethod<&GraphEdtGui::commandChosen>, *this);
    view = new PulldownMenu("ShowMenu", menuBar, "View");
    zoomMenu = new ZoomMenu(*this, *view, &shell);
    view->addSeparator();
    view->addChoice("Fit to Window");
    view->addCback(MenuPressed, cbackMethod<&GraphEdtGui::viewChosen>, *this);
    buildLayout();
    addCback(Zoomed, cbackMethod<&GraphEdtGui::zoomed>, *this);
    drawArea().addCback(WheelGraphic, cbackMethod<&GraphEdtGui::wheeled>, *this);
    if (readOnly)
        for (const Symbol* event :
             {&DownGraphic, &UpGraphic, &MoveDownGraphic, &MoveGraphic, &DoubleClickGraphic})
            drawArea().addCback(*event, cbackMethod<&GraphEdtGui::drawEvent>, *this);
    addCback(FileMenuNew, cbackMethod<&GraphEdtGui::newDrawing>, *this);
    addCback(FileMenuLoad, cbackMethod<&GraphEdtGui::loadDrawing>, *this);
    addCback(FileMenuSave, cbackMethod<&GraphEdtGui::saveDrawing>, *this);
    addCback(FileMenuPrint, cbackMethod<&GraphEdtGui::printed>, *this);
    for (const Symbol* end : {&FileMenuExit, &FileMenuQuit, &FileMenuKill})
        addCback(*end, cbackMethod<&GraphEdtGui::ended>, *this);
    drawing->setZoom(CELL_PIXELS);
}

GraphEdtGui::~GraphEdtGui() noexcept(false) {
    delete file;
    delete zoomMenu;
    delete popup;
    delete retiredPopup;
    delete paletteDialog;
    delete resizer;
}

// The menu bar at the top, the bottom box at the bottom, the drawing between them.
void GraphEdtGui::buildLayout() {
    CppForm& f = form;
    f.attachAt(*menuBar, 0, 0);
    f.attachHorizontal(menuBar, &f, 0);
    CppForm& bottom = buildBottomBox();
    bottom.sizeToFit();
    f.attachHorizontal(&f, &bottom, 0);
    f.attachHorizontal(&bottom, &f, 0);
    f.attachTopFromBottom(bottom, bottom.height());
    f.attachVertical(&bottom, &f, 0);
    CppForm* box = new CppForm("EdtBox", &f);
    f.attachHorizontal(&f, box, 0);
    f.attachHorizontal(box, &f, 0);
    f.attachVertical(menuBar, box, 0);
    f.attachBottomToSibling(*box, bottom, 0);
    drawing = new CppGraphic("DrawPanel", box);
    box->attachAt(*drawing, 0, 0);
    box->attachHorizontal(drawing, box, 0);
    box->attachVertical(drawing, box, 0);
}

// The file

const String& GraphEdtGui::fileName() const { return file->fileName(); }

void GraphEdtGui::setFileName(const char* name) { file->setFileName(name); }

bool GraphEdtGui::hasFile() const { return file->hasFile(); }

void GraphEdtGui::setModified(bool flag) { file->setChanged(flag); }

bool GraphEdtGui::modified() const { return file->isChanged(); }

bool GraphEdtGui::openFile(const char* name, bool silent) {
    if (!silent) showMessage((String("Opening ") + name).asCharPointer());
    loaded = false;
    // A file that fails the menu's tests leaves a new drawing, unless the
    // user kept the work there was.
    if (!file->openFile(name) && !file->isChanged()) cbackOn(GraphEdtGuiNew);
    return loaded;
}

void GraphEdtGui::loadDrawing(Cback& cb) {
    String name(cb.callData->asCharPointer());
    setStatus((String("Opening file ") + name).asCharPointer());
    String error;
    Object* read = readObject(name.asCharPointer(), &class_ArrayOb, error);
    if (read) {
        Assoc readAndError(*read, error);
        CallData data(&readAndError, true);
        data.setNotOwn();
        cbackOn(GraphEdtGuiLoad, &data);
    }
    setStatus("");
    loaded = read && error.size() == 0;
    if (loaded) return;
    // Saving under the name of a file that could not be read would lose it.
    file->setFileName(0);
    showError((name + error).asCharPointer());
    if (!read) cbackOn(GraphEdtGuiNew);
}

void GraphEdtGui::saveDrawing(Cback& cb) {
    savingTo = cb.callData->asCharPointer();
    setStatus((String("Saving file ") + fileName()).asCharPointer());
    Integer result(1);
    CallData data(&result, true);
    data.setNotOwn();
    cbackOn(GraphEdtGuiSave, &data);
    // No file in place tells the file menu that the save failed.
    if (result.value() == 0) std::remove(savingTo.asCharPointer());
    savingTo = "";
    setStatus("");
}

bool GraphEdtGui::store(const Object& drawing) {
    if (savingTo.size() == 0) return false;
    return writeSafely(savingTo.asCharPointer(), [&drawing](std::ostream& out) {
               storeObject(out, drawing);
           }).size() == 0;
}

void GraphEdtGui::printed(Cback& cb) {
    const PrintOptions& settings = *CAST(PrintOptions, cb.callData->asObject());
    if (printDrawing(drawArea().list(), drawing->extent(), settings)) cbackOn(GraphEdtGuiPrint);
}

void GraphEdtGui::newDrawing(Cback&) { cbackOn(GraphEdtGuiNew); }

void GraphEdtGui::ended(Cback&) { cbackOn(GraphEdtGuiQuit); }

bool GraphEdtGui::fileMenuMayAct(const String& entry) {
    bool closing = entry.size() == 0;
    if (busy && closing) {
        showError(CONCLUDE_IT);
        return false;
    }
    if (busy) {
        if (askQuestion(RESET_STATUS, false)) {
            busy = false;
            cbackOn(GraphEdtGuiReset);
        }
        return false;
    }
    bool ending = closing || entry == "Exit" || entry == "Quit";
    return !ending || !showerChildren || askQuestion(CHILDREN_OPEN);
}

// Boxes and the status label

void GraphEdtGui::showError(const char* text) { ::showMessage(text, "Error", MESSAGE_ERROR); }

void GraphEdtGui::showWarning(const char* text) { ::showMessage(text, "Warning", MESSAGE_WARNING); }

bool GraphEdtGui::askQuestion(const char* text, bool byDefault) {
    return ::askQuestion(text, "Question", byDefault);
}

// A working message: shown while the work goes on, taken down by clearMessage.
void GraphEdtGui::showMessage(const char* text) {
    setStatus(text);
    statusLabel->handle()->repaint();
}

void GraphEdtGui::clearMessage() { setStatus(""); }

void GraphEdtGui::setStatus(const char* text) { statusLabel->setText(text); }

String GraphEdtGui::status() const { return statusLabel->text(); }

// The drawing area

DrawArea& GraphEdtGui::drawArea() const { return drawing->drawArea(); }

void GraphEdtGui::setWorld(const FloatRect& world) { drawing->setExtent(world); }

void GraphEdtGui::redraw() { drawArea().redraw(); }

void GraphEdtGui::refresh() {
    drawing->updateScrollbars();
    redraw();
}

void GraphEdtGui::ensureVisible(const FloatPoint& point) {
    const FloatRect& seen = drawArea().transl().world();
    double x = seen.x(), y = seen.y();
    if (point.x() < seen.x() + EDGE)
        x = point.x() - EDGE;
    else if (point.x() > seen.x() + seen.width() - EDGE)
        x = point.x() + EDGE - seen.width();
    if (point.y() < seen.y() + EDGE)
        y = point.y() - EDGE;
    else if (point.y() > seen.y() + seen.height() - EDGE)
        y = point.y() + EDGE - seen.height();
    if (x != seen.x() || y != seen.y()) drawing->scrollTo(FloatPoint(x, y));
}

void GraphEdtGui::setZoom(double zoom) { zoomMenu->setZoom(zoom); }

double GraphEdtGui::zoom() const { return zoomMenu->zoom(); }

void GraphEdtGui::zoomed(Cback& cb) { drawing->setZoom(cb.callData->asDouble() * CELL_PIXELS); }

// Control and the wheel zoom about the point under the pointer, which stays there.
void GraphEdtGui::wheeled(Cback& cb) {
    const PointerState& pointer = drawArea().pointer();
    if (!(pointer.modifiers & PointerState::CONTROL_MASK)) return;
    FloatPoint at = pointOf(cb), origin = drawArea().origin();
    double before = zoom();
    setZoom(before * std::pow(WHEEL_ZOOM, pointer.steps));
    drawing->scrollTo(at - (at - origin) * (before / zoom()));
}

void GraphEdtGui::fitToWindow() {
    int x, y, width, height;
    drawArea().getGeometry(x, y, width, height);
    const FloatRect& world = drawing->extent();
    if (width < 1 || height < 1 || world.width() <= 0 || world.height() <= 0) return;
    setZoom(std::min(width / world.width(), height / world.height()) / CELL_PIXELS);
    drawing->scrollTo(FloatPoint(world.x(), world.y()));
}

void GraphEdtGui::viewChosen(Cback& cb) {
    if (view->choiceOf(cb) == "Fit to Window") fitToWindow();
}

void GraphEdtGui::setDrawSizes(int width, int height, int minWidth, int minHeight) {
    int x, y, areaWidth, areaHeight, shellWidth, shellHeight;
    drawArea().getGeometry(x, y, areaWidth, areaHeight);
    shell.getGeometry(x, y, shellWidth, shellHeight);
    // The window keeps its menus and bottom box around the area asked for.
    int chromeWidth = std::max(0, shellWidth - areaWidth),
        chromeHeight = std::max(0, shellHeight - areaHeight);
    shell.handle()->setMinimumSize(minWidth, minHeight);
    shell.resize(width + chromeWidth, height + chromeHeight);
}

void GraphEdtGui::help(const char* keyword) { showHelp(keyword); }

void GraphEdtGui::setWatchCursor(bool on) {
    if (on == watching) return;
    watching = on;
    if (on) {
        formCursor = form.setCursor("watch");
        areaCursor = drawArea().setCursor("watch");
    } else {
        form.setCursor(orNull(formCursor));
        drawArea().setCursor(orNull(areaCursor));
    }
}

void GraphEdtGui::drawEvent(Cback& cb) {
    if (drawEventHook && drawEventHook(drawArea(), cb.event, pointOf(cb))) redraw();
}

// The resize dialog

void GraphEdtGui::openResizeDialog(bool width, bool height, bool font, double w, double h, double fontScale) {
    if (!resizer) {
        resizer = new ResizeDialog(&shell);
        resizer->applyButton().addCback(CppCommandPressed, cbackMethod<&GraphEdtGui::resizeApplied>, *this);
    }
    resizer->open(width, height, font, w, h, fontScale);
}

void GraphEdtGui::resizeValues(double& dw, double& dh, double& dfont) const {
    dw = dh = dfont = 0;
    if (resizer) resizer->increments(dw, dh, dfont);
}

void GraphEdtGui::resizeApplied(Cback&) {
    cbackOn(GraphEdtGuiResize);
    resizer->applied();
}
