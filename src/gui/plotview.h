// PlotView, the plot's drawing area: one response drawn into QCustomPlot, and its export to files.
#ifndef GUI_PLOTVIEW_H
#define GUI_PLOTVIEW_H

#include <string>
#include <vector>

#include "control/response.h"
#include "trellis/widget.h"

class QCustomPlot;

extern Class class_PlotView;

// A response with its words: one graph per column of the values, named by the legends.
struct PlotPicture {
    Response response;
    std::string title;
    std::string xLabel;
    std::string yLabel;
    std::vector<std::string> legends;  // one per column
    bool logarithmic = false;          // a frequency axis
};

// The user zooms with the wheel and drags the axes with the mouse.
class PlotView : public CppPrimitive {
    DECLARE_MEMBERS(PlotView)
public:
    PlotView(const char* name, CppWidget* parent, int width = 640, int height = 400);

    // Replaces what is drawn; the axes take the whole response. Infinite values (the gain at a pole)
    // are left out of the graph.
    void draw(const PlotPicture& picture);
    QCustomPlot& plot() const;
    // Fits the axes to the graphs, with a margin above and below the values.
    void rescale();

    // Writes the plot at the window's size: a ".pdf" name by the PDF saver, any other by the PNG one.
    // False when the file cannot be written.
    bool save(const char* fileName) const;
    // Asks for a file name through the toolkit's file dialogue and saves there; a failure is shown
    // in an error box.
    void exportAsked() const;
};

#endif
