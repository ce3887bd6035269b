#pragma once
// The multi-line per-profile "T" format. A head of two comment lines and the setup numbers
// (written once), then a block per profile: the time and attitude; bottom-track and GPS
// velocities with the beam depths; the track; the GPS position and velocity; the discharge
// parts; a line naming the units and the track reference; and one line per cell.
//
// Units by a parameter: 0 gives "ft" with 3.2808 as velocity (from m/s) and length factor,
// 1 gives "cm" with 100 for velocity and 1.0 for length. A field without data prints 32767.

#include <string>

#include "app/survey_document.h"
#include "data/text_file.h"
#include "data/user_prompt.h"
#include "processing/recompute_pass.h"

namespace rm {

constexpr int kTFormatFeet = 0;
constexpr int kTFormatCentimetres = 1;

// The head: comment lines 1 and 2 of the user record, then cell size and blanking in cm, the
// cell count raised by one when the shallow-water ping is used with the GPS track reference,
// the averaging interval, the cell count of the record, its coordinate system and output mode.
void WriteTFormatHead(TextFile& file, const ProcessingContext& ctx);

// Writes a profile's block as the pass goes.
class TFormatWriter : public PassObserver {
public:
    TFormatWriter(TextFile& file, int unitParameter) : file_(file), unit_(unitParameter) {}
    void OnProfile(const ProcessingContext& ctx, int item, int slot, bool readOk) override;

private:
    TextFile& file_;
    int unit_;
    double cumulativeQ_ = 0.0;
};

// The whole file: head, then a block per profile of a full pass. "Error writing to file" and
// false on a file error.
bool WriteTFormatFile(CSurveyKVRDoc& document, const std::string& path, int unitParameter, UserPrompt& prompt);

}  // namespace rm
