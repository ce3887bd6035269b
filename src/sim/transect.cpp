#include "sim/transect.h"

#include <algorithm>
#include <cmath>

#include "data/byte_io.h"
#include "sim/echo_model.h"
#include "sim/sim_clock.h"

namespace rm::sim {

namespace {
constexpr double kDegToRad = 0.0174532925199433;
constexpr int16_t kLargestGoodRaw = 32766;

// Header values that a healthy instrument reports and processing does not use.
constexpr uint8_t kAttitudeDeviationTenths = 5;
constexpr uint8_t kInputVoltageFifths = 60;  // 12 V
}  // namespace

TransectGenerator::TransectGenerator(const VirtualRiver& river, const TransectSettings& settings,
                                     const SmallMatrix& beamToXyz, uint64_t seed)
    : river_(river), settings_(settings), beamToXyz_(beamToXyz), noise_(seed) {
    SmallMatrix inverse;
    usable_ = beamToXyz_.n == settings_.beams && Invert(beamToXyz_, inverse);
    waterCarry_.assign(static_cast<size_t>(settings_.beams * std::max(settings_.layout.cells, 0)), 0.0);
}

int16_t TransectGenerator::ToRaw(double counts, double& carry) {
    const double wanted = counts + carry;
    double r =
        std::clamp(std::round(wanted), -static_cast<double>(kLargestGoodRaw), static_cast<double>(kLargestGoodRaw));
    if (r == kUnwrapBadVelocity) r += wanted > r ? 1.0 : -1.0;
    carry = std::fabs(wanted - r) < 1.5 ? wanted - r : 0.0;
    return static_cast<int16_t>(r);
}

int16_t TransectGenerator::Stored(int16_t counts) const {
    const double limit = settings_.unwrap.limit * settings_.countsPerMm;
    if (!settings_.wrapVelocities || !(limit >= 1.0)) return counts;
    const double period = 2.0 * limit;
    double wrapped = counts - period * std::floor((counts + limit) / period);
    if (wrapped == kUnwrapBadVelocity) wrapped -= period;
    return static_cast<int16_t>(wrapped);
}

void WriteShallowWaterHead(const TransectSettings& settings, ProfileRecord& rec) {
    rec.hasShallowWater = true;
    rec.shallowWater.fill(0);
    ByteWriter w(rec.shallowWater.data(), rec.shallowWater.size());
    const CellLayout& L = settings.layout;
    w.u32(0, 1);
    // The reference range in tenths of a centimetre below the transducer: from the end of the
    // blanking, one cell long, which a reader takes as the cell after the first.
    w.u16(4, static_cast<uint16_t>(std::lround(L.blankM * 1000.0)));
    w.u16(6, static_cast<uint16_t>(std::lround(L.cellM * 1000.0)));
    w.u16(8, settings.pulseWord);
    w.u16(10, settings.halfLimitWord);
    for (int k = 0; k < 4; ++k) {
        w.i16(static_cast<size_t>(12 + 2 * k), kBadVelocity);
        w.i16(static_cast<size_t>(24 + 2 * k), kBadVelocity);
    }
}

void TransectGenerator::FillHeader(const ProfileState& state, ProfileHeader& h) const {
    h.type = kProfileSyncByte;
    h.flags = kProfileRecordType;
    h.size = settings_.gps == GpsSource::External ? kProfileHeaderWordWithGps : kProfileHeaderWord;
    h.profileNumber = static_cast<uint32_t>(state.number);
    h.year = static_cast<int16_t>(state.startTime.year);
    h.month = static_cast<uint8_t>(state.startTime.month);
    h.day = static_cast<uint8_t>(state.startTime.day);
    h.hour = static_cast<uint8_t>(state.startTime.hour);
    h.minute = static_cast<uint8_t>(state.startTime.minute);
    h.second = static_cast<uint8_t>(state.startTime.second);
    h.hundredths = 0;
    h.pingCount = static_cast<uint32_t>(std::lround((state.endS - state.startS) * settings_.pingsPerSecond));
    h.heading = state.headingTenths;
    h.pitch = state.pitchTenths;
    h.roll = state.rollTenths;
    h.temperature = static_cast<int16_t>(std::lround(settings_.temperatureC * 100.0));
    h.sdHeading = h.sdPitch = h.sdRoll = kAttitudeDeviationTenths;
    h.inputVoltage = kInputVoltageFifths;
}

void TransectGenerator::FillWater(const ProfileState& state, const SmallMatrix& toRecorded, ProfileRecord& rec) {
    const CellLayout& L = settings_.layout;
    const double depth = river_.Depth(state.y);
    const double bedRange = depth - L.transducerDepthM;
    const double sideLobeLimit = bedRange * std::cos(settings_.slantDeg * kDegToRad);
    const EnVector down = river_.Downstream();
    const double noiseMm = settings_.velocityNoiseCms * 10.0;

    for (int cell = 0; cell < rec.cells; ++cell) {
        const double centre = L.CellCentre(cell) - L.transducerDepthM;  // range below the transducer
        for (int beam = 0; beam < rec.beams; ++beam)
            rec.Amplitude(beam, cell) = EchoAmplitude(centre, bedRange, L.cellM, beam);
        if (centre + 0.5 * L.cellM > sideLobeLimit) {
            for (int beam = 0; beam < rec.beams; ++beam) {
                rec.Velocity(beam, cell) = kBadVelocity;
                rec.StdError(beam, cell) = kMissingStdError;
                waterCarry_[static_cast<size_t>(beam * rec.cells + cell)] = 0.0;
            }
            continue;
        }
        // Heights above the bed of the cell's lower and upper edge.
        const double zLow = bedRange - centre - 0.5 * L.cellM;
        const double zHigh = bedRange - centre + 0.5 * L.cellM;
        const EnVector water = river_.LayerMeanVelocity(state.y, zLow, zHigh) * down;
        const EnVector relative = water - state.boatVelocity;
        const std::array<double, 4> earth{relative.east * 1000.0, relative.north * 1000.0, 0.0, 0.0};
        const std::array<double, 4> recorded = Apply(toRecorded, earth);
        const uint8_t stdError = VelocityStdError(centre, settings_.velocityNoiseCms);
        const double counts = settings_.countsPerMm;
        for (int beam = 0; beam < rec.beams; ++beam) {
            rec.Velocity(beam, cell) = ToRaw((recorded[static_cast<size_t>(beam)] + noise_.Next(noiseMm)) * counts,
                                             waterCarry_[static_cast<size_t>(beam * rec.cells + cell)]);
            rec.StdError(beam, cell) = stdError;
        }
    }
}

void TransectGenerator::FillBottomTrack(const ProfileState& state, const SmallMatrix& toRecorded, ProfileRecord& rec) {
    rec.hasBottomTrack = true;
    rec.bottomTrack.fill(0);
    ByteWriter w(rec.bottomTrack.data(), rec.bottomTrack.size());
    w.u8(1, 1);  // good bottom-track ensemble
    const double bedRange = river_.Depth(state.y) - settings_.layout.transducerDepthM;
    const uint16_t depthCm = static_cast<uint16_t>(std::clamp(std::lround(bedRange * 100.0), 1L, 32766L));
    for (int k = 0; k < 4; ++k) w.u16(static_cast<size_t>(2 + 2 * k), depthCm);
    // The bed moves against the boat.
    const std::array<double, 4> earth{-state.boatVelocity.east * 1000.0, -state.boatVelocity.north * 1000.0, 0.0, 0.0};
    const std::array<double, 4> recorded = Apply(toRecorded, earth);
    const double noiseMm = settings_.bottomTrackNoiseCms * 10.0;
    for (int beam = 0; beam < settings_.beams; ++beam) {
        const size_t b = static_cast<size_t>(beam);
        w.i16(10 + 2 * b, ToRaw(recorded[b] + noise_.Next(noiseMm), bottomCarry_[b]));
    }
}

void TransectGenerator::FillShallowWater(ProfileRecord& rec) const { WriteShallowWaterHead(settings_, rec); }

void TransectGenerator::FillReferences(ProfileRecord& rec) const {
    // Above the reader's threshold of 10, so that every beam is moved to its reference.
    constexpr uint8_t kReferenceCount = 20;
    ByteWriter w(rec.shallowWater.data(), rec.shallowWater.size());
    const UnwrapParameters& p = settings_.unwrap;
    for (int beam = 0; beam < rec.beams && beam < 4; ++beam) {
        double sum = 0.0;
        int good = 0;
        for (int cell = p.firstCell; cell < p.firstCell + p.cellCount && cell < rec.cells; ++cell) {
            const int16_t v = rec.Velocity(beam, cell);
            if (v == kBadVelocity) continue;
            sum += v;
            ++good;
        }
        if (good == 0) continue;
        const size_t b = static_cast<size_t>(beam);
        w.i16(24 + 2 * b, static_cast<int16_t>(std::lround(sum / good / settings_.countsPerMm)));
        w.u8(32 + b, kReferenceCount);
    }
}

GpsBlock TransectGenerator::InternalGpsBlock(const ProfileState& state) const {
    const GeoPoint a = ToGeographic(settings_.geo, state.startPosition);
    const GeoPoint b = ToGeographic(settings_.geo, state.endPosition);
    GpsBlock gps;
    gps.startTime = HhmmssOf(state.startTime);
    gps.startLatitude = a.latitudeDeg;
    gps.startLongitude = a.longitudeDeg;
    gps.endTime = HhmmssOf(state.endTime);
    gps.endLatitude = b.latitudeDeg;
    gps.endLongitude = b.longitudeDeg;
    return gps;
}

ProfileRecord TransectGenerator::Build(const ProfileState& state) {
    ProfileRecord rec;
    rec.Resize(settings_.layout.cells, settings_.beams);
    FillHeader(state, rec.header);
    const SmallMatrix orientation = OrientationMatrix(state.HeadingDeg(), state.PitchDeg(), state.RollDeg());
    const SmallMatrix toRecorded = EarthToRecorded(settings_.coordinateSystem, beamToXyz_, orientation);
    if (!usable_ || toRecorded.n != settings_.beams) return rec;
    FillWater(state, toRecorded, rec);
    if (settings_.shallowWaterBlock) FillShallowWater(rec);
    if (settings_.wrapVelocities && settings_.shallowWaterBlock) {
        FillReferences(rec);
        for (int beam = 0; beam < rec.beams; ++beam) {
            for (int cell = 0; cell < rec.cells; ++cell) {
                int16_t& v = rec.Velocity(beam, cell);
                if (v != kBadVelocity) v = Stored(v);
            }
        }
    }
    if (settings_.bottomTrackMode != 0) FillBottomTrack(state, toRecorded, rec);
    if (settings_.gps != GpsSource::None) {
        rec.hasGps = true;
        rec.gps = InternalGpsBlock(state);
    }
    return rec;
}

}  // namespace rm::sim
