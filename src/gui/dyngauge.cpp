// The icons of values: sliders, level bars and histograms.
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>
#include <QWidget>
#include <sstream>
#include <vector>

#include "gui/dynicon.h"
#include "gui/dynkinds.h"
#include "trellis/form.h"
#include "trellis/qtext.h"

namespace {

const int STEPS = 1000;  // the slider's positions from minimum to maximum
const QColor defaultBar(70, 130, 180);

// The value's place between the control's minimum and maximum, from 0 to 1.
double fraction(const DynamicControl& c, double value) {
    double span = c.maximum() - c.minimum();
    double f = span > 0 ? (value - c.minimum()) / span : 0.0;
    return f < 0 ? 0.0 : f > 1 ? 1.0 : f;
}

std::vector<double> numbersOf(const String& text) {
    std::istringstream in(text.asCharPointer());
    std::vector<double> numbers;
    double x;
    while (in >> x) numbers.push_back(x);
    return numbers;
}

QColor barColour(const DynamicControl& c) {
    return c.foreground().size() ? QColor(c.foreground().asCharPointer()) : defaultBar;
}

// A level bar fills from the bottom, or from the left when wider than high, and prints its value; a
// histogram draws one bar for each number of the value.
class GaugeCanvas : public QWidget {
public:
    GaugeCanvas(const DynamicControl& c, QWidget* parent) : QWidget(parent), control(c) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        QRect box = rect().adjusted(0, 0, -1, -1);
        p.fillRect(box, palette().color(QPalette::Base));
        if (control.kind() == DynamicControl::LEVEL)
            paintLevel(p, box.adjusted(2, 2, -1, -1));
        else
            paintHistogram(p, box.adjusted(2, 2, -1, -1));
        p.setPen(palette().color(QPalette::Mid));
        p.drawRect(box);
    }

private:
    void paintLevel(QPainter& p, const QRect& inside) {
        double f = fraction(control, control.value().asDouble());
        QRect bar = inside;
        if (inside.width() > inside.height())
            bar.setWidth(int(inside.width() * f));
        else
            bar.setTop(inside.bottom() - int(inside.height() * f));
        p.fillRect(bar, barColour(control));
        p.setPen(Qt::black);  // the foreground colour is the bar's
        p.drawText(inside, Qt::AlignCenter, toQt(control.value()));
    }

    void paintHistogram(QPainter& p, const QRect& inside) {
        std::vector<double> numbers = numbersOf(control.value());
        if (numbers.empty()) return;
        double step = double(inside.width()) / numbers.size();
        for (unsigned i = 0; i < numbers.size(); ++i) {
            int height = int(inside.height() * fraction(control, numbers[i]));
            QRect bar(inside.left() + int(i * step) + 1, inside.bottom() - height, int(step) - 1, height);
            p.fillRect(bar, barColour(control));
        }
    }

    const DynamicControl& control;
};

class GaugeView : public CppPrimitive {
public:
    GaugeView(const DynamicControl& c, CppForm& form) : CppPrimitive(c.name().asCharPointer(), &form) {
        setHandle(new GaugeCanvas(c, parentContainer()));
    }
};

class GaugeIcon : public DynamicIcon {
public:
    GaugeIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        view = new GaugeView(c, form);
        place(form, view, unit);
    }

private:
    void show() override { view->handle()->update(); }

    GaugeView* view;
};

class SliderView : public CppPrimitive {
public:
    SliderView(const DynamicControl& c, CppForm& form) : CppPrimitive(c.name().asCharPointer(), &form) {
        QSlider* slider =
            new QSlider(c.height() > c.width() ? Qt::Vertical : Qt::Horizontal, parentContainer());
        slider->setRange(0, STEPS);
        setHandle(slider);
    }
    QSlider& slider() const { return *static_cast<QSlider*>(handle()); }
};

// The user's move sets the value and raises the event when the slider is let go, or at once for a
// key or a click beside the handle.
class SliderIcon : public DynamicIcon {
public:
    SliderIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner) {
        view = new SliderView(c, form);
        QSlider& s = view->slider();
        QObject::connect(&s, &QSlider::valueChanged, [this](int position) { moved(position); });
        QObject::connect(&s, &QSlider::sliderReleased, [this] { raise(); });
        place(form, view, unit);
    }

private:
    void show() override {
        QSignalBlocker quiet(view->slider());
        view->slider().setValue(int(STEPS * fraction(control(), control().value().asDouble()) + 0.5));
    }
    void moved(int position) {
        const DynamicControl& c = control();
        control().setValue(formatText("%g", c.minimum() + (c.maximum() - c.minimum()) * position / STEPS));
        if (!view->slider().isSliderDown()) raise();
    }

    SliderView* view;
};

}  // namespace

DynamicIcon* makeGaugeIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) {
    if (c.kind() == DynamicControl::SLIDER) return new SliderIcon(c, form, unit, owner);
    return new GaugeIcon(c, form, unit, owner);
}
