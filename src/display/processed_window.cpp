#include "display/processed_window.h"

#include <cmath>

#include "processing/processing_steps.h"
#include "processing/shallow_water_cell.h"

namespace rm {

const char* XAxisModeName(XAxisMode mode) {
    switch (mode) {
        case XAxisMode::Profiles: return "Profiles";
        case XAxisMode::DynamicDistance: return "Dynamic Distance";
        case XAxisMode::FixedDistance: return "Fixed Distance";
    }
    return "";
}

ProcessedWindow::ProcessedWindow(const CSurveyKVRDoc& document)
    : ctx_(document.ReadContext()) {
    if (document.Slots().empty() || !document.IsOpen()) return;
    first_ = document.WindowStart();
    last_ = document.WindowEnd();
    current_ = document.CurrentProfile();
    const double t = GetTransducerDepth(ctx_);
    transducerDepth_ = Length(t);
    cellSize_ = Length(ctx_.data.user.CellSizeCm * 0.01);
    cellOffset_ = Length(t + ctx_.data.user.BlankDistance * 0.01);
    shallowEnd_ = Length(t + ShallowCellGeometryOf(ctx_.data.conf).FarEnd());
}

int ProcessedWindow::SlotOf(int item) const {
    const int ring = static_cast<int>(ctx_.slots.size());
    return ring > 0 ? ((item - 1) % ring + ring) % ring : 0;
}

const SlotResults& ProcessedWindow::Results(int item) const { return ctx_.slots[static_cast<size_t>(SlotOf(item))]; }

const ProfileRecord& ProcessedWindow::Raw(int item) const { return ctx_.Raw(SlotOf(item)); }

int ProcessedWindow::CellCount() const { return Empty() ? 0 : std::min(Raw(last_).cells, kMaxCells); }

double ProcessedWindow::XPosition(int item, XAxisMode mode) const {
    if (mode == XAxisMode::Profiles) return item;
    const SlotResults& r = Results(item);
    const TrackPoint& p = ctx_.settings.TrackReference == kTrackRefGps ? r.gpsTrackPoint : r.bottomTrackPoint;
    return Length(std::sqrt(p.East * p.East + p.North * p.North));
}

double ProcessedWindow::BottomDepth(int item) const {
    const SlotResults& r = Results(item);
    if (r.meanDepth < MissingValueF) return Length(r.meanDepth);
    if (r.shallowCells > 0 && r.waterCells == 0) return shallowEnd_;
    return cellOffset_ + (Raw(item).cells + 0.5) * cellSize_;
}

double ProcessedWindow::CutOffDepth(int item) const {
    const double d = SideLobeCutOffDepth(ctx_, SlotOf(item));
    return d < MissingValue ? Length(d) : MissingValue;
}

void ProcessedWindow::ReadColumn(int item, DisplayVariable variable, int component, CellColumn& out) const {
    ReadCellColumn(ctx_, variable, component, CoordinateSystem(), VelocityReference(), SlotOf(item), out);
}

}  // namespace rm
