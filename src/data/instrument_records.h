#pragma once
// The instrument's three binary records (configuration, operating limits, user setup) with
// their raw images and decoded copies, and the values derived from them that processing reads.
//
// Every decoder keeps the image it was given in `raw`; every encoder starts from that image and
// writes the decoded fields over it, so bytes that the system does not interpret ("kept as
// read") pass unchanged from the instrument to a file and back.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace rm {

constexpr size_t kConfSize = 96;         // version 2 configuration record
constexpr size_t kConfSizeOld = 64;      // version 0 and 1 configuration record
constexpr size_t kOperSize = 64;
constexpr size_t kUserSize = 256;
constexpr size_t kCalibrationBlockSize = 250;
constexpr size_t kRecordHeaderSize = 4;  // type, version, size: the same in every record
constexpr uint8_t kConfType = 16;
constexpr int kMaxBeams = 5;
constexpr int kConfMatrixEntries = 16;     // 4 x 4 storage of the version 2 record
constexpr int kConfMatrixEntriesOld = 9;   // 3 x 3 storage of versions 0 and 1
constexpr size_t kUserTailOffset = 245;    // first byte of the firmware-dependent tail
constexpr size_t kUserTailSize = 11;

// Frequency tables indexed by KvrType. The display table and the unwrapping table disagree at
// index 6 on purpose; index 7 has no unwrapping frequency (0).
const char* FrequencyName(int kvrType);          // "3000 kHz" ... "125kHz", "" out of range
int DisplayFrequencyKHz(int kvrType);            // 0 out of range
int UnwrapFrequencyKHz(int kvrType);             // 0 out of range and at index 7

struct InstrumentConf {
    std::vector<uint8_t> raw;  // the image as read: 96 bytes, or 64 for versions 0 and 1

    uint8_t type = 0;
    uint8_t version = 0;
    uint16_t size = 0;
    uint32_t reserved4 = 0;
    uint32_t reserved8 = 0;
    uint8_t CPUSoftwareVerNum = 0;  // ten times the version
    uint8_t DSPSoftwareVerNum = 0;  // ten times the version
    char BoardRev = 0;
    std::string SerialNumber;       // at most 10 characters
    uint8_t KvrType = 0;
    uint8_t Nbeams = 0;
    uint8_t BeamGeometry = 0;
    int16_t SlantAngle = 0;  // tenths of a degree
    uint8_t SensorOrientation = 0;  // 0 down, 1 up, 2 side
    uint8_t CompassInstalled = 0;
    uint8_t RecorderInstalled = 0;
    uint8_t TemperatureInstalled = 0;
    uint8_t PressureInstalled = 0;
    uint8_t reserved35 = 0;
    // Scale 1/1024. The first Nbeams x Nbeams entries are used, row after row; a widened old
    // record fills only the first nine.
    std::array<int16_t, kConfMatrixEntries> TransformationMatrix{};
    uint16_t reserved68 = 0;
    int32_t PressureScale = 0;   // 1e-8 dbar per count
    int32_t PressureOffset = 0;  // 1e-5 dbar
    uint8_t reserved78 = 0;
    uint8_t ExtSensorInstalled = 0;
    uint8_t ExtPressureSensorInstalled = 0;  // 0 none, 1 PAROS, 2 DRUCK, 3 table-driven
    uint8_t CtdSensorInstalled = 0;
    int16_t PressureScale2 = 0;  // 1e-12 dbar per count squared
    std::array<uint8_t, 2> reserved84{};
    uint8_t InternalGpsAvailable = 0;
    uint8_t reserved87 = 0;
    uint8_t PressureRange = 0;  // millions of counts
    std::array<uint8_t, 7> reserved89{};
};

struct OperationRecord {
    std::array<uint8_t, kOperSize> raw{};
    uint8_t type = 0;
    uint8_t version = 0;
    uint16_t size = 0;
    std::array<uint16_t, 13> firmwareLimits{};  // words at 12 to 37
    int16_t bottomTrackDisable = 0;  // word at 39
    int16_t unwrapSamples = 0;       // word at 47, 0 unless CPUSoftwareVerNum >= 16
    int16_t unwrapPulses = 0;        // word at 60, 0 unless CPUSoftwareVerNum >= 16
};

struct UserSetup {
    std::array<uint8_t, kUserSize> raw{};
    uint8_t type = 0;
    uint8_t version = 0;
    uint16_t size = 0;
    uint32_t reserved4 = 0;
    uint32_t reserved8 = 0;
    int16_t DefaultTemperature = 0;   // tenths of a degree C
    int16_t DefaultSalinity = 0;      // tenths of ppt
    int16_t DefaultSpeedOfSound = 0;  // tenths of m/s
    uint16_t NumberOfCells = 0;
    // Centimetres. Stored as whole centimetres, or as tenths when PCMode is set and
    // CPUSoftwareVerNum is at least 60 (see CellSizeInTenths); the encoder rounds half away
    // from zero.
    float CellSizeCm = 0.0f;
    uint16_t BlankDistance = 0;       // cm
    uint32_t SensorDepth = 0;         // cm
    uint8_t TemperatureMode = 0;
    uint16_t AveragingInterval = 0;
    uint16_t ProfileInterval = 0;
    uint16_t PingInterval = 0;
    uint16_t BurstMode = 0;
    uint16_t BurstInterval = 0;
    uint16_t ProfilesPerBurst = 0;
    uint8_t CoordinateSystem = 0;  // 0 BEAM, 1 XYZ, 2 ENU
    uint8_t OutMode = 0;
    uint8_t OutFormat = 0;
    uint8_t RecorderEnabled = 0;
    uint8_t RecorderMode = 0;
    uint8_t DeploymentMode = 0;
    std::string DeploymentName;  // at most 9 characters
    int16_t DeploymentYear = 0;
    uint8_t DeploymentDay = 0;
    uint8_t DeploymentMonth = 0;
    uint8_t DeploymentMinute = 0;
    uint8_t DeploymentHour = 0;
    uint8_t DeploymentHundredths = 0;
    uint8_t DeploymentSecond = 0;
    std::string CommentLine1, CommentLine2, CommentLine3;  // at most 60 characters each
    uint8_t reserved244 = 0;
    // Tail, valid only for some firmware (see DecodeUser); zero when not taken.
    uint8_t BottomTrack = 0;  // 0 off, 1 on, 2 on with the shallow-water ping
    int16_t MagneticDeclinationRaw = 0;  // units of 0.02 degree; see DeclinationToRaw
    uint8_t PressureTimeSeriesInterval = 0;
    uint8_t PseriesRate = 0;
    uint16_t PseriesLength = 0;
    uint8_t reserved252 = 0;
    uint8_t reserved253 = 0;
    uint8_t PCMode = 0;
    uint8_t EnableInternalGps = 0;
};

// Values derived from the three records at once after they are read.
struct DerivedValues {
    double pressureOffset = 0.0;  // dbar
    double pressureScale = 0.0;   // dbar per count
    double pressureScale2 = 0.0;  // dbar per count squared
    uint32_t pressureRangeCounts = 0;
    int matrixSize = 0;              // Nbeams
    std::array<float, 25> matrix{};  // Nbeams x Nbeams, row-major, signs of "Down" applied
    double magneticDeclination = 0.0;  // degrees
    bool pcMode = false;               // PCMode byte non-zero
    uint8_t bottomTrackMode = 0;       // Bottom Track, or 0 when the operation record disables it
    bool hasShallowWaterBlock = false;  // PCMode or Bottom Track 2
    // Velocity scale of the shallow-water block: 0.1 in pulse-coherent mode from firmware 16.5
    // on, else 1.0. The document applies 0.1 also with Bottom Track 2 on that firmware.
    double shallowWaterVelocityFactor = 1.0;
    double documentShallowWaterVelocityFactor = 1.0;
    double shallowWaterFactorA = 0.0;  // 0.72 when the shallow-water block is in use
    double shallowWaterFactorB = 0.0;  // 1.0 when the shallow-water block is in use
    double intervalUnitSeconds = 1.0;  // IntervalUnitSeconds of the user setup
};

// Result codes of the decoders.
enum class RecordStatus { Ok = 0, BadHeader = 1, BadRanges = 2, Short = 3 };

// Size of the configuration record of a version byte: 96 for 2, 64 below, 0 for unknown.
size_t ConfSizeForVersion(uint8_t version);

// Configuration: both versions; the old 64-byte form is widened with the fixed values. Checks
// the header (type 16, version 0..2, size matching the version) and then the validity ranges
// (KvrType 0..6, Nbeams 1..5, orientation 0..2, the four installed flags 0/1). `conf` is left
// untouched unless the result is Ok. Bytes beyond the record's size are ignored.
RecordStatus DecodeConf(const uint8_t* data, size_t size, InstrumentConf& conf);
// The 96-byte version 2 image of a decoded configuration. A record read as 96 bytes re-encodes
// to its raw image; a widened old record gives a version 2 image with the widened values.
std::array<uint8_t, kConfSize> EncodeConf(const InstrumentConf& conf);
// True when the record's header and validity ranges make a data file's configuration.
bool ConfHeaderIsValid(const uint8_t* data, size_t size);

// The words at 47 and 60 are taken only when CPUSoftwareVerNum is at least 16.
RecordStatus DecodeOper(const uint8_t* data, size_t size, const InstrumentConf& conf, OperationRecord& oper);
// The raw image with the decoded fields written back (the words at 47 and 60 only when the
// firmware uses them, so that bytes kept as read survive).
std::array<uint8_t, kOperSize> EncodeOper(const OperationRecord& oper, const InstrumentConf& conf);

// The tail (offsets 245 to 255) is taken when CPUSoftwareVerNum >= 44 and either the user type
// byte is 12 or the conf type byte is 16, or when CPUSoftwareVerNum <= 19 and the user type
// byte is 18; else its fields read as zero.
RecordStatus DecodeUser(const uint8_t* data, size_t size, const InstrumentConf& conf, UserSetup& user);
// The inverse of DecodeUser. The tail is written from the decoded fields when
// CPUSoftwareVerNum >= 44 and the user type byte is 18, or when the conf type byte is 16;
// else the eleven bytes are zero. The two rules differ on purpose.
std::array<uint8_t, kUserSize> EncodeUser(const UserSetup& user, const InstrumentConf& conf);
bool UserTailIsDecoded(const UserSetup& user, const InstrumentConf& conf);
bool UserTailIsEncoded(const UserSetup& user, const InstrumentConf& conf);
// True when the cell size is stored in tenths of a centimetre.
bool CellSizeInTenths(const UserSetup& user, const InstrumentConf& conf);

// Nearest integer with halves away from zero, limited to [lo, hi]; NaN gives 0. The rounding
// rule of every encoder of the records.
long RoundHalfAwayClamped(double x, long lo, long hi);

// Magnetic declination: raw units of 0.02 degree. The encoder takes degrees x 50 rounded half
// away from zero, limited to the 16-bit range.
double DeclinationDegrees(int16_t raw);
int16_t DeclinationToRaw(double degrees);

// True when the operation record's word at 39 turns Bottom Track off: non-zero word, firmware
// 5.6 with DSP 5.0, not in pulse-coherent mode.
bool OperDisablesBottomTrack(const InstrumentConf& conf, const OperationRecord& oper, const UserSetup& user);
// Forces the Bottom Track byte of `user` to 0 when OperDisablesBottomTrack.
void ApplyOperationLimits(const InstrumentConf& conf, const OperationRecord& oper, UserSetup& user);

// Seconds of one count of the setup's averaging and profile intervals: an instrument in
// pulse-coherent mode keeps them in tenths of a second unless the shallow-water ping runs
// (Bottom Track 2); 1 otherwise.
double IntervalUnitSeconds(const UserSetup& user);

// All derived values of the three records.
DerivedValues DeriveValues(const InstrumentConf& conf, const OperationRecord& oper, const UserSetup& user);

// Distance of cell i's centre (i from 0) from the surface, metres.
double CellPosition(const UserSetup& user, int cell);

// Pressure in dbar from a profile header's counts and high byte. For the table-driven sensors
// in pulse-coherent mode the sensor's calibration table is not evaluated: the result is the raw
// count value x 1e-6 whether or not a calibration block was loaded.
double PressureFromCounts(const InstrumentConf& conf, const UserSetup& user, const DerivedValues& derived,
                          uint16_t counts, uint8_t highByte, int16_t temperatureHundredths);

}  // namespace rm
