// PlotView on QCustomPlot: the graphs of a response, the axes, the title and the legend.
#include "gui/plotview.h"

#include <cmath>

#include "gui/qcplot.h"
#include "trellis/qtext.h"

DEFINE_ABSTRACT_CLASS(PlotView, CppPrimitive, 1, 0)

namespace {

// Distinct colours for the graphs, taken in turn.
const Qt::GlobalColor graphColours[] = {Qt::blue,    Qt::red,      Qt::darkGreen,
                                        Qt::magenta, Qt::darkCyan, Qt::black};

QCPTextElement& titleOf(QCustomPlot& plot) {
    if (plot.plotLayout()->rowCount() == 1) {
        plot.plotLayout()->insertRow(0);
        plot.plotLayout()->addElement(0, 0, new QCPTextElement(&plot, "", QFont("sans", 11, QFont::Bold)));
    }
    return *static_cast<QCPTextElement*>(plot.plotLayout()->element(0, 0));
}

void setLogarithmic(QCustomPlot& plot, bool logarithmic) {
    QCPAxis& x = *plot.xAxis;
    x.setScaleType(logarithmic ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
    if (logarithmic)
        x.setTicker(QSharedPointer<QCPAxisTickerLog>(new QCPAxisTickerLog));
    else
        x.setTicker(QSharedPointer<QCPAxisTicker>(new QCPAxisTicker));
}

void addGraph(QCustomPlot& plot, const Response& r, unsigned column, const std::string& legend) {
    QCPGraph& graph = *plot.addGraph();
    graph.setName(toQt(legend.c_str()));
    graph.setPen(QPen(graphColours[column % (sizeof graphColours / sizeof *graphColours)], 1.5));
    QVector<double> keys, values;
    for (unsigned k = 0; k < r.abscissa.size(); ++k) {
        double v = r.values(k, column);
        if (!std::isfinite(v)) continue;
        keys.push_back(r.abscissa[k]);
        values.push_back(v);
    }
    graph.setData(keys, values, true);
}

}  // namespace

PlotView::PlotView(const char* name, CppWidget* parent, int width, int height) : CppPrimitive(name, parent) {
    QCustomPlot* plot = new QCustomPlot(parentContainer());
    plot->resize(width, height);
    plot->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    plot->legend->setVisible(true);
    setHandle(plot);
}

QCustomPlot& PlotView::plot() const { return *static_cast<QCustomPlot*>(handle()); }

void PlotView::draw(const PlotPicture& picture) {
    QCustomPlot& p = plot();
    p.clearGraphs();
    titleOf(p).setText(toQt(picture.title.c_str()));
    p.xAxis->setLabel(toQt(picture.xLabel.c_str()));
    p.yAxis->setLabel(toQt(picture.yLabel.c_str()));
    setLogarithmic(p, picture.logarithmic);
    // Gains fall with the frequency and time responses mostly rise: the legend goes where they are not.
    Qt::Alignment corner = picture.logarithmic ? Qt::AlignTop : Qt::AlignBottom;
    p.axisRect()->insetLayout()->setInsetAlignment(0, corner | Qt::AlignRight);
    for (unsigned j = 0; j < picture.response.values.columnNumber(); ++j)
        addGraph(p, picture.response, j, j < picture.legends.size() ? picture.legends[j] : std::string());
    rescale();
    p.replot();
}

// A flat response would leave an empty range: it gets one unit above and below.
void PlotView::rescale() {
    QCustomPlot& p = plot();
    p.rescaleAxes();
    QCPRange values = p.yAxis->range();
    double margin = values.size() < 1e-12 ? 1.0 : 0.05 * values.size();
    p.yAxis->setRange(values.lower - margin, values.upper + margin);
}
