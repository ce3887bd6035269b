#pragma once
// The texts under the cursor on the contour, as plain functions of a point: the status line
// and the tool tip, in metric or English units by the document's unit system.
//
// Status line: "Profile #: %d  Depth: %.2f (m)   " ("%.2f(ft)   " in English), then by the
// variable "Vel: %.2f (m/s)  Dir: %.1f", "Amp: %.0f (counts)", "StdDev: %.2f (m/s)" or
// "SNR: %.0f (dB)" for the cell under the cursor ("--" for a missing value, nothing when the
// cursor is outside the cells). Tool tip: the same quantities on lines labelled "Profile: ",
// "Date/Time: ", "Cell: ", "Range: ", then "Vel: " and "Dir: ", "Amp: ", "StdDev: " or "SNR: ".

#include <optional>
#include <string>

#include <QPoint>
#include <QRect>

#include "display/contour_picture.h"

namespace rm {

// What lies under a point of the contour's rectangle.
struct ContourPoint {
    int item = 0;                // one-based profile number
    double depth = 0.0;          // display units
    std::optional<int> cell;     // zero-based, when the point is on a cell of the profile
};

std::optional<ContourPoint> ContourPointAt(const ContourPicture& picture, const QRect& rect, const QPoint& point);

std::string ContourStatusText(const ProcessedWindow& window, const ContourViewState& view, const ContourPoint& point);
std::string ContourToolTipText(const ProcessedWindow& window, const ContourViewState& view, const ContourPoint& point);

}  // namespace rm
