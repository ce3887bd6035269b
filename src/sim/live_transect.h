#pragma once
// The frames a collecting instrument sends while the boat crosses the virtual river: one
// profile frame per averaging interval, built from the transect generator and laid out with the
// project's frame-order codec, with the failures a real line shows when asked for:
//
//   noise        a few bytes of line noise (never the sync byte 0xA5) before every frame
//   bad checksum every n-th profile's checksum is off by one
//   lost frame   profile k is never sent; the next one carries its own number, leaving a gap
//   renumbering  from profile k on the instrument counts again from 1
//   bit errors   chosen bits of chosen frames flipped on the line, after the checksum was made
//
// The truth covers the span the boat has crossed up to the last profile made (sent or lost),
// so a recording of the frames, however many there were, has a known discharge.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "data/profile_codec.h"
#include "sim/recording_writer.h"
#include "sim/river_scenario.h"
#include "sim/transect.h"

namespace rm::sim {

// One bit turned over on the line: bit `bit` (0 the lowest) of byte `byte` (0 the sync byte) of
// the frame of profile `profile` (from 1).
struct BitFlip {
    int profile = 0;
    int byte = 0;
    int bit = 0;
};

struct FrameFaults {
    bool noiseBeforeFrames = false;
    int badChecksumEvery = 0;     // 0: never
    int loseFrame = 0;            // profile number from 1; 0: none
    int restartNumberingAt = 0;   // profile number from 1 (2 or more); 0: none
    std::vector<BitFlip> bitFlips;
};

// Reads "K:BYTE:BIT" into `flip`; false when the text is not of that form or a number is out of
// range (profile from 1, byte from 0, bit 0 to 7).
bool ParseBitFlip(const std::string& text, BitFlip& flip);

// The crossing of a simulated device unless told otherwise: 10 profiles of 10 s, averaging and
// profile interval alike, so that the instrument's user setup is one the setup rules accept (an
// averaging interval of 5 s at least, a profile interval of 10 s at least); at the boat's 0.5 m/s
// it spans the same 50 m as the 100 profiles of 1 s of a default recording.
constexpr int kDeviceIntervalS = 10;
constexpr int kDeviceProfiles = 10;

// The line noise put before a frame when asked for.
const std::string& FrameNoise();

class LiveTransect {
public:
    // `records` are the instrument's records at the start of collection; the scenario's
    // instrument options must describe the same setup (see ScenarioForRecords). At most
    // `maxProfiles` profiles are made (0 or less: the whole crossing).
    LiveTransect(const RiverScenario& scenario, const InstrumentRecords& records, const FrameFaults& faults,
                 int maxProfiles);

    // Empty when frames can be made; otherwise why not.
    const std::string& Problem() const { return problem_; }
    const RiverScenario& Scenario() const { return scenario_; }
    int Planned() const { return planned_; }
    int Made() const { return made_; }
    // Length of one frame on the line, checksum included (without noise).
    size_t FrameSize() const { return frameSize_; }

    // The bytes of the next profile, noise included; empty for a lost frame. False when all
    // planned profiles have been made.
    bool Next(std::string& bytes);

    // The truth of the span crossed through the last profile made; `ok` false before any.
    RecordingResult Truth() const;

private:
    RiverScenario scenario_;
    InstrumentRecords records_;
    FrameFaults faults_;
    CrossingPlan plan_;
    std::unique_ptr<TransectGenerator> generator_;
    ProfileLayout layout_;
    std::string problem_;
    size_t frameSize_ = 0;
    int planned_ = 0;
    int made_ = 0;
};

// The scenario with the profiling setup of a user setup record: cells, cell size, blanking,
// coordinate system, bottom track and averaging interval; and the internal GPS as the setup and
// configuration have it.
RiverScenario ScenarioForRecords(const RiverScenario& scenario, const InstrumentRecords& records);

}  // namespace rm::sim
