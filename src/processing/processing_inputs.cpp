#include "processing/processing_inputs.h"

#include <algorithm>

namespace rm {

double VelocityScale(const CKvrData& data) { return data.derived.documentShallowWaterVelocityFactor; }

bool HighResolutionFormat(const CKvrData& data) { return VelocityScale(data) != 1.0; }

double AveragingIntervalSeconds(const CKvrData& data) {
    return data.user.AveragingInterval * data.derived.intervalUnitSeconds;
}

double ProfileTimeStep(const CKvrData& data) {
    const int profilesPerItem = data.Grouping() == GroupType::EveryProfile ? 1 : std::max(data.GroupNumber(), 1);
    return AveragingIntervalSeconds(data) * profilesPerItem;
}

bool FileHasBottomTrack(const CKvrData& data) { return data.derived.bottomTrackMode != 0; }

int BeamCount(const ProfileRecord& record) { return std::clamp(record.beams, 0, kMaxRows); }

int RingSize(const ProcessingContext& ctx) {
    int ring = ctx.state.ring > 0 ? ctx.state.ring : static_cast<int>(ctx.slots.size());
    return std::max(ring, 1);
}

int NormalSlot(const ProcessingContext& ctx, int slot) {
    const int ring = RingSize(ctx);
    return ((slot % ring) + ring) % ring;
}

int PreviousSlot(const ProcessingContext& ctx, int slot) { return NormalSlot(ctx, NormalSlot(ctx, slot) - 1); }

bool IsFirstProfile(const ProcessingContext& ctx) { return ctx.state.count <= 1; }

bool SlotHasGps(const ProcessingContext& ctx, int slot) {
    const size_t index = static_cast<size_t>(NormalSlot(ctx, slot));
    return index < ctx.slots.size() && ctx.slots[index].gpsPresent;
}

FloatMatrix BeamToXyzOf(const DerivedValues& derived) {
    const int n = std::clamp(derived.matrixSize, 0, kMaxBeams);
    FloatMatrix m = FloatMatrix::Zero(n);
    for (int row = 0; row < n; ++row)
        for (int col = 0; col < n; ++col) m.at(row, col) = derived.matrix[static_cast<size_t>(row * n + col)];
    return m;
}

std::array<int16_t, 4> RawCell(const ProfileRecord& record, int cell) {
    std::array<int16_t, 4> raw{};
    const int beams = BeamCount(record);
    if (cell < 0 || cell >= record.cells) return raw;
    for (int beam = 0; beam < beams; ++beam) raw[static_cast<size_t>(beam)] = record.Velocity(beam, cell);
    return raw;
}

}  // namespace rm
