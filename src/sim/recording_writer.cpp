#include "sim/recording_writer.h"

#include <cmath>
#include <cstdio>

#include "data/kvr_data.h"
#include "data/nmea_gps_fix.h"
#include "data/nmea_sentences.h"
#include "data/pmk_file.h"
#include "data/side_file_path.h"
#include "sim/geo_offset.h"
#include "sim/instrument_geometry.h"
#include "sim/nmea_output.h"
#include "sim/transect.h"

namespace rm::sim {

namespace {
constexpr double kDegToRad = 0.0174532925199433;

// The simulated receiver: the fix of the GGA it sends at a time and place, as a reader
// decodes it from the text.
struct ReceivedFix {
    NodeRef sentences;
    GpsFix fix;
};

ReceivedFix Receive(const GeoReference& geo, const ProfileState& state, const CivilTime& time, EnVector position) {
    const GeoPoint p = ToGeographic(geo, position);
    ReceivedFix r;
    r.sentences = BuildSentenceTree(
        {GgaSentence(time, p), RmcSentence(time, p, std::hypot(state.boatVelocity.east, state.boatVelocity.north),
                                           AzimuthDeg(state.boatVelocity))},
        kGpsTalkerPrefix);
    TakeNewestFix(r.sentences, r.fix);
    return r;
}

GpsBlock BlockOf(const GpsFix& start, const GpsFix& end) {
    GpsBlock b;
    b.startTime = start.Time;
    b.startLatitude = start.Latitude;
    b.startLongitude = start.Longitude;
    b.endTime = end.Time;
    b.endLatitude = end.Latitude;
    b.endLongitude = end.Longitude;
    return b;
}

// Removes what a failed recording left behind, so that no half-written file looks like a
// recording.
void RemovePartialOutput(CKvrData& data, PmkWriter& pmk, const RecordingResult& result) {
    data.CloseFile();
    pmk.Close();
    std::remove(result.kvrPath.c_str());
    if (!result.pmkPath.empty()) std::remove(result.pmkPath.c_str());
}

}  // namespace

double EchoSounderReading(double depthM, double transducerDepthM, double pitchDeg, double rollDeg) {
    return depthM / (std::cos(pitchDeg * kDegToRad) * std::cos(rollDeg * kDegToRad)) - transducerDepthM;
}

RecordingResult WriteRiverRecording(const RiverScenario& scenario, UserPrompt& prompt) {
    RecordingResult result;
    result.error = ValidateScenario(scenario);
    if (!result.error.empty()) return result;

    const InstrumentRecords records = BuildInstrumentRecords(scenario);
    const CellLayout layout = CellLayoutOf(scenario.instrument);
    result.plan = PlanCrossing(scenario.river, scenario.crossing);
    const CrossingPlan& plan = result.plan;

    const TransectSettings settings = TransectSettingsOf(scenario, plan);
    TransectGenerator generator(scenario.river, settings, BeamToXyzOf(records), scenario.seed);
    if (!generator.Usable()) {
        result.error = "the beam matrix of the configuration cannot be inverted";
        return result;
    }

    CKvrData data;
    data.SetPrompt(&prompt);
    data.conf = records.conf;
    data.oper = records.oper;
    data.user = records.user;
    result.kvrPath = scenario.outputPath;
    PmkWriter pmk;
    if (!data.CreateDataFile(scenario.outputPath)) {
        result.error = "cannot create the data file " + scenario.outputPath;
        return result;
    }
    if (!data.WriteHeader()) {
        RemovePartialOutput(data, pmk, result);
        result.error = "cannot write the data file " + scenario.outputPath;
        return result;
    }

    const bool externalGps = scenario.gps == GpsSource::External;
    if (externalGps || scenario.echoSounder) {
        PmkSettings pmkSettings;
        pmkSettings.gpsPresent = externalGps ? 1 : 0;
        pmkSettings.echoSounderPresent = scenario.echoSounder ? 1 : 0;
        if (!pmk.CreatePmk(scenario.outputPath, pmkSettings, prompt)) {
            RemovePartialOutput(data, pmk, result);
            result.error = "cannot write the side file " + SideFilePath(scenario.outputPath, ".pmk");
            return result;
        }
        result.pmkPath = pmk.Path();
    }

    GpsFix lastFix;
    if (externalGps) {
        const ProfileState& first = plan.profiles.front();
        lastFix = Receive(settings.geo, first, first.startTime, first.startPosition).fix;
    }
    for (const ProfileState& state : plan.profiles) {
        ProfileRecord record = generator.Build(state);
        NodeRef gpsSentences, echoSentences;
        if (externalGps) {
            const ReceivedFix received = Receive(settings.geo, state, state.endTime, state.endPosition);
            record.hasGps = true;
            record.gps = BlockOf(lastFix, received.fix);
            lastFix = received.fix;
            gpsSentences = received.sentences;
        }
        if (scenario.echoSounder) {
            const double reading = EchoSounderReading(scenario.river.Depth(state.y), layout.transducerDepthM,
                                                      state.PitchDeg(), state.RollDeg());
            echoSentences = BuildSentenceTree({DptSentence(reading), DbtSentence(reading)}, kEchoTalkerPrefix);
        }
        if (!data.WriteProfile(record)) {
            RemovePartialOutput(data, pmk, result);
            result.error = "cannot write profile " + std::to_string(state.number) + " to " + scenario.outputPath;
            return result;
        }
        if (pmk.IsOpen() && !pmk.AppendProfile(gpsSentences, echoSentences, prompt)) {
            RemovePartialOutput(data, pmk, result);
            result.error = "cannot write profile " + std::to_string(state.number) + " to " + result.pmkPath;
            return result;
        }
        if (layout.CountedCells(scenario.river.Depth(state.y)) == 0) ++result.profilesWithoutCells;
    }
    pmk.Close();
    if (!data.CloseFile()) {
        RemovePartialOutput(data, pmk, result);
        result.error = "cannot finish the data file " + scenario.outputPath;
        return result;
    }
    result.truth = ComputeSpanTruth(scenario.river, plan.startY, plan.endY, layout);
    result.sampled = SampledLayerFlows(scenario.river, plan, layout);
    result.ok = true;
    return result;
}

}  // namespace rm::sim
