#include "sim/river_scenario.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "data/profile_codec.h"
#include "sim/geo_offset.h"
#include "sim/instrument_geometry.h"

namespace rm::sim {

namespace {

constexpr uint8_t kOperRecordType = 17;
constexpr uint8_t kUserRecordType = 18;
constexpr uint16_t kPingIntervalTenths = 2;     // 5 pings a second
constexpr uint16_t kPcPingIntervalTenths = 1;   // 10 pings a second in pulse-coherent mode
constexpr int kFinerUnitFirmware = 165;
constexpr double kLargestFinerVelocityMs = 3.2766;  // 32766 tenths of mm/s
constexpr int kLeastAmbiguityMm = 500;
constexpr double kDegToRad = 0.0174532925199433;

bool EndsWithKvr(const std::string& path) {
    if (path.size() < 5) return false;
    std::string ext = path.substr(path.size() - 4);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const char before = path[path.size() - 5];
    return ext == ".kvr" && before != '/';
}

std::string Stem(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (name.size() >= 4) name.resize(name.size() - 4);
    return name;
}

bool PlainText(const std::string& text) {
    for (unsigned char c : text) {
        if (c < 0x20 || c > 0x7E) return false;
    }
    return true;
}

// The speed of sound (m/s) of the water the instrument was told about, at the surface.
double SoundSpeed(double salinity, double temperature) {
    const double t = temperature;
    return 1449.2 + t * (4.6 + t * (-0.055 + 0.00029 * t)) + (salinity - 35.0) * (1.34 - 0.01 * t);
}

std::string ValidateInstrument(const InstrumentOptions& in) {
    if (in.frequencyIndex < 0 || in.frequencyIndex > 6) return "the frequency index must be 0 to 6";
    if (in.beams != 3 && in.beams != 4) return "the number of beams must be 3 or 4";
    if (in.cells < 1 || in.cells > 128) return "the number of cells must be 1 to 128";
    if (in.cellSizeCm < 1 || in.cellSizeCm > 1000) return "the cell size must be 1 to 1000 cm";
    if (in.blankCm < 0 || in.blankCm > 1000) return "the blanking distance must be 0 to 1000 cm";
    if (in.transducerDepthCm < 0 || in.transducerDepthCm > 1000) return "the transducer depth must be 0 to 1000 cm";
    if (in.coordinateSystem < 0 || in.coordinateSystem > 2) return "the coordinate system must be beam, xyz or enu";
    if (in.bottomTrackMode < 0 || in.bottomTrackMode > 2) return "the bottom track mode must be 0, 1 or 2";
    // Below 4.4 the setup's tail (bottom track, internal GPS) is not read back.
    if (in.cpuVersion < 44 || in.cpuVersion > 255) return "the firmware version number must be 44 to 255";
    if (in.serialNumber.empty() || in.serialNumber.size() > 9 || !PlainText(in.serialNumber))
        return "the serial number must be 1 to 9 plain characters";
    if (!std::isfinite(in.temperatureC) || in.temperatureC < -5.0 || in.temperatureC > 40.0)
        return "the water temperature must be -5 to 40 degrees C";
    if (!std::isfinite(in.salinityPpt) || in.salinityPpt < 0.0 || in.salinityPpt > 60.0)
        return "the salinity must be 0 to 60 ppt";
    return {};
}

// The finer velocity unit of new firmware holds at most 3.2766 m/s: the fastest water relative
// to the boat (surface speed plus boat speed, with four standard deviations of noise) must fit.
std::string ValidateVelocityRange(const RiverScenario& s) {
    const InstrumentOptions& in = s.instrument;
    const bool finer = in.cpuVersion >= kFinerUnitFirmware && (in.pulseCoherent || in.bottomTrackMode == 2);
    if (!finer) return {};
    const double surface = (1.0 + s.river.verticalExponent) * s.river.maxVelocityMs;
    const double fastest = surface + std::fabs(s.crossing.boatSpeedMs) + 4.0 * s.velocityNoiseCms * 0.01;
    if (fastest <= kLargestFinerVelocityMs) return {};
    char text[200];
    std::snprintf(text, sizeof text,
                  "with firmware from 16.5 on velocities are recorded in tenths of mm/s, at most %.4f m/s; the "
                  "water may move at up to %.2f m/s against the boat",
                  kLargestFinerVelocityMs, fastest);
    return text;
}

// A reader takes in at most kMaxRecordBytes of one profile record.
std::string ValidateRecordSize(const RiverScenario& s) {
    const InstrumentRecords records = BuildInstrumentRecords(s);
    const GpsForm gps = s.gps == GpsSource::None ? GpsForm::None : GpsForm::Long48;
    const size_t bytes = MakeProfileLayout(records.conf, records.user, gps, 2).RecordSize();
    if (bytes <= kMaxRecordBytes) return {};
    char text[160];
    std::snprintf(text, sizeof text,
                  "a profile record of %zu bytes is larger than the %d bytes a reader takes in; use fewer cells", bytes,
                  kMaxRecordBytes);
    return text;
}

// A description of the scenario for the setup's comment lines when the user gave none.
std::string DefaultComment(const RiverScenario& s, int line) {
    char text[128];
    if (line == 0) {
        std::snprintf(text, sizeof text, "Virtual river %.1f m wide, %.2f m deep, %.2f m/s", s.river.widthM,
                      s.river.maxDepthM, s.river.maxVelocityMs);
    } else if (line == 1) {
        std::snprintf(text, sizeof text, "From the %s bank at %.2f m/s, %d x %d s",
                      s.crossing.startBank == StartBank::Left ? "left" : "right", s.crossing.boatSpeedMs,
                      s.crossing.profiles, s.crossing.intervalS);
    } else {
        std::snprintf(text, sizeof text, "Noise %.2f cm/s, seed %llu", s.velocityNoiseCms,
                      static_cast<unsigned long long>(s.seed));
    }
    std::string comment = text;
    if (comment.size() > 59) comment.resize(59);
    return comment;
}

}  // namespace

std::string DeploymentNameOf(const RiverScenario& s) {
    if (!s.deploymentName.empty()) return s.deploymentName;
    std::string stem = Stem(s.outputPath);
    if (stem.size() > 8) stem.resize(8);
    return stem;
}

CellLayout CellLayoutOf(const InstrumentOptions& in) {
    CellLayout layout;
    layout.transducerDepthM = in.transducerDepthCm * 0.01;
    layout.blankM = in.blankCm * 0.01;
    layout.cellM = in.cellSizeCm * 0.01;
    layout.cells = in.cells;
    layout.discardPercent = 10.0;
    return layout;
}

std::string ValidateScenario(const RiverScenario& s) {
    if (std::string e = s.river.Validate(); !e.empty()) return e;
    if (std::string e = ValidateCrossing(s.river, s.crossing); !e.empty()) return e;
    if (std::string e = ValidateInstrument(s.instrument); !e.empty()) return e;
    if (std::string e = ValidateVelocityRange(s); !e.empty()) return e;
    if (std::string e = ValidateRecordSize(s); !e.empty()) return e;
    GeoReference geo;
    geo.latitudeDeg = s.latitudeDeg;
    geo.longitudeDeg = s.longitudeDeg;
    if (std::string e = ValidateGeoReference(geo); !e.empty()) return e;
    if (!std::isfinite(s.velocityNoiseCms) || s.velocityNoiseCms < 0.0 || s.velocityNoiseCms > 100.0 ||
        !std::isfinite(s.bottomTrackNoiseCms) || s.bottomTrackNoiseCms < 0.0 || s.bottomTrackNoiseCms > 100.0)
        return "the noise must be 0 to 100 cm/s";
    if (!EndsWithKvr(s.outputPath)) return "the output file must be named *.kvr";
    const std::string name = DeploymentNameOf(s);
    if (name.empty() || name.size() > 8 || !PlainText(name) || name.find('/') != std::string::npos)
        return "the deployment name must be 1 to 8 plain characters";
    for (const std::string& line : s.comments) {
        if (line.size() > 59 || !PlainText(line)) return "a comment line must be at most 59 plain characters";
    }
    // The boat must float where the crossing begins and ends.
    const SpanEnds ends = SpanEndsOf(s.river, s.crossing);
    const double transducer = s.instrument.transducerDepthCm * 0.01;
    const double endDepth = std::min(s.river.Depth(ends.startY), s.river.Depth(ends.endY));
    if (endDepth <= transducer + 0.01) {
        char text[160];
        std::snprintf(text, sizeof text,
                      "the water at an end of the crossing is %.2f m deep, not deeper than the transducer at %.2f m",
                      endDepth, transducer);
        return text;
    }
    return {};
}

InstrumentRecords BuildInstrumentRecords(const RiverScenario& s) {
    const InstrumentOptions& in = s.instrument;
    InstrumentRecords r;

    InstrumentConf& c = r.conf;
    c.type = kConfType;
    c.version = 2;
    c.size = static_cast<uint16_t>(kConfSize);
    c.CPUSoftwareVerNum = static_cast<uint8_t>(in.cpuVersion);
    c.DSPSoftwareVerNum = 30;
    c.BoardRev = 'F';
    c.SerialNumber = in.serialNumber;
    c.KvrType = static_cast<uint8_t>(in.frequencyIndex);
    c.Nbeams = static_cast<uint8_t>(in.beams);
    c.BeamGeometry = in.beams == 4 ? 3 : 1;  // "4_Beams_JANUS" or "3_Beams"
    c.SlantAngle = static_cast<int16_t>(std::lround(kBeamSlantDeg * 10.0));
    c.SensorOrientation = 0;  // down
    c.CompassInstalled = 1;
    c.RecorderInstalled = 1;
    c.TemperatureInstalled = 1;
    c.PressureInstalled = 0;
    const std::array<int16_t, 16> matrix = BeamMatrixEntries(in.beams, kBeamSlantDeg);
    std::copy(matrix.begin(), matrix.end(), c.TransformationMatrix.begin());
    c.reserved68 = 90;
    c.InternalGpsAvailable = s.gps == GpsSource::Internal ? 1 : 0;

    OperationRecord& o = r.oper;
    o.type = kOperRecordType;
    o.version = 1;
    o.size = static_cast<uint16_t>(kOperSize);

    UserSetup& u = r.user;
    u.type = kUserRecordType;
    u.version = 1;
    u.size = static_cast<uint16_t>(kUserSize);
    u.DefaultTemperature = static_cast<int16_t>(std::lround(in.temperatureC * 10.0));
    u.DefaultSalinity = static_cast<int16_t>(std::lround(in.salinityPpt * 10.0));
    u.DefaultSpeedOfSound = static_cast<int16_t>(std::lround(SoundSpeed(in.salinityPpt, in.temperatureC) * 10.0));
    u.NumberOfCells = static_cast<uint16_t>(in.cells);
    u.CellSizeCm = static_cast<float>(in.cellSizeCm);
    u.BlankDistance = static_cast<uint16_t>(in.blankCm);
    u.SensorDepth = static_cast<uint32_t>(in.transducerDepthCm);
    u.TemperatureMode = 1;  // measured: the header carries the same temperature
    u.BottomTrack = static_cast<uint8_t>(in.bottomTrackMode);
    u.PCMode = in.pulseCoherent ? 1 : 0;
    const int intervalUnits = IntervalsInTenths(u) ? 10 : 1;
    u.AveragingInterval = static_cast<uint16_t>(s.crossing.intervalS * intervalUnits);
    u.ProfileInterval = static_cast<uint16_t>(s.crossing.intervalS * intervalUnits);
    u.PingInterval = in.pulseCoherent ? kPcPingIntervalTenths : kPingIntervalTenths;
    u.CoordinateSystem = static_cast<uint8_t>(in.coordinateSystem);
    u.DeploymentName = DeploymentNameOf(s);
    u.DeploymentYear = static_cast<int16_t>(s.crossing.start.year);
    u.DeploymentMonth = static_cast<uint8_t>(s.crossing.start.month);
    u.DeploymentDay = static_cast<uint8_t>(s.crossing.start.day);
    u.DeploymentHour = static_cast<uint8_t>(s.crossing.start.hour);
    u.DeploymentMinute = static_cast<uint8_t>(s.crossing.start.minute);
    u.DeploymentSecond = static_cast<uint8_t>(s.crossing.start.second);
    const bool described = s.comments[0].empty() && s.comments[1].empty() && s.comments[2].empty();
    u.CommentLine1 = described ? DefaultComment(s, 0) : s.comments[0];
    u.CommentLine2 = described ? DefaultComment(s, 1) : s.comments[1];
    u.CommentLine3 = described ? DefaultComment(s, 2) : s.comments[2];
    u.EnableInternalGps = s.gps == GpsSource::Internal ? 1 : 0;

    // The sample and pulse words from which firmware 1.6 to 1.9 and from 15.0 on derive the
    // ambiguity velocity: L = round(c^2 / 8 / f / samples), c the speed of sound in tenths of
    // m/s, f the frequency in kHz. The samples are rounded down, so that L is not below the
    // velocity asked for.
    const double frequency = UnwrapFrequencyKHz(c.KvrType);
    if (frequency > 0.0) {
        const double c2 = static_cast<double>(u.DefaultSpeedOfSound) * u.DefaultSpeedOfSound;
        const double samples = std::floor(c2 * 0.125 / frequency / AmbiguityVelocityMm(s));
        o.unwrapSamples = static_cast<int16_t>(std::clamp(samples, 1.0, 32767.0));
        o.unwrapPulses = 1;
    }
    return r;
}

int AmbiguityVelocityMm(const RiverScenario& s) {
    const CellLayout layout = CellLayoutOf(s.instrument);
    const double cosSlant = std::cos(kBeamSlantDeg * kDegToRad);
    const double referenceEnd = layout.blankM + 2.0 * layout.cellM;  // far edge of cell 1 below the transducer
    double fastest = 0.0;
    for (const ProfileState& state : PlanCrossing(s.river, s.crossing).profiles) {
        const double depth = s.river.Depth(state.y);
        if (referenceEnd <= (depth - layout.transducerDepthM) * cosSlant) continue;  // cell 1 holds water
        const double water = s.river.VelocityAtHeight(state.y, depth);  // the surface, where it is fastest
        const double boat = std::hypot(state.boatVelocity.east, state.boatVelocity.north);
        fastest = std::max(fastest, water + boat + 4.0 * s.velocityNoiseCms * 0.01);
    }
    return std::max(kLeastAmbiguityMm, static_cast<int>(std::ceil(fastest * 1100.0)));
}

bool IntervalsInTenths(const UserSetup& user) { return IntervalUnitSeconds(user) < 1.0; }

SmallMatrix BeamToXyzOf(const InstrumentRecords& records) {
    const DerivedValues derived = DeriveValues(records.conf, records.oper, records.user);
    SmallMatrix m;
    m.n = derived.matrixSize;
    for (int i = 0; i < m.n; ++i)
        for (int j = 0; j < m.n; ++j) m.at(i, j) = derived.matrix[static_cast<size_t>(i * m.n + j)];
    return m;
}

TransectSettings TransectSettingsOf(const RiverScenario& scenario, const CrossingPlan& plan) {
    return TransectSettingsOf(scenario, plan, BuildInstrumentRecords(scenario));
}

TransectSettings TransectSettingsOf(const RiverScenario& scenario, const CrossingPlan& plan,
                                    const InstrumentRecords& records) {
    TransectSettings settings;
    settings.beams = scenario.instrument.beams;
    settings.layout = CellLayoutOf(scenario.instrument);
    settings.coordinateSystem = scenario.instrument.coordinateSystem;
    settings.bottomTrackMode = scenario.instrument.bottomTrackMode;
    settings.shallowWaterBlock = scenario.instrument.pulseCoherent || scenario.instrument.bottomTrackMode == 2;
    settings.gps = scenario.gps;
    settings.geo.latitudeDeg = scenario.latitudeDeg;
    settings.geo.longitudeDeg = scenario.longitudeDeg;
    if (!plan.profiles.empty()) settings.geo.origin = plan.profiles.front().startPosition;
    settings.velocityNoiseCms = scenario.velocityNoiseCms;
    settings.bottomTrackNoiseCms = scenario.bottomTrackNoiseCms;
    settings.temperatureC = scenario.instrument.temperatureC;
    settings.slantDeg = kBeamSlantDeg;

    const DerivedValues derived = DeriveValues(records.conf, records.oper, records.user);
    settings.countsPerMm = 1.0 / derived.documentShallowWaterVelocityFactor;
    settings.wrapVelocities = derived.pcMode && settings.shallowWaterBlock;
    settings.pingsPerSecond = derived.pcMode ? 10 : 5;
    const int ambiguity = AmbiguityVelocityMm(scenario);
    settings.halfLimitWord = static_cast<uint16_t>(std::min((ambiguity + 1) / 2, 65535));
    settings.pulseWord = static_cast<uint16_t>(std::max<int16_t>(records.oper.unwrapSamples, 0));
    // The limit and reference range exactly as a reader will take them from these records.
    ProfileRecord probe;
    probe.Resize(records.user.NumberOfCells, records.conf.Nbeams);
    WriteShallowWaterHead(settings, probe);
    settings.unwrap = ComputeUnwrapParameters(probe, records.conf, records.oper, records.user);
    return settings;
}

}  // namespace rm::sim
