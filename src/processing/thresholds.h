#pragma once
// The data warning thresholds: for seven live values a "Warning" and an "Alert" limit, kept in
// the application tree's `Thresholds` node with one child per quantity (keys `Variable`, the
// GetProfileValue code, `Warning`, `Alert`, and `Multiplier`, the factor to English display
// units). A value below Warning shows as good data, from Warning as a warning, from Alert on as
// an alert; the check of the "Data Warning Thresholds" dialog before its values are stored.

#include <array>
#include <string>
#include <vector>

#include "data/node_tree.h"
#include "processing/dialog_check.h"

namespace rm {

struct Threshold {
    std::string name;
    int variable = 0;
    double warning = 0.0;
    double alert = 0.0;
    double multiplier = 1.0;
};

// "Data Quality Index", "Boat/Water Speed", "Boat Speed", "Water Speed", "Heading", "Pitch",
// "Roll", with their default limits.
const std::array<Threshold, 7>& DefaultThresholds();

// Reads every quantity from `thresholds` (the `Thresholds` node), creating a missing child or
// key with its default.
std::vector<Threshold> ReadThresholds(const NodeRef& thresholds);
void StoreThreshold(const NodeRef& thresholds, const Threshold& threshold);

enum class DataQualityClass { Good, Warning, Alert, NoValue };

// The class of a value in display units (as GetProfileValue gives it); in English units the
// limits are taken times the multiplier. MissingValue has no class.
DataQualityClass ClassifyValue(double value, const Threshold& threshold, int unitSystem);
// The colour key under "Data Quality Colors": "Good Data", "Warning Data", "Alert Data".
const char* QualityColorKey(DataQualityClass quality);

// A limit as the dialog shows it: times the multiplier in English units.
double ThresholdDisplayValue(double value, const Threshold& threshold, int unitSystem);

// OK of the dialog for the selected quantity: parses both fields, brings them back to the
// stored unit, rounds them half away from zero to one decimal and checks them. On success
// `stored` holds the new limits; on failure nothing is to be stored.
struct ThresholdEntry {
    DialogCheck check;
    Threshold stored;
};
ThresholdEntry CheckThresholdDialog(const Threshold& current, const std::string& warningText,
                                    const std::string& alertText, int unitSystem);

}  // namespace rm
