#pragma once
// The content shared by the two flow data exchange files (.fdx text, .fpx binary tree): the
// description of a measurement (file, instrument, record and its trees) and its table of one
// sample, 26 values in a fixed order, all metric.

#include <array>
#include <cstdint>
#include <string>

#include "data/kvr_data.h"
#include "data/node_tree.h"
#include "processing/discharge_data.h"

namespace rm {

class CSurveyKVRDoc;

constexpr const char* kFlowApplicationName = "Ripplemark";
constexpr const char* kFlowSystemType = "KVR";
constexpr const char* kFlowDataType = "InstantaneousQ";
// One second in days, as the files compute the end of a transect.
constexpr double kOneSecondInDays = 1.1574074074074073e-5;

// The instrument frequency text of the exchange files by SystemFreq code 0..6; empty for any
// other code. (The .sum file words some of these differently.)
std::string FlowFrequencyText(int code);

// One measurement as the exchange files see it.
struct FlowMeasurement {
    std::string fileName;  // data file name with ".kvr", no folder
    std::string filePath;  // folder of the data file
    const CDischargeData* record = nullptr;
    NodeRef system;          // the record's system tree (`Conf`, `Setup`, ...)
    bool hasSource = false;  // the record belongs to an open data set
};

// The measurement of an open document: its record, system tree and file name.
FlowMeasurement FlowMeasurementOf(const CSurveyKVRDoc& document);

// A record can fill a sample table when it exists, is active and has a source or a file name.
bool FlowRecordUsable(const FlowMeasurement& m);

// The text of a key of the `Conf` child of the system tree; empty when missing. Nothing is added
// to the tree.
std::string SystemConfText(const NodeRef& system, const char* key);
// SystemFreq of the system tree as the frequency text.
std::string FlowSystemFrequency(const NodeRef& system);

// Days since 30 December 1899 of a date and time with zero milliseconds (the OLE date form);
// false for a date or time out of range (year 100..9999, real month day, hour < 24, minute and
// second < 60).
bool OleDateOf(const ProfileTime& t, double& days);

enum class FlowValueKind { Long, Date, Duration, Byte, Double };

struct FlowSampleRow {
    const char* name;
    const char* unit;
    const char* type;  // "LONG", "VariantDate", "DOUBLE" or "BYTE"
    FlowValueKind kind;
};
constexpr int kFlowSampleRows = 26;
const std::array<FlowSampleRow, kFlowSampleRows>& FlowSampleStructure();

// The values of the sample, one per row of the structure.
struct FlowSample {
    ProfileTime start;           // for the date text of the Time row
    double startDate = 0.0;      // OLE date of the start, 0 when it does not convert
    double durationDays = 0.0;   // end + one averaging interval - start
    std::array<double, kFlowSampleRows> values{};  // Time and Duration rows hold the above
};
FlowSample MakeFlowSample(const FlowMeasurement& m);

// "%02d/%02d/%4d %02d:%02d:%02d": day, month, year, hour, minute, second.
std::string FlowDateText(const ProfileTime& t);

}  // namespace rm
