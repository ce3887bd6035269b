#pragma once
// The .dis file: per-profile discharge text of one data set, written during a pass over the
// whole file. Filter "KVR Discharge files (.dis)|*.dis|".
//
// A text file (data/text_file.h: CR LF line ends). Layout (every line begins with its line
// feed, as the program's other text outputs do):
//   head     "% KVR Data File: NAME.kvr", "% Start Date + Time: ", "% All Track Calculations
//            use: " with "Bottom Track data" or "GPS data", "% All Flow Velocities Relative to: "
//            with "KVR ", "Bottom Track" or "GPS", "% Metric Units" or "% English Units", the
//            column names and their units, and a rule of 199 hyphens;
//   lines    one per profile, the columns of the per-profile ASCII line: number, time, track
//            length, distance made good, track East and North, GPS position, the depths of
//            beams 1 to 3, their mean, the echo depth, boat speed and direction, depth-averaged
//            water speed and direction, standard deviation, quality index, counted cells,
//            discharge, cumulative discharge, and the measured share of the profile's discharge
//            in percent;
//   trailer  the discharge summary: top, measured, bottom, left, right and total discharge by
//            the significant-digit text, "MeasQ/EstQ" in percent, total area and mean velocity.
// Lengths and velocities are multiplied by the length factor (1, or 3.2808 for English units),
// discharges by its cube; missing values print as 32767 unchanged.

#include <string>

#include "data/kvr_data.h"
#include "data/text_file.h"
#include "processing/recompute_pass.h"

namespace rm {

constexpr const char* kDisFileFilter = "KVR Discharge files (.dis)|*.dis|";

struct DisFileHead {
    std::string dataFileName;  // name of the data file, with ".kvr"
    ProfileTime start;
    int trackReference = 1;
    int velocityReference = 1;
    int unitSystem = 1;  // 1 metric, else English
    int significantDigits = 5;
    // The Universal ASCII form of the same file: no trailer, and when `headSummary` is set the
    // discharge summary of that measurement stands in the head, after the unit line.
    bool trailer = true;
    const char* trackPrefix = "";  // before the track text: "- " in the Universal ASCII head
    const CDischargeData* headSummary = nullptr;
};

class DisFileWriter : public PassObserver {
public:
    DisFileWriter() = default;
    ~DisFileWriter() override;
    DisFileWriter(const DisFileWriter&) = delete;
    DisFileWriter& operator=(const DisFileWriter&) = delete;

    // Creates the file and writes the head. False when it cannot be created.
    bool Open(const std::string& path, const DisFileHead& head);
    void OnProfile(const ProcessingContext& ctx, int item, int slot, bool readOk) override;
    // Writes the trailer from the measurement and closes; false when any write failed.
    bool Finish(const CDischargeData& measurement);

private:
    TextFile file_;
    DisFileHead head_;
    double lengthFactor_ = 1.0;
    double cumulativeQ_ = 0.0;
};

// The whole pass with a .dis file beside it: GoToProfile up to the last item. False when the
// file cannot be written or the data file is not open.
bool WriteDisFile(const std::string& path, const DisFileHead& head, ProcessingContext& ctx, ProfileSource& source);

}  // namespace rm
