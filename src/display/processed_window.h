#pragma once
// Read-only access of the pictures to a document's window of processed profiles: which items
// (profiles as loaded, from 1) it holds, the slot of each, the cell geometry, and per profile
// the horizontal position, the bed, the side-lobe limit and the bottom-track state, all in
// display units (metres or feet by the document's unit system). Cheap to make: a picture takes
// one for each paint.

#include "app/survey_document.h"
#include "display/display_variable.h"

namespace rm {

// The horizontal axis of the contour ("ShowXAxisAs"): profile numbers, or the distance made
// good of the track reference with the range following the data ("Dynamic Distance") or of a
// set span ("Fixed Distance").
enum class XAxisMode : uint8_t { Profiles = 0, DynamicDistance = 1, FixedDistance = 2 };
// "Profiles", "Dynamic Distance", "Fixed Distance".
const char* XAxisModeName(XAxisMode mode);

class ProcessedWindow {
public:
    explicit ProcessedWindow(const CSurveyKVRDoc& document);

    // The items held, FirstItem() to LastItem(); empty when LastItem() < FirstItem().
    int FirstItem() const { return first_; }
    int LastItem() const { return last_; }
    bool Empty() const { return last_ < first_; }
    bool Holds(int item) const { return item >= first_ && item <= last_; }
    int CurrentItem() const { return current_; }
    int SlotOf(int item) const;
    const SlotResults& Results(int item) const;
    const ProfileRecord& Raw(int item) const;
    const ProcessingContext& Context() const { return ctx_; }

    int UnitSystem() const { return ctx_.settings.UnitSystem; }
    int CoordinateSystem() const { return ctx_.settings.CoordinateSystem; }
    int VelocityReference() const { return ctx_.settings.VelocityReference; }
    int CellCount() const;
    // Cell size c and the offset z (transducer depth plus blanking) of the cell edges:
    // cell i spans (i + 0.5) c + z to (i + 1.5) c + z.
    double CellSize() const { return cellSize_; }
    double CellOffset() const { return cellOffset_; }
    // The distance from the transducer to the middle of cell i.
    double CellRange(int cell) const { return cellOffset_ - transducerDepth_ + (cell + 1) * cellSize_; }
    // The depth of the middle of cell i below the surface.
    double CellDepth(int cell) const { return cellOffset_ + (cell + 1) * cellSize_; }
    // The far end of the shallow-water cell below the surface.
    double ShallowCellEnd() const { return shallowEnd_; }
    // Cells of the item that processing counts as water (the valid-cell mask: cells from this
    // index on are invalid), and whether it used the shallow-water cell.
    int ValidCells(int item) const { return Results(item).waterCells; }
    bool UsedShallowCell(int item) const { return Results(item).shallowCells > 0; }

    // The item's position on the horizontal axis: its number, or the distance made good from
    // the track's origin by the track reference.
    double XPosition(int item, XAxisMode mode) const;
    // The bed under the item: the mean depth; without one the far end of the profile's range
    // (of the shallow-water cell when only that cell was used).
    double BottomDepth(int item) const;
    // The side-lobe limit, MissingValue when the profile has no depth.
    double CutOffDepth(int item) const;
    bool BadBottomTrack(int item) const { return Results(item).bottomStatus == kBottomBad; }
    // The values of the item's cells for the variable and component, in display units.
    void ReadColumn(int item, DisplayVariable variable, int component, CellColumn& out) const;

private:
    double Length(double metres) const { return LengthForDisplay(metres, UnitSystem()); }

    const ProcessingContext ctx_;
    int first_ = 1, last_ = 0, current_ = 0;
    double cellSize_ = 0.0, cellOffset_ = 0.0, shallowEnd_ = 0.0, transducerDepth_ = 0.0;
};

}  // namespace rm
