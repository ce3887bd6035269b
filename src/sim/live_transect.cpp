#include "sim/live_transect.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "data/byte_io.h"
#include "data/profile_codec.h"

namespace rm::sim {

namespace {

GpsForm FrameGpsForm(const InstrumentRecords& records) {
    return records.conf.InternalGpsAvailable != 0 && records.user.EnableInternalGps != 0 ? GpsForm::Long48
                                                                                         : GpsForm::None;
}

// The plan cut to its first `count` profiles, with the span ending where the last one ends.
CrossingPlan CutPlan(const CrossingPlan& plan, int count) {
    CrossingPlan cut = plan;
    const int total = static_cast<int>(plan.profiles.size());
    if (count >= total || total == 0) return cut;
    cut.profiles.resize(static_cast<size_t>(count));
    // The boat moves at constant speed, so the span's end moves in proportion.
    cut.endY = plan.startY + (plan.endY - plan.startY) * count / total;
    return cut;
}

}  // namespace

const std::string& FrameNoise() {
    static const std::string noise = "#~noise~#\r\n";
    return noise;
}

bool ParseBitFlip(const std::string& text, BitFlip& flip) {
    BitFlip f;
    int consumed = 0;
    if (std::sscanf(text.c_str(), "%d:%d:%d%n", &f.profile, &f.byte, &f.bit, &consumed) != 3 ||
        static_cast<size_t>(consumed) != text.size())
        return false;
    if (f.profile < 1 || f.byte < 0 || f.bit < 0 || f.bit > 7) return false;
    flip = f;
    return true;
}

RiverScenario ScenarioForRecords(const RiverScenario& scenario, const InstrumentRecords& records) {
    RiverScenario s = scenario;
    const UserSetup& u = records.user;
    s.instrument.cells = u.NumberOfCells;
    s.instrument.cellSizeCm = static_cast<int>(std::lround(u.CellSizeCm));
    s.instrument.blankCm = u.BlankDistance;
    s.instrument.coordinateSystem = u.CoordinateSystem;
    s.instrument.bottomTrackMode = u.BottomTrack;
    s.instrument.pulseCoherent = u.PCMode != 0;
    s.instrument.cpuVersion = records.conf.CPUSoftwareVerNum;
    // The crossing counts whole seconds: an interval in tenths is rounded, to one second at least.
    const int interval = IntervalsInTenths(u) ? (u.ProfileInterval + 5) / 10 : u.ProfileInterval;
    if (u.ProfileInterval >= 1) s.crossing.intervalS = std::max(interval, 1);
    if (s.gps == GpsSource::Internal && FrameGpsForm(records) == GpsForm::None) s.gps = GpsSource::None;
    return s;
}

LiveTransect::LiveTransect(const RiverScenario& scenario, const InstrumentRecords& records,
                           const FrameFaults& faults, int maxProfiles)
    : scenario_(scenario), records_(records), faults_(faults) {
    problem_ = ValidateScenario(scenario_);
    if (!problem_.empty()) return;
    plan_ = PlanCrossing(scenario_.river, scenario_.crossing);
    const int total = static_cast<int>(plan_.profiles.size());
    planned_ = maxProfiles > 0 ? std::min(maxProfiles, total) : total;
    generator_ = std::make_unique<TransectGenerator>(scenario_.river, TransectSettingsOf(scenario_, plan_, records_),
                                                     BeamToXyzOf(records_), scenario_.seed);
    if (!generator_->Usable()) {
        problem_ = "the beam matrix of the configuration cannot be inverted";
        return;
    }
    layout_ = MakeProfileLayout(records_.conf, records_.user, FrameGpsForm(records_), 2);
    frameSize_ = layout_.RecordSize();
    for (const BitFlip& flip : faults_.bitFlips) {
        if (static_cast<size_t>(flip.byte) >= frameSize_) {
            problem_ = "a flipped bit lies beyond the frame of " + std::to_string(frameSize_) + " bytes";
            return;
        }
    }
}

bool LiveTransect::Next(std::string& bytes) {
    bytes.clear();
    if (!problem_.empty() || made_ >= planned_) return false;
    const ProfileState& state = plan_.profiles[static_cast<size_t>(made_)];
    ++made_;
    ProfileRecord record = generator_->Build(state);  // built even when lost: the noise stream stays in step
    if (faults_.loseFrame == made_) return true;
    if (faults_.restartNumberingAt >= 2 && made_ >= faults_.restartNumberingAt)
        record.header.profileNumber = static_cast<uint32_t>(made_ - faults_.restartNumberingAt + 1);
    std::vector<uint8_t> frame(frameSize_);
    if (!EncodeProfileRecord(record, layout_, BlockOrder::Frame, frame.data())) {
        problem_ = "the profile does not fit the frame layout of the setup";
        return false;
    }
    if (faults_.badChecksumEvery > 0 && made_ % faults_.badChecksumEvery == 0) {
        ByteWriter w(frame.data(), frame.size());
        const size_t at = frame.size() - kChecksumSize;
        w.u16(at, static_cast<uint16_t>(ByteReader(frame.data(), frame.size()).u16(at) + 1));
    }
    for (const BitFlip& flip : faults_.bitFlips) {
        if (flip.profile == made_) frame[static_cast<size_t>(flip.byte)] ^= static_cast<uint8_t>(1u << flip.bit);
    }
    if (faults_.noiseBeforeFrames) bytes = FrameNoise();
    bytes.append(frame.begin(), frame.end());
    return true;
}

RecordingResult LiveTransect::Truth() const {
    RecordingResult r;
    if (!problem_.empty() || made_ == 0) {
        r.error = problem_.empty() ? "no profile was made" : problem_;
        return r;
    }
    const CellLayout layout = CellLayoutOf(scenario_.instrument);
    r.ok = true;
    r.plan = CutPlan(plan_, made_);
    r.truth = ComputeSpanTruth(scenario_.river, r.plan.startY, r.plan.endY, layout);
    r.sampled = SampledLayerFlows(scenario_.river, r.plan, layout);
    for (const ProfileState& state : r.plan.profiles)
        if (layout.CountedCells(scenario_.river.Depth(state.y)) == 0) ++r.profilesWithoutCells;
    return r;
}

}  // namespace rm::sim
