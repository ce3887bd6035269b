#include "processing/velocity_chain.h"

#include <algorithm>
#include <cmath>

#include "processing/bottom_track_step.h"
#include "processing/gps_track.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/shallow_water_cell.h"

namespace rm {

namespace {
constexpr int16_t kShallowBadFrom = 9999;

VelocityVector AllMissing() {
    VelocityVector v;
    v.fill(MissingValueF);
    return v;
}

// The bottom-track vector that the reference subtracts: the step's result when it was made for
// this coordinate system, else a fresh one from the raw record (none for a held ensemble).
VelocityVector ReferenceBottomTrack(const ProcessingContext& ctx, int slot, int coordinateSystem) {
    const size_t index = static_cast<size_t>(NormalSlot(ctx, slot));
    if (!FileHasBottomTrack(ctx.data) || index >= ctx.slots.size()) return AllMissing();
    const SlotResults& results = ctx.slots[index];
    if (coordinateSystem == ctx.settings.CoordinateSystem) return results.bottomTrack.Velocity;
    if (results.bottomStatus != kBottomGood) return AllMissing();
    return BottomTrackVelocity(ctx, slot, coordinateSystem);
}
}  // namespace

VelocityChain::VelocityChain(const ProcessingContext& ctx, int slot, int coordinateSystem, int reference)
    : ctx_(ctx), record_(ctx.Raw(slot)), slot_(slot), reference_(reference) {
    rows_ = BeamCount(record_);
    scale_ = VelocityScale(ctx.data);
    highResolution_ = HighResolutionFormat(ctx.data);
    soundSpeedFactor_ = SoundSpeedFactor(ctx, slot);
    const int recorded = ctx.data.user.CoordinateSystem;
    rotateEnu_ = RotatesByDeclination(recorded, coordinateSystem);
    declination_ = ctx.data.derived.magneticDeclination;
    matrix_ = SelectCoordinateMatrix(ctx, record_.header, coordinateSystem, false);
    if (matrix_.apply && matrix_.m.n != rows_) matrix_.usable = false;
    if (reference_ == kVelocityRefBottomTrack) bottomTrack_ = ReferenceBottomTrack(ctx, slot, coordinateSystem);
    if (reference_ == kVelocityRefGps) {
        const GpsVelocity gps = SlotGpsVelocity(ctx, slot);
        gpsEast_ = gps.east;
        gpsNorth_ = gps.north;
    }
}

VelocityVector VelocityChain::Transform(const std::array<int16_t, kMaxRows>& raw, bool shallow) const {
    VelocityVector out = AllMissing();
    if (!matrix_.usable) return out;
    if (matrix_.apply) {
        for (int beam = 0; beam < rows_; ++beam) {
            const int16_t r = raw[static_cast<size_t>(beam)];
            if (r == kBadVelocity || (shallow && r >= kShallowBadFrom)) return out;
        }
        // The velocity scale applies here too: in the finer unit a transformed velocity would
        // otherwise come out ten times too fast.
        const float scale = static_cast<float>(scale_);
        for (int row = 0; row < rows_; ++row) {
            float sum = 0.0f;
            for (int beam = 0; beam < rows_; ++beam) {
                sum += static_cast<float>(raw[static_cast<size_t>(beam)]) * matrix_.m.at(row, beam) * 0.1f;
            }
            out[static_cast<size_t>(row)] = sum * scale;
        }
        return out;
    }
    for (int beam = 0; beam < rows_; ++beam) {
        const int16_t r = raw[static_cast<size_t>(beam)];
        const bool bad = shallow ? r >= kShallowBadFrom : (r == kBadVelocity && !highResolution_);
        if (!bad) out[static_cast<size_t>(beam)] = static_cast<float>(scale_ * soundSpeedFactor_ * r * 0.1);
    }
    return out;
}

void VelocityChain::RotateEnu(VelocityVector& v, const std::array<int16_t, kMaxRows>& raw, bool shallow) const {
    if (!rotateEnu_ || rows_ < 2) return;
    const auto marked = [&](int16_t r) {
        if (shallow) return r == kUnwrapBadVelocity || r == kBadVelocity;
        return highResolution_ && r == kUnwrapBadVelocity;
    };
    if (marked(raw[0]) || marked(raw[1]) || v[0] >= MissingValueF || v[1] >= MissingValueF) {
        v[0] = v[1] = MissingValueF;
        return;
    }
    RotateByDeclination(v[0], v[1], declination_);
}

void VelocityChain::ApplyReference(VelocityVector& v) const {
    if (reference_ == kVelocityRefBottomTrack) {
        if (bottomTrack_[0] >= MissingValueF) {
            v = AllMissing();
            return;
        }
        for (int row = 0; row < rows_; ++row) {
            float& value = v[static_cast<size_t>(row)];
            if (value != MissingValueF) value -= bottomTrack_[static_cast<size_t>(row)] * 100.0f;
        }
    } else if (reference_ == kVelocityRefGps) {
        if (std::fabs(gpsEast_) >= MissingValueF || std::fabs(gpsNorth_) >= MissingValueF) {
            v[0] = v[1] = MissingValueF;
            return;
        }
        if (v[0] != MissingValueF && v[1] != MissingValueF) {
            v[0] += gpsEast_ * 0.1f;
            v[1] += gpsNorth_ * 0.1f;
        }
    }
}

VelocityVector VelocityChain::Cell(int cell) const {
    if (cell < 0 || cell >= record_.cells) return AllMissing();
    const std::array<int16_t, kMaxRows> raw = RawCell(record_, cell);
    VelocityVector v = Transform(raw, false);
    RotateEnu(v, raw, false);
    ApplyReference(v);
    return v;
}

VelocityVector VelocityChain::Shallow() const {
    if (!record_.hasShallowWater || !ctx_.data.derived.hasShallowWaterBlock) return AllMissing();
    const std::array<int16_t, kMaxRows> raw = ShallowBlockVelocities(record_);
    VelocityVector v = Transform(raw, true);
    RotateEnu(v, raw, true);
    ApplyReference(v);
    return v;
}

void GetVelocities(const ProcessingContext& ctx, int slot, VelocityArrays& out) {
    for (auto& row : out) row.fill(MissingValueF);
    const VelocityChain chain(ctx, slot, ctx.settings.CoordinateSystem, ctx.settings.VelocityReference);
    const int cells = std::min(ctx.Raw(slot).cells, kMaxCells);
    for (int cell = 0; cell < cells; ++cell) {
        const VelocityVector v = chain.Cell(cell);
        for (int row = 0; row < kMaxRows; ++row) out[static_cast<size_t>(row)][static_cast<size_t>(cell)] = v[static_cast<size_t>(row)];
    }
}

bool GetShallowVelocity(const ProcessingContext& ctx, int slot, std::array<float, 4>& out) {
    const VelocityChain chain(ctx, slot, ctx.settings.CoordinateSystem, ctx.settings.VelocityReference);
    out = chain.Shallow();
    return out[0] < MissingValueF && out[1] < MissingValueF;
}

}  // namespace rm
