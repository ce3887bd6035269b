#pragma once
// The instrument's three binary records (configuration, operating limits, user setup) with
// their raw images and decoded copies, and the values derived from them that processing reads.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace rm {

constexpr size_t kConfSize = 96;         // version 2 configuration record
constexpr size_t kConfSizeOld = 64;      // version 0 and 1 configuration record
constexpr size_t kOperSize = 64;
constexpr size_t kUserSize = 256;
constexpr size_t kCalibrationBlockSize = 250;
constexpr uint8_t kConfType = 16;

// Frequency tables indexed by KvrType. The display table and the unwrapping table disagree at
// index 6 on purpose; index 7 has no unwrapping frequency (0).
const char* FrequencyName(int kvrType);          // "3000 kHz" ... "125kHz", "" out of range
int DisplayFrequencyKHz(int kvrType);            // 0 out of range
int UnwrapFrequencyKHz(int kvrType);             // 0 out of range

struct InstrumentConf {
    std::vector<uint8_t> raw;  // the image as read: 96 bytes, or 64 for versions 0 and 1

    uint8_t type = 0;
    uint8_t version = 0;
    uint16_t size = 0;
    uint32_t reserved4 = 0;
    uint32_t reserved8 = 0;
    uint8_t CPUSoftwareVerNum = 0;
    uint8_t DSPSoftwareVerNum = 0;
    char BoardRev = 0;
    std::string SerialNumber;
    uint8_t KvrType = 0;
    uint8_t Nbeams = 0;
    uint8_t BeamGeometry = 0;
    int16_t SlantAngle = 0;  // tenths of a degree
    uint8_t SensorOrientation = 0;
    uint8_t CompassInstalled = 0;
    uint8_t RecorderInstalled = 0;
    uint8_t TemperatureInstalled = 0;
    uint8_t PressureInstalled = 0;
    uint8_t reserved35 = 0;
    std::array<int16_t, 16> TransformationMatrix{};  // scale 1/1024, Nbeams x Nbeams used
    uint16_t reserved68 = 0;
    int32_t PressureScale = 0;   // 1e-8 dbar per count
    int32_t PressureOffset = 0;  // 1e-5 dbar
    uint8_t reserved78 = 0;
    uint8_t ExtSensorInstalled = 0;
    uint8_t ExtPressureSensorInstalled = 0;  // 0 none, 1 PAROS, 2 DRUCK, 3 table-driven
    uint8_t CtdSensorInstalled = 0;
    int16_t PressureScale2 = 0;  // 1e-12
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
    uint16_t CellSizeRaw = 0;         // as stored; see CellSizeCm
    float CellSizeCm = 0.0f;          // decoded cell size in centimetres
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
    std::string DeploymentName;  // at most 8 characters
    int16_t DeploymentYear = 0;
    uint8_t DeploymentDay = 0;
    uint8_t DeploymentMonth = 0;
    uint8_t DeploymentMinute = 0;
    uint8_t DeploymentHour = 0;
    uint8_t DeploymentHundredths = 0;
    uint8_t DeploymentSecond = 0;
    std::string CommentLine1, CommentLine2, CommentLine3;  // at most 59 characters each
    uint8_t reserved244 = 0;
    // Tail, valid only for some firmware (see DecodeUser).
    uint8_t BottomTrack = 0;  // 0 off, 1 on, 2 on with the shallow-water ping
    int16_t MagneticDeclinationRaw = 0;  // units of 0.02 degree
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
    double pressureScale2 = 0.0;
    uint32_t pressureRangeCounts = 0;
    std::array<float, 25> matrix{};  // Nbeams x Nbeams, row-major, signs of "Down" applied
    double magneticDeclination = 0.0;  // degrees
    double shallowWaterVelocityFactor = 1.0;  // velocity scale of the shallow-water block
    double shallowWaterFactorA = 0.0;         // 0.72 when the shallow-water block is in use
    double shallowWaterFactorB = 0.0;         // 1.0 when the shallow-water block is in use
};

// Result codes of the decoders.
enum class RecordStatus { Ok = 0, BadHeader = 1, BadRanges = 2, Short = 3 };

// Configuration: both versions; the old 64-byte form is widened with the fixed values.
RecordStatus DecodeConf(const uint8_t* data, size_t size, InstrumentConf& conf);
// The 96-byte version 2 image of a decoded configuration (raw bytes kept where they exist).
std::array<uint8_t, kConfSize> EncodeConf(const InstrumentConf& conf);
// True when the first four bytes and the validity ranges make a data file's configuration.
bool ConfHeaderIsValid(const uint8_t* data, size_t size);

RecordStatus DecodeOper(const uint8_t* data, size_t size, const InstrumentConf& conf, OperationRecord& oper);

// The tail (offsets 245 to 255) is taken only for the firmware told in the decoder; else zero.
RecordStatus DecodeUser(const uint8_t* data, size_t size, const InstrumentConf& conf, UserSetup& user);
// The inverse of DecodeUser, with the re-encoding rule for the tail.
std::array<uint8_t, kUserSize> EncodeUser(const UserSetup& user, const InstrumentConf& conf);

// All derived values of the three records.
DerivedValues DeriveValues(const InstrumentConf& conf, const OperationRecord& oper, const UserSetup& user);

// Distance of cell i's centre from the surface, metres.
double CellPosition(const UserSetup& user, int cell);

// Pressure in dbar from a profile header's counts and high byte (see the profile header).
double PressureFromCounts(const InstrumentConf& conf, const UserSetup& user, const DerivedValues& derived,
                          uint16_t counts, uint8_t highByte, int16_t temperatureHundredths);

}  // namespace rm
