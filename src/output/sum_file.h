#pragma once
// The .sum file: the text summary of one transect that "&Output to File..." of the "Discharge
// Calculation" dialog writes ("KVR Summary files (.sum)|*.sum|", default extension "dis").
//
// Every line starts with its line feed; the file is written with the line ends of the
// program's text mode, carriage return and line feed. The degree sign is the single byte 0xB0
// (the program's narrow strings are the Windows code page). Two faults of the program's text
// builder are kept as the file's layout: the values of the computed top, bottom, left, right and
// total discharge lines are formatted with a "format" made of the single character whose code is
// "SignificantDigits", so those fields hold that one control byte (0x05 by default) and no
// number, or "--" for a missing value; and a calculated left edge always reads as a sloped bank.
// The user-estimate literals "%7.1 m^3/s" and "%7.1 ft^3/s" have no conversion letter and are
// written as they stand.

#include <string>

#include "data/node_tree.h"
#include "data/profile_record.h"
#include "processing/discharge_data.h"

namespace rm {

constexpr const char* kSumFileFilter = "KVR Summary files (.sum)|*.sum|";
constexpr const char* kSumFileDefaultExtension = "dis";
constexpr char kDegreeSign = static_cast<char>(0xB0);

enum class TemperatureSource { User, Measured, Ctd };

// Everything the file shows, in the units of the instrument and of processing (metres,
// seconds, m3/s); the writer converts to English units.
struct SumFileInputs {
    const CDischargeData* measurement = nullptr;
    NodeRef discharge;  // the measurement's Discharge node, with ProfileExtrapolation
    int unitSystem = 1;  // the document's unit flag: 1 metric, else English
    int significantDigits = 5;
    std::string dataFileStem;  // data file name without folder and ".kvr"
    int frequencyCode = 0;     // KvrType
    std::string serialNumber;
    int firmware = 0;          // ten times the version
    int numberOfCells = 0;
    double cellSizeCm = 0.0;
    double blanking = 0.0;     // m
    bool transducerDepthFromSensor = false;
    double transducerDepth = 0.0;  // m
    bool variableRange = false;
    double rangeStart = 0.0, rangeEnd = 0.0;  // m; a fixed range shows rangeEnd
    double averagingInterval = 0.0;           // s
    int coordinateSystem = 0;                 // 0 BEAM, 1 XYZ, 2 ENU
    bool bottomTrack = false;
    double magneticDeclination = 0.0;  // degrees
    TemperatureSource temperature = TemperatureSource::Measured;
    int userTemperatureTenths = 0;     // tenths of a degree C
    double salinity = 0.0;             // ppt
    double speedOfSound = 0.0;         // m/s
    bool ctdPresent = false;
    double ctdTemperatureMin = 0.0, ctdTemperatureMax = 0.0;  // degrees C
    double ctdSalinityMin = 0.0, ctdSalinityMax = 0.0;        // ppt
};

// The text of the file with "\n" line ends.
std::string SumFileText(const SumFileInputs& inputs);

// Writes the text with carriage return and line feed line ends; false when the file cannot be
// created or written (the caller shows "Error writing to file").
bool WriteSumFile(const std::string& path, const SumFileInputs& inputs);

// The value text of the computed-discharge lines: the character with the code of
// `significantDigits` taken as a format, so the field is that character alone (nothing for the
// codes 0 and '%'), or "--" when the value is missing.
std::string ComputedDischargeFieldText(double value, int significantDigits);

}  // namespace rm
