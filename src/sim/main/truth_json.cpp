#include "sim/main/truth_json.h"

namespace rm::sim::cli {

namespace {

nlohmann::json PartJson(const SectionPart& part) {
    return {{"width", part.width}, {"area", part.area}, {"discharge", part.discharge}};
}

}  // namespace

nlohmann::json TruthJson(const RiverScenario& s, const RecordingResult& r) {
    const SpanTruth& t = r.truth;
    nlohmann::json j;
    j["file"] = r.kvrPath.empty() ? nlohmann::json(nullptr) : nlohmann::json(r.kvrPath);
    j["pmk"] = r.pmkPath.empty() ? nlohmann::json(nullptr) : nlohmann::json(r.pmkPath);
    j["profiles"] = r.plan.profiles.size();
    j["interval"] = s.crossing.intervalS;
    j["start_bank"] = s.crossing.startBank == StartBank::Left ? "left" : "right";
    j["boat_speed"] = s.crossing.boatSpeedMs;
    j["discharge"] = t.span.discharge;
    j["top"] = t.layers.top;
    j["middle"] = t.layers.middle;
    j["bottom"] = t.layers.bottom;
    j["unmeasured"] = t.layers.unmeasured;
    j["width"] = t.span.width;
    j["area"] = t.span.area;
    j["mean_velocity"] = t.meanVelocity;
    j["span"] = {{"start_y", t.startY}, {"end_y", t.endY}, {"start_depth", t.startDepth}, {"end_depth", t.endDepth}};
    nlohmann::json left = PartJson(t.leftEdge);
    left["distance"] = t.leftEdge.width;
    nlohmann::json right = PartJson(t.rightEdge);
    right["distance"] = t.rightEdge.width;
    j["left_edge"] = left;
    j["right_edge"] = right;
    j["river"] = PartJson(t.river);
    j["sampled"] = {{"discharge", r.sampled.Total()},
                    {"top", r.sampled.top},
                    {"middle", r.sampled.middle},
                    {"bottom", r.sampled.bottom},
                    {"unmeasured", r.sampled.unmeasured}};
    j["profiles_without_cells"] = r.profilesWithoutCells;
    j["seed"] = s.seed;
    return j;
}

}  // namespace rm::sim::cli
