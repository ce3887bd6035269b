#pragma once
// The display state of a contour: what it shows and over which ranges, in display units. It
// is all a contour picture keeps; the data stay in the document. The desktop program keeps one
// per view and changes it from its dialogs; `plot` and the reports make one with
// DefaultContourView.

#include <QColor>

#include "app/app_settings.h"
#include "data/cfg_file.h"
#include "display/display_variable.h"
#include "display/processed_window.h"
#include "processing/dialog_check.h"

namespace rm {

struct ContourColours {
    QColor background{255, 255, 255};
    QColor hatch{96, 96, 96};          // the cross hatch under the bed
    QColor bottomOutline{0, 0, 0};     // 1 pixel outline of the bed
    QColor cutOff{255, 0, 255};        // the side-lobe limit
    QColor badBottomTrack{255, 0, 0};  // the bed under profiles with bad bottom track
    QColor frame{128, 128, 128};
    QColor text{0, 0, 0};
};

struct ContourViewState {
    DisplayVariable variable = DisplayVariable::Velocity;  // "ContourDisplayVariable"
    int component = kComponentMagnitude;                   // "ContourDisplayComponent"
    XAxisMode xAxis = XAxisMode::Profiles;                 // "ShowXAxisAs"
    double x0 = 1.0, x1 = 2.0;            // horizontal range: profile numbers or distance
    double y0 = 0.0, y1 = 1.0;            // depth range, top to bottom
    double colour0 = 0.0, colour1 = 1.0;  // the legend's range
    double colourStep = 0.1;              // between the legend's tick labels
    int profilesDisplayed = 3000;         // "Number of Profiles Displayed"
    double distanceDisplayed = 100.0;     // "Distance Displayed", m or ft
    bool showBottom = true;               // "ShowBottomDepth"
    bool showCutOff = true;               // "ShowCutOffDepth"
    bool showBadBottomTrack = true;       // "ShowBadBottomTrack"
    ContourColours colours;
};

// The horizontal range for the window and the axis mode: "Profiles" spans "Number of Profiles
// Displayed" from the first profile shown (the newest profiles once the window holds more);
// "Fixed Distance" spans "Distance Displayed" from the first profile's distance; "Dynamic
// Distance" runs from the first profile's distance to the farthest of the window, so it grows
// with the data. An empty window gives 0 to 1.
void SetXRange(const ProcessedWindow& window, ContourViewState& view);
// A view of the whole window for the variable: X by SetXRange, depth from the surface to a
// round number below the deepest bed, the legend over the values of the water cells rounded
// outward to a round step (0 to the largest for speeds).
ContourViewState DefaultContourView(const ProcessedWindow& window, DisplayVariable variable, int component,
                                    XAxisMode mode);

// The choices the settings keep, into a view: "ContourDisplayVariable" (a code without a drawing
// leaves the variable as it is), "ContourDisplayComponent" and "ShowXAxisAs" of the document's
// Display node, and "ShowBottomDepth", "ShowCutOffDepth", "ShowBadBottomTrack" of the
// application's General node.
void ApplyStoredChoices(const CfgDisplay& display, const AppSettings& app, ContourViewState& view);

// The contour scale dialog: "Contour step size must be greater than zero".
DialogCheck CheckContourScale(double minimum, double maximum, double step);
constexpr const char* kContourStepMessage = "Contour step size must be greater than zero";
constexpr const char* kContourRangeMessage = "Contour: Maximum value must be greater than minimum value";

// A round step (1, 2 or 5 times a power of ten) that divides `span` into about `divisions`.
double RoundStep(double span, int divisions);

}  // namespace rm
