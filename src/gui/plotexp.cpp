// PlotView's export: the plot written by QCustomPlot's own PNG and PDF savers.
#include <strings.h>

#include <cstring>

#include "gui/plotview.h"
#include "gui/qcplot.h"
#include "quill/quillstr.h"
#include "trellis/ask.h"
#include "trellis/qtext.h"

namespace {

bool endsWith(const char* text, const char* end) {
    size_t n = std::strlen(text), m = std::strlen(end);
    return n >= m && strcasecmp(text + n - m, end) == 0;
}

}  // namespace

bool PlotView::save(const char* fileName) const {
    QCustomPlot& p = plot();
    if (endsWith(fileName, ".pdf")) return p.savePdf(toQt(fileName), p.width(), p.height());
    return p.savePng(toQt(fileName), p.width(), p.height());
}

// The dialogue proposes a PNG file; a name ending in ".pdf" gives a PDF.
void PlotView::exportAsked() const {
    String name("plot.png");
    if (!askFileName(name, "Export Plot", "PNG or PDF file", ".png", true)) return;
    if (!save(name.asCharPointer()))
        showMessage((String("The plot cannot be written to ") + name).asCharPointer(), "Export Plot",
                    MESSAGE_ERROR);
}
