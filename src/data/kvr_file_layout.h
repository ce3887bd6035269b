#pragma once
// Where things stand in a .kvr data file: the length of the head (the three instrument records
// and the optional calibration block), the wave burst set-up read from the user setup, the
// number of whole records in a file of a given size and the offset of each profile and burst.
// Pure arithmetic; the file itself is read by CKvrData.

#include <cstdint>

#include "data/instrument_records.h"

namespace rm {

// The wave burst set-up from bytes 248 to 252 of the user setup.
struct WaveSetup {
    int interval = 0;          // N: one burst every N profiles; 0 means no wave data
    uint8_t rateByte = 0;      // byte 249 as stored
    int rateHz = 1;            // from bits 2 and 3 of the rate byte: 0 -> 1, 1 -> 2, else 4
    bool flag = false;         // bit 1 of the rate byte
    bool twoMoreSeries = false;    // bits 4 and 5 of the rate byte read as the value 1
    bool threeMoreSeries = false;  // with the above, byte 252 non-zero
    int length = 0;            // PseriesLength, points a series
    int firstBurstIndex = 0;   // position of the burst in the record walk (see CountRecords)
    int64_t burstSize = 0;     // W: bytes of one burst record, header and checksum included

    bool HasBursts() const { return interval > 0; }
};

WaveSetup MakeWaveSetup(const UserSetup& user);

// True when the 250-byte sensor calibration block follows the user setup in a file.
bool HasCalibrationBlock(const InstrumentConf& conf, int fileVersion);

// H: the bytes before the first record.
int64_t HeaderLength(const InstrumentConf& conf, int fileVersion);

struct RecordCounts {
    int64_t profiles = 0;
    int64_t bursts = 0;
};

// Whole records in a file of `fileSize` bytes whose records start at `headerLength` and
// measure `profileSize` each, with bursts interleaved as `waves` says. A trailing partial
// record is not counted.
RecordCounts CountRecords(int64_t fileSize, int64_t headerLength, int64_t profileSize, const WaveSetup& waves);

// Offset of profile `index` (from 0), counting the bursts that stand before it.
int64_t ProfileOffset(int64_t index, int64_t headerLength, int64_t profileSize, const WaveSetup& waves);
// Offset of profile `index` as if the file had no bursts.
int64_t ProfileOffsetWithoutBursts(int64_t index, int64_t headerLength, int64_t profileSize);
// Offset of burst `burst` (from 0): it stands just before profile first + 1 + burst x N.
int64_t BurstOffset(int64_t burst, int64_t headerLength, int64_t profileSize, const WaveSetup& waves);

}  // namespace rm
