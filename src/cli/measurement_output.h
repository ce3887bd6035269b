#pragma once
// The measurement of a processed data set as the `process` command prints it: one JSON object in
// metric SI units (missing values stay 32767), or a text summary in the chosen units.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/survey_document.h"
#include "processing/recompute_pass.h"

namespace rm::cli {

// One profile's results, metric: discharges m3/s, velocities m/s, depth m.
struct ProfileRow {
    int profile = 0;
    double totalQ = 0, topQ = 0, middleQ = 0, bottomQ = 0;
    double meanEast = 0, meanNorth = 0;
    double depth = 0;
    int waterCells = 0;
    double qualityIndex = 0;
    double boatEast = 0, boatNorth = 0;
};

// Keeps every profile's results as the pass goes.
class ProfileCollector : public PassObserver {
public:
    void OnProfile(const ProcessingContext& ctx, int item, int slot, bool readOk) override;
    const std::vector<ProfileRow>& Rows() const { return rows_; }

private:
    std::vector<ProfileRow> rows_;
};

nlohmann::json MeasurementJson(const CSurveyKVRDoc& document);
nlohmann::json ProfilesJson(const std::vector<ProfileRow>& rows);

// The readable summary; `unitSystem` 1 metric, else English.
std::string MeasurementText(const CSurveyKVRDoc& document, int unitSystem);

}  // namespace rm::cli
