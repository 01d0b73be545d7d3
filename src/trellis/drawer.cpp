// Drawer's responsibilities and arc rule; WindowDrawer on QPainter in window coordinates.
#include "trellis/drawer.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <vector>

#include "quill/orderedc.h"
#include "trellis/cppgc.h"
#include "trellis/drawprim.h"
#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(Drawer, Object, 1, 0)
DEFINE_ABSTRACT_CLASS(WindowDrawer, Drawer, 1, 0)

namespace {

QColor qcolorOf(const String& name) {
    double r = 0, g = 0, b = 0;
    colorOf(name.asCharPointer(), r, g, b);
    return QColor::fromRgbF(float(r), float(g), float(b));
}

}  // namespace

// Drawer

void Drawer::drawLine(CppGC&, double, double, double, double) { derivedClassResponsibility("drawLine"); }

void Drawer::drawArc(CppGC&, double, double, double, double, int, int, bool) {
    derivedClassResponsibility("drawArc");
}

void Drawer::drawRect(CppGC&, double, double, double, double, bool) {
    derivedClassResponsibility("drawRect");
}

void Drawer::drawThickArc(CppGC&, double, double, double, double, int, int, double) {
    derivedClassResponsibility("drawThickArc");
}

void Drawer::drawLine(CppGC&, double, double, const OrderedCltn&, int) {
    derivedClassResponsibility("drawLine");
}

void Drawer::drawString(CppGC&, double, double, double, const char*, int) {
    derivedClassResponsibility("drawString");
}

void Drawer::normalizeArc(double& x, double& y, double& width, double& height, int& start, int& extent) {
    if (width < 0) {
        x += width;
        width = -width;
    }
    if (height < 0) {
        y += height;
        height = -height;
    }
    if (extent < 0) {
        start += extent;
        extent = -extent;
    }
}

void Drawer::absolutePoints(double x, double y, const OrderedCltn& points, double* xs, double* ys) {
    for (unsigned i = 0; i < points.size(); ++i) {
        const FloatPoint& p = *CAST(FloatPoint, points.at(i));
        x += p.x();
        y += p.y();
        xs[i] = x;
        ys[i] = y;
    }
}

// WindowDrawer

WindowDrawer::WindowDrawer(QPainter& painter, const TranslCoord& map) : painter(painter), map(map) {}

void WindowDrawer::usePen(CppGC& gc, double width) {
    QPen pen(qcolorOf(gc.foreground));
    pen.setWidthF(width);
    if (gc.dashed) pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.setCompositionMode(gc.function == CppGC::XOR ? QPainter::RasterOp_SourceXorDestination
                                                         : QPainter::CompositionMode_SourceOver);
}

void WindowDrawer::useBrush(CppGC& gc) {
    usePen(gc, gc.lineWidth);
    painter.setBrush(qcolorOf(gc.foreground));
}

void WindowDrawer::drawLine(CppGC& gc, double x, double y, double width, double height) {
    usePen(gc, gc.lineWidth);
    FloatPoint a = map.toAbsolute(FloatPoint(x, y)), b = map.toAbsolute(FloatPoint(x + width, y + height));
    painter.drawLine(QPointF(a.x(), a.y()), QPointF(b.x(), b.y()));
}

void WindowDrawer::drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) {
    if (filled)
        useBrush(gc);
    else
        usePen(gc, gc.lineWidth);
    FloatPoint a = map.toAbsolute(FloatPoint(x, y)), b = map.toAbsolute(FloatPoint(x + width, y + height));
    painter.drawRect(QRectF(QPointF(a.x(), a.y()), QPointF(b.x(), b.y())).normalized());
}

void WindowDrawer::drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                           bool filled) {
    normalizeArc(x, y, width, height, start, extent);
    if (extent == 0) return;
    FloatPoint a = map.toAbsolute(FloatPoint(x, y)), b = map.toAbsolute(FloatPoint(x + width, y + height));
    QRectF box = QRectF(QPointF(a.x(), a.y()), QPointF(b.x(), b.y())).normalized();
    // Qt counts sixteenths of a degree.
    if (filled) {
        useBrush(gc);
        painter.drawPie(box, start / 4, extent / 4);
    } else {
        usePen(gc, gc.lineWidth);
        painter.drawArc(box, start / 4, extent / 4);
    }
}

void WindowDrawer::drawThickArc(CppGC& gc, double x, double y, double width, double height, int start,
                                int extent, double thickness) {
    normalizeArc(x, y, width, height, start, extent);
    if (extent == 0) return;
    usePen(gc, std::fabs(map.widthToAbsolute(thickness)));
    FloatPoint a = map.toAbsolute(FloatPoint(x, y)), b = map.toAbsolute(FloatPoint(x + width, y + height));
    painter.drawArc(QRectF(QPointF(a.x(), a.y()), QPointF(b.x(), b.y())).normalized(), start / 4, extent / 4);
}

void WindowDrawer::drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) {
    std::vector<double> xs(points.size()), ys(points.size());
    absolutePoints(x, y, points, xs.data(), ys.data());
    QPolygonF polygon;
    FloatPoint origin = map.toAbsolute(FloatPoint(x, y));
    polygon << QPointF(origin.x(), origin.y());
    for (unsigned i = 0; i < points.size(); ++i) {
        FloatPoint p = map.toAbsolute(FloatPoint(xs[i], ys[i]));
        polygon << QPointF(p.x(), p.y());
    }
    if (kind == FILLED_POLYGON) {
        useBrush(gc);
        painter.drawPolygon(polygon);
    } else if (kind == POLYGON) {
        usePen(gc, gc.lineWidth);
        painter.drawPolygon(polygon);
    } else {
        usePen(gc, gc.lineWidth);
        painter.drawPolyline(polygon);
    }
}

void WindowDrawer::drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment) {
    QFont font(toQt(gc.fontFamily));
    font.setPixelSize(std::max(1, int(std::fabs(map.heightToAbsolute(gc.fontSize)))));
    painter.setFont(font);
    FloatPoint a = map.toAbsolute(FloatPoint(x, y));
    double w = std::fabs(map.widthToAbsolute(width));
    QFontMetricsF metrics(font);
    QRectF box(a.x(), a.y(), std::max(w, metrics.horizontalAdvance(toQt(text))), metrics.height());
    if (alignment == DrawString::IMAGE) painter.fillRect(box, qcolorOf(gc.background));
    usePen(gc, 1);
    painter.drawText(
        box, alignment == DrawString::CENTER ? Qt::AlignHCenter | Qt::AlignTop : Qt::AlignLeft | Qt::AlignTop,
        toQt(text));
}
