// DrawArea on a QWidget: painting the list through a WindowDrawer, and the pointer's events in world points.
#include "trellis/drawarea.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QWheelEvent>
#include <QWidget>

#include "quill/cback.h"
#include "quill/orderedc.h"
#include "trellis/cppgc.h"
#include "trellis/drawer.h"
#include "trellis/drawicon.h"

DEFINE_ABSTRACT_CLASS(DrawArea, CppPrimitive, 1, 0)
DEFINE_ABSTRACT_CLASS(DrawArea1Buffer, DrawArea, 1, 0)

Symbol WidgetExpose("WidgetExpose");
Symbol DownGraphic("DownGraphic");
Symbol UpGraphic("UpGraphic");
Symbol MoveDownGraphic("MoveDownGraphic");
Symbol MoveGraphic("MoveGraphic");
Symbol DoubleClickGraphic("DoubleClickGraphic");
Symbol WheelGraphic("WheelGraphic");

namespace {

class Canvas : public QWidget {
public:
    Canvas(DrawArea& area, QWidget* parent) : QWidget(parent), area(area) { setMouseTracking(true); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        area.paint(painter);
    }
    void mousePressEvent(QMouseEvent* e) override { raise(DownGraphic, e); }
    void mouseReleaseEvent(QMouseEvent* e) override { raise(UpGraphic, e); }
    void mouseDoubleClickEvent(QMouseEvent* e) override { raise(DoubleClickGraphic, e); }
    void mouseMoveEvent(QMouseEvent* e) override { raise(e->buttons() ? MoveDownGraphic : MoveGraphic, e); }
    // One step is the usual notch of 120 eighths of a degree; finer wheels add up to it.
    void wheelEvent(QWheelEvent* e) override {
        wheelTurn += e->angleDelta().y();
        int steps = wheelTurn / 120;
        if (steps == 0) return;
        wheelTurn -= steps * 120;
        FloatPoint world = area.transl().toWorld(FloatPoint(e->position().x(), e->position().y()));
        area.raisePointer(WheelGraphic, world, 0, modifiersOf(e->modifiers()), steps);
    }

private:
    void raise(const Symbol& event, QMouseEvent* e) {
        FloatPoint world = area.transl().toWorld(FloatPoint(e->position().x(), e->position().y()));
        area.raisePointer(event, world, buttonOf(e), modifiersOf(e->modifiers()));
    }
    static int buttonOf(QMouseEvent* e) {
        Qt::MouseButton button = e->button() != Qt::NoButton ? e->button() : firstButton(e->buttons());
        switch (button) {
            case Qt::LeftButton:
                return 1;
            case Qt::MiddleButton:
                return 2;
            case Qt::NoButton:
                return 0;
            default:
                return 3;
        }
    }
    static Qt::MouseButton firstButton(Qt::MouseButtons buttons) {
        for (Qt::MouseButton b : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton})
            if (buttons & b) return b;
        return Qt::NoButton;
    }
    static unsigned modifiersOf(Qt::KeyboardModifiers held) {
        unsigned masks = 0;
        if (held & Qt::ShiftModifier) masks |= PointerState::SHIFT_MASK;
        if (held & Qt::ControlModifier) masks |= PointerState::CONTROL_MASK;
        if (held & Qt::AltModifier) masks |= PointerState::ALT_MASK;
        return masks;
    }

    DrawArea& area;
    int wheelTurn = 0;
};

}  // namespace

DrawArea::DrawArea(const char* name, CppWidget* parent, int width, int height)
    : CppPrimitive(name, parent), icons(new OrderedCltn), zoom_(1.0), background("white") {
    setHandle(new Canvas(*this, parentContainer()));
    handle()->resize(width, height);
}

DrawArea::~DrawArea() noexcept(false) {
    icons->deleteContents();
    delete icons;
}

void DrawArea::raisePointer(const Symbol& event, const FloatPoint& world, int button, unsigned modifiers,
                            int steps) {
    pointer_.button = button;
    pointer_.modifiers = modifiers;
    pointer_.steps = steps;
    CallData data(world);
    cbackOn(event, &data);
}

void DrawArea::setOrigin(const FloatPoint& origin) {
    origin_ = origin;
    redraw();
}

void DrawArea::setZoom(double zoom) {
    zoom_ = zoom > 0 ? zoom : 1.0;
    redraw();
}

const TranslCoord& DrawArea::transl() const {
    double w = handle()->width(), h = handle()->height();
    map.setAbsolute(FloatRect(0, 0, w, h));
    map.setWorld(FloatRect(origin_.x(), origin_.y(), w / zoom_, h / zoom_));
    return map;
}

void DrawArea::setBackgroundColor(const char* colorName) {
    background = colorName;
    redraw();
}

void DrawArea::redraw() { handle()->update(); }

void DrawArea::paint(QPainter& painter) {
    double r = 1, g = 1, b = 1;
    colorOf(background.asCharPointer(), r, g, b);
    painter.fillRect(handle()->rect(), QColor::fromRgbF(float(r), float(g), float(b)));
    painter.setRenderHint(QPainter::Antialiasing);
    WindowDrawer drawer(painter, transl());
    for (unsigned i = 0; i < icons->size(); ++i) CAST(DrawIcon, icons->at(i))->print(drawer);
    cbackOn(WidgetExpose);
}

DrawArea1Buffer::DrawArea1Buffer(const char* name, CppWidget* parent, int width, int height)
    : DrawArea(name, parent, width, height) {}

void DrawArea1Buffer::paint(QPainter& painter) {
    QPixmap buffer(handle()->size());
    {
        QPainter offscreen(&buffer);
        DrawArea::paint(offscreen);
    }
    painter.drawPixmap(0, 0, buffer);
}
