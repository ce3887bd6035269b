#pragma once
// Byte layout of one profile record and of one wave burst record, in both directions.
// A profile is the 80-byte header, the optional blocks, the three arrays and a checksum. The
// data file and the instrument's frame hold the same blocks but in two orders (the GPS block
// stands after the external sensor block in the file, before it in a frame), so both orders
// are assembled and parsed here from one description, the ProfileLayout.

#include <cstddef>
#include <cstdint>

#include "data/instrument_records.h"
#include "data/profile_record.h"

namespace rm {

enum class GpsForm { None, Short40, Long48 };

// Where the GPS block stands: after the external sensor block (data file) or before it
// (instrument frame).
enum class BlockOrder { File, Frame };

// Everything the codec needs to know about the records of one file or one frame stream.
struct ProfileLayout {
    int fileVersion = 2;  // below 2: old header, no blocks but GPS, cell-major arrays
    int cells = 0;
    int beams = 0;
    bool shallowWater = false;
    bool bottomTrack = false;
    bool ctd = false;
    bool extSensor = false;
    GpsForm gps = GpsForm::None;
    bool pulseCoherent = false;  // PCMode non-zero
    uint8_t cpuVersion = 0;      // CPUSoftwareVerNum
    // The setup alone announces a 48-byte GPS block (internal GPS enabled and available), so a
    // written file needs no flag bit for it.
    bool gpsImpliedBySetup = false;

    bool OldLayout() const { return fileVersion < 2; }
    size_t GpsSize() const;
    // S: the whole record, header and checksum included.
    size_t RecordSize() const;
    // The bottom track block's first two bytes are swapped unless the firmware is 88 to 150.
    bool SwapsBottomTrack() const { return cpuVersion < 88 || cpuVersion > 150; }
    // The external sensor words stand in the order 1, 3, 2, 4.
    bool ReordersExtSensor() const { return pulseCoherent || (cpuVersion > 140 && cpuVersion <= 163); }
};

// The layout of records written by or read from an instrument with these records.
// The blocks 2 to 5 exist only from version 2 on.
ProfileLayout MakeProfileLayout(const InstrumentConf& conf, const UserSetup& user, GpsForm gps, int fileVersion);

// GPS form from byte 1 of the first profile header: bit 0 the 40-byte form, bit 1 the 48-byte
// form, else the 48-byte form when the internal GPS is enabled and the conf says it exists.
GpsForm GpsFormFromFlags(uint8_t flags, const InstrumentConf& conf, const UserSetup& user);

// Profile header. `data` holds 80 bytes in the layout's form (old or current).
void DecodeProfileHeader(const uint8_t* data, const ProfileLayout& layout, ProfileHeader& header);
// Moves an old-layout header image into the current layout.
void OldHeaderToCurrent(const uint8_t* oldHeader, uint8_t* current);
// Current layout, 80 bytes: the raw image with the named fields written over it.
void EncodeProfileHeader(const ProfileHeader& header, const ProfileLayout& layout, uint8_t* out);

// Blocks, each at the start of `data`.
void DecodeBottomTrack(const uint8_t* data, const ProfileLayout& layout, ProfileRecord& record);
void EncodeBottomTrack(const ProfileRecord& record, const ProfileLayout& layout, uint8_t* out);
// CTD block: four i32 in thousandths (temperature, conductivity, pressure, salinity).
CtdValues DecodeCtdBlock(const uint8_t* data);
void EncodeCtdBlock(const CtdValues& ctd, uint8_t* out);
void DecodeExtSensor(const uint8_t* data, const ProfileLayout& layout, ProfileRecord& record);
void EncodeExtSensor(const ProfileRecord& record, const ProfileLayout& layout, uint8_t* out);
// GPS in either form; the 40-byte form's u32 times are widened to doubles.
GpsBlock DecodeGpsBlock(const uint8_t* data, GpsForm form);
// Always the 48-byte form.
void EncodeGpsBlock(const GpsBlock& gps, uint8_t* out);

enum class DecodeResult { Ok = 0, BadChecksum = 2 };

// Parses a whole record of layout.RecordSize() bytes into `record`, whose arrays must already
// should have layout.cells x layout.beams elements. With `skipArrays` the arrays are left as they are.
// Arrays of another size are re-sized first. A checksum mismatch is reported but the data stay
// decoded.
DecodeResult DecodeProfileRecord(const uint8_t* data, const ProfileLayout& layout, BlockOrder order,
                                 bool skipArrays, ProfileRecord& record);

// Assembles a whole record of layout.RecordSize() bytes in the current layout with the checksum.
// In file order the flag bits of header byte 1 are made to tell the GPS form that is written
// (bit 0 cleared; bit 1 set unless the setup already implies the block); a frame is left as is.
// Returns false (and writes nothing) when the record's arrays do not have the layout's size,
// the layout is old or asks for the 40-byte GPS form: the writer only writes the current
// layout with the 48-byte form.
bool EncodeProfileRecord(const ProfileRecord& record, const ProfileLayout& layout, BlockOrder order, uint8_t* out);

// Wave burst record: 80-byte header, samples, checksum. `sampleBytes` is W - 82.
DecodeResult DecodeWaveBurst(const uint8_t* data, size_t sampleBytes, WaveBurst& burst);
// False when the burst does not hold exactly `sampleBytes` of samples.
bool EncodeWaveBurst(const WaveBurst& burst, size_t sampleBytes, uint8_t* out);

}  // namespace rm
