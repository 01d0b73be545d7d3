// CppGraphic's attachments and scrolling; Ruler's painting of world units.
#include "trellis/graphic.h"

#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "quill/cback.h"
#include "trellis/drawarea.h"
#include "trellis/scrollb.h"

DEFINE_ABSTRACT_CLASS(Ruler, CppPrimitive, 1, 0)
DEFINE_ABSTRACT_CLASS(CppGraphic, CppForm, 1, 0)

namespace {

const int BAR = 16;

class RulerWidget : public QWidget {
public:
    RulerWidget(Ruler& ruler, QWidget* parent) : QWidget(parent), ruler(ruler) {}

protected:
    // A long mark with its number every ten steps of a round world length.
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().window());
        const TranslCoord& map = ruler.area().transl();
        bool across = ruler.isHorizontal();
        double scale = std::fabs(across ? map.ax() : map.ay());
        double step = std::pow(10.0, std::floor(std::log10(8.0 / (scale > 0 ? scale : 1.0))) + 1);
        double from = across ? map.world().x() : map.world().y();
        double to = from + (across ? map.world().width() : map.world().height());
        QFont font = painter.font();
        font.setPixelSize(9);
        painter.setFont(font);
        for (double w = std::floor(from / step) * step; w <= to; w += step) {
            FloatPoint at = map.toAbsolute(FloatPoint(w, w));
            int pos = int(across ? at.x() : at.y());
            bool major = std::fmod(std::fabs(std::round(w / step)), 10.0) == 0;
            int length = major ? Ruler::THICKNESS / 2 : Ruler::THICKNESS / 4;
            if (across)
                painter.drawLine(pos, Ruler::THICKNESS - length, pos, Ruler::THICKNESS);
            else
                painter.drawLine(Ruler::THICKNESS - length, pos, Ruler::THICKNESS, pos);
            if (major) painter.drawText(across ? pos + 2 : 1, across ? 9 : pos + 10, QString::number(w));
        }
    }

private:
    Ruler& ruler;
};

}  // namespace

Ruler::Ruler(const char* name, CppWidget* parent, DrawArea& area, bool horizontal)
    : CppPrimitive(name, parent), area_(area), horizontal(horizontal) {
    setHandle(new RulerWidget(*this, parentContainer()));
    resize(THICKNESS, THICKNESS);
}

CppGraphic::CppGraphic(const char* name, CppWidget* parent, bool buffered)
    : CppForm(name, parent), extent_(0, 0, 1000, 1000) {
    area = buffered ? new DrawArea1Buffer("DrawArea", this) : new DrawArea("DrawArea", this);
    top = new Ruler("HRuler", this, *area, true);
    left = new Ruler("VRuler", this, *area, false);
    horizontal = new CppScrollbar("HScroll", this, true);
    vertical = new CppScrollbar("VScroll", this, false);
    // Rulers along the top and the left, scroll bars along the right and the bottom.
    attachAt(*top, Ruler::THICKNESS, 0);
    attachRightToSibling(*top, *vertical, 0);
    attachAt(*left, 0, Ruler::THICKNESS);
    attachBottomToSibling(*left, *horizontal, 0);
    attachHorizontal(left, area, 0);
    attachVertical(top, area, 0);
    attachRightToSibling(*area, *vertical, 0);
    attachBottomToSibling(*area, *horizontal, 0);
    attachLeftFromRight(*vertical, BAR);
    attachHorizontal(vertical, this, 0);
    attachVertical(this, vertical, Ruler::THICKNESS);
    attachBottomToSibling(*vertical, *horizontal, 0);
    attachHorizontal(this, horizontal, Ruler::THICKNESS);
    attachHorizontal(horizontal, this, BAR);
    attachTopFromBottom(*horizontal, BAR);
    attachVertical(horizontal, this, 0);
    horizontal->addCback(CppScrollbarChanged, cbackMethod<&CppGraphic::scrolled>, *this);
    vertical->addCback(CppScrollbarChanged, cbackMethod<&CppGraphic::scrolled>, *this);
    addCback(WidgetResize, cbackMethod<&CppGraphic::resized>, *this);
    updateScrollbars();
}

void CppGraphic::setExtent(const FloatRect& extent) {
    extent_ = extent;
    updateScrollbars();
}

void CppGraphic::setZoom(double zoom) {
    area->setZoom(zoom);
    updateScrollbars();
    top->handle()->update();
    left->handle()->update();
}

void CppGraphic::scrolled(Cback& cb) {
    FloatPoint origin = area->origin();
    if (cb.owner == horizontal)
        origin.x(cb.callData->asInt());
    else
        origin.y(cb.callData->asInt());
    area->setOrigin(origin);
    top->handle()->update();
    left->handle()->update();
}

void CppGraphic::resized(Cback&) { updateScrollbars(); }

void CppGraphic::updateScrollbars() {
    double zoom = area->zoom();
    int visibleWidth = int(area->handle()->width() / zoom),
        visibleHeight = int(area->handle()->height() / zoom);
    int x = int(extent_.x()), y = int(extent_.y());
    horizontal->setRange(x, std::max(x, int(extent_.x() + extent_.width()) - visibleWidth),
                         std::max(1, visibleWidth));
    vertical->setRange(y, std::max(y, int(extent_.y() + extent_.height()) - visibleHeight),
                       std::max(1, visibleHeight));
}

void CppGraphic::scrollTo(const FloatPoint& origin) {
    horizontal->setValue(int(std::floor(origin.x())));
    vertical->setValue(int(std::floor(origin.y())));
}
