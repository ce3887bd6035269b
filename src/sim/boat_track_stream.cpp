#include "sim/boat_track_stream.h"

#include <algorithm>
#include <cmath>

#include "sim/nmea_output.h"
#include "sim/recording_writer.h"

namespace rm::sim {

BoatTrack::BoatTrack(const RiverScenario& scenario) : scenario_(scenario) {
    plan_ = PlanCrossing(scenario_.river, scenario_.crossing);
    geo_ = TransectSettingsOf(scenario_, plan_).geo;
    durationS_ = static_cast<double>(plan_.profiles.size()) * scenario_.crossing.intervalS;
}

BoatTrack::Sample BoatTrack::At(double seconds) const {
    Sample s;
    s.time = AddSeconds(scenario_.crossing.start, static_cast<int64_t>(std::floor(seconds)));
    if (plan_.profiles.empty()) return s;
    const double t = std::clamp(seconds, 0.0, durationS_);
    const int interval = std::max(scenario_.crossing.intervalS, 1);
    const size_t index = std::min(static_cast<size_t>(t / interval), plan_.profiles.size() - 1);
    const ProfileState& profile = plan_.profiles[index];
    const ProfileState& first = plan_.profiles.front();
    s.position = first.startPosition + t * first.boatVelocity;
    const bool moving = seconds >= 0.0 && seconds < durationS_;
    s.velocity = moving ? first.boatVelocity : EnVector{};
    s.y = plan_.startY + (plan_.endY - plan_.startY) * (durationS_ > 0.0 ? t / durationS_ : 0.0);
    s.pitchDeg = profile.PitchDeg();
    s.rollDeg = profile.RollDeg();
    return s;
}

std::string BoatTrack::GpsSentences(double seconds, const std::string& talker) const {
    const Sample s = At(seconds);
    const GeoPoint p = ToGeographic(geo_, s.position);
    const double speed = std::hypot(s.velocity.east, s.velocity.north);
    return GgaSentence(s.time, p, talker) + "\r\n" +
           RmcSentence(s.time, p, speed, speed > 0.0 ? AzimuthDeg(s.velocity) : 0.0, talker) + "\r\n";
}

std::string BoatTrack::EchoSentences(double seconds) const {
    const Sample s = At(seconds);
    const double reading = EchoSounderReading(scenario_.river.Depth(s.y), scenario_.instrument.transducerDepthCm * 0.01,
                                              s.pitchDeg, s.rollDeg);
    return DptSentence(reading) + "\r\n" + DbtSentence(reading) + "\r\n";
}

}  // namespace rm::sim
