// The trend icon: a rolling plot of one value per step, the norm of each iteration for instance.
#include "gui/dynicon.h"
#include "gui/dynkinds.h"
#include "gui/plotview.h"
#include "gui/qcplot.h"
#include "trellis/form.h"
#include "trellis/qtext.h"

namespace {

const int KEPT = 200;  // the latest points shown; older ones roll out at the left

class TrendIcon : public DynamicIcon {
public:
    TrendIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) : DynamicIcon(c, owner), steps(0) {
        view = new PlotView(c.name().asCharPointer(), &form);
        QCustomPlot& p = view->plot();
        p.setInteractions(QCP::Interactions());
        p.legend->setVisible(false);
        p.addGraph()->setPen(
            QPen(c.foreground().size() ? QColor(c.foreground().asCharPointer()) : Qt::blue, 1.5));
        p.graph(0)->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 4));
        p.xAxis->setLabel("step");
        p.yAxis->setLabel(toQt(c.label()));
        QFont small = p.font();
        small.setPointSizeF(small.pointSizeF() * 0.9);
        for (QCPAxis* axis : {p.xAxis, p.yAxis}) axis->setLabelFont(small), axis->setTickLabelFont(small);
        place(form, view, unit);
    }

    bool addPoint(double value) override {
        QCPGraph& graph = *view->plot().graph(0);
        graph.addData(++steps, value);
        if (graph.dataCount() > KEPT) graph.data()->removeBefore(steps - KEPT + 1);
        control().setValue(formatText("%g", value));
        redraw();
        return true;
    }

    bool clearPoints() override {
        view->plot().graph(0)->data()->clear();
        steps = 0;
        control().setValue("");
        redraw();
        return true;
    }

private:
    void show() override {}
    void redraw() {
        QCustomPlot& p = view->plot();
        view->rescale();
        p.xAxis->setRange(steps > KEPT ? steps - KEPT + 1 : 0, steps > 10 ? steps + 1 : 10);
        p.replot();
    }

    PlotView* view;
    int steps;
};

}  // namespace

DynamicIcon* makeTrendIcon(DynamicControl& c, CppForm& form, int unit, Object& owner) {
    return new TrendIcon(c, form, unit, owner);
}
