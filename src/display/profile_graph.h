#pragma once
// A profile graph: one variable of one profile against depth, cell number or range, one line
// per beam or component, a small circle at every point, gaps where a cell has no value. The
// desktop program shows three ("Left Profile Graph", "Center Profile Graph", "Right Profile
// Graph"), each with its own variable chosen from "Velocity", "Amplitude", "Std Dev", "SNR",
// "Velocity - 3D", and the line legend ("LineLegend") with a short line sample per line.
//
// Velocity draws one line per axis or beam of the coordinate system in force; Velocity - 3D
// one line, the speed of the three axes; the others one line per beam.

#include <array>
#include <string>
#include <vector>

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QString>

#include "display/pixel_mapping.h"
#include "display/processed_window.h"
#include "processing/dialog_check.h"

namespace rm {

// The vertical axis of a profile graph.
enum class GraphYAxis { Depth, CellNumber, Range };
// "Depth (m)", "Cell No.", "Range (m)" (feet in English).
QString GraphYAxisTitle(GraphYAxis axis, int unitSystem);

constexpr const char* kLeftProfileGraph = "Left Profile Graph";
constexpr const char* kCenterProfileGraph = "Center Profile Graph";
constexpr const char* kRightProfileGraph = "Right Profile Graph";

struct ProfileGraphState {
    std::string name = kLeftProfileGraph;
    DisplayVariable variable = DisplayVariable::Velocity;
    GraphYAxis yAxis = GraphYAxis::Depth;
    double minimum = -1.0, maximum = 1.0;  // the value axis, display units
    double step = 0.5;                     // between the value axis' labels
    double y0 = 0.0, y1 = 1.0;             // the vertical axis, top to bottom
    std::array<QColor, 4> lineColours{QColor(220, 0, 0), QColor(0, 150, 0), QColor(0, 0, 230), QColor(200, 0, 200)};
    QColor background{255, 255, 255};
    QColor grid{200, 200, 200};
    QColor text{0, 0, 0};
};

// The graph dialog's check: "<name>: Step size must be greater than zero", then
// "<name>: Maximum value must be greater than minimum value".
DialogCheck CheckProfileGraphScale(const std::string& graphName, double minimum, double maximum, double step);

// One line of a graph: its legend name and its value per cell (MissingValue: a gap).
struct GraphLine {
    QString name;
    std::vector<double> values;
};

class ProfileGraph {
public:
    ProfileGraph(const ProcessedWindow& window, const ProfileGraphState& state) : window_(window), state_(state) {}

    // The lines of `item` in display units.
    std::vector<GraphLine> Lines(int item) const;
    // The position of cell i on the vertical axis: depth or range of its middle, or its number from 1.
    double YOfCell(int cell) const;
    // Values across, the vertical axis down.
    PlotMapping Mapping(const QRect& rect) const;
    // The graph of `item` in `rect`: background, grid, zero line, lines and point marks.
    void Paint(QPainter& painter, const QRect& rect, int item) const;
    // The line legend: a short line sample and the name of every line.
    void PaintLineLegend(QPainter& painter, const QRect& area, int item, int fontPixels) const;
    // The value axis title: "Velocity (m/s)" and so on.
    QString ValueAxisTitle() const;

private:
    const ProcessedWindow& window_;
    const ProfileGraphState& state_;
};

// A graph state for the variable over `item`: the vertical axis from the surface (or cell 1)
// to the last cell, the value axis over the values present, rounded outward.
ProfileGraphState DefaultProfileGraph(const ProcessedWindow& window, const std::string& name, DisplayVariable variable,
                                      GraphYAxis yAxis, int item);

}  // namespace rm
