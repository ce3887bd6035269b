// FillTree and ReadTree: the records' fields under their `System` keys, with the key types of
// the settings files (u8 flags and enumerations, i16 counts and lengths, doubles, texts).

#include "data/system_tree.h"

#include <cstdint>
#include <string>

#include "data/node_key_table.h"

namespace rm {

namespace {

int16_t ToI16(double v) { return static_cast<int16_t>(RoundHalfAwayClamped(v, INT16_MIN, INT16_MAX)); }
uint16_t ToU16(double v) { return static_cast<uint16_t>(RoundHalfAwayClamped(v, 0, UINT16_MAX)); }

uint8_t GetU8(const NodeRef& node, const char* key) { return node.GetTyped<uint8_t>(key, uint8_t{0}); }
int16_t GetI16(const NodeRef& node, const char* key, int16_t def = 0) { return node.GetTyped<int16_t>(key, def); }
double GetDouble(const NodeRef& node, const char* key) { return node.GetTyped<double>(key, 0.0); }
std::string GetText(const NodeRef& node, const char* key) { return node.GetTyped<std::string>(key, std::string()); }

// The Conf keys are the configuration record's fields as they are; a missing one reads as 0 or
// empty.
const NodeKey<InstrumentConf, uint8_t, std::string> kConfKeys[] = {
    {"SystemFreq", &InstrumentConf::KvrType},
    {"SerialNumber", &InstrumentConf::SerialNumber},
    {"SoftwareVersion", &InstrumentConf::CPUSoftwareVerNum},
    {"PressureInstalled", &InstrumentConf::PressureInstalled},
    {"CompassInstalled", &InstrumentConf::CompassInstalled},
    {"TemperatureInstalled", &InstrumentConf::TemperatureInstalled},
    {"GpsInstalled", &InstrumentConf::InternalGpsAvailable},
};

// The Setup keys each have their own conversion (rounding to i16 centimetres, tenths to
// decimals, the cell-size rule), so they stay one line per key.
void FillSetup(const NodeRef& n, const UserSetup& u) {
    n.SetValue("NumberOfCells", Variant(ToI16(u.NumberOfCells)));
    n.SetValue("CellSizeInCm", Variant(ToI16(u.CellSizeCm)));
    n.SetValue("BlankingDistanceInCm", Variant(ToI16(u.BlankDistance)));
    n.SetValue("AveragingInterval", Variant(ToI16(u.AveragingInterval)));
    n.SetValue("ProfilingInterval", Variant(ToI16(u.ProfileInterval)));
    n.SetValue("FixedMountingDepthInCm", Variant(ToI16(u.SensorDepth)));
    n.SetValue("CoordinateSystem", Variant(u.CoordinateSystem));
    n.SetValue("TemperatureMode", Variant(u.TemperatureMode));
    n.SetValue("UserTemperature", Variant(u.DefaultTemperature * 0.1));
    n.SetValue("UserSalinity", Variant(u.DefaultSalinity * 0.1));
    n.SetValue("RecorderEnabled", Variant(u.RecorderEnabled));
    n.SetValue("DeploymentName", Variant(u.DeploymentName));
    n.SetValue("CommentLine1", Variant(u.CommentLine1));
    n.SetValue("CommentLine2", Variant(u.CommentLine2));
    n.SetValue("CommentLine3", Variant(u.CommentLine3));
    n.SetValue("EnableInternalGps", Variant(u.EnableInternalGps));
    n.SetValue("PCMode", Variant(u.PCMode));
}

void ReadSetup(const NodeRef& n, UserSetup& u) {
    u.NumberOfCells = ToU16(GetI16(n, "NumberOfCells"));
    const int16_t cellSize = GetI16(n, "CellSizeInCm");
    if (cellSize != ToI16(u.CellSizeCm)) u.CellSizeCm = cellSize < 0 ? 0.0f : static_cast<float>(cellSize);
    u.BlankDistance = ToU16(GetI16(n, "BlankingDistanceInCm"));
    u.AveragingInterval = ToU16(GetI16(n, "AveragingInterval"));
    u.ProfileInterval = ToU16(GetI16(n, "ProfilingInterval"));
    const int16_t depth = GetI16(n, "FixedMountingDepthInCm");
    u.SensorDepth = depth < 0 ? 0u : static_cast<uint32_t>(depth);
    u.CoordinateSystem = GetU8(n, "CoordinateSystem");
    u.TemperatureMode = GetU8(n, "TemperatureMode");
    u.DefaultTemperature = ToI16(GetDouble(n, "UserTemperature") * 10.0);
    u.DefaultSalinity = ToI16(GetDouble(n, "UserSalinity") * 10.0);
    u.RecorderEnabled = GetU8(n, "RecorderEnabled");
    u.DeploymentName = GetText(n, "DeploymentName");
    u.CommentLine1 = GetText(n, "CommentLine1");
    u.CommentLine2 = GetText(n, "CommentLine2");
    u.CommentLine3 = GetText(n, "CommentLine3");
    u.EnableInternalGps = GetU8(n, "EnableInternalGps");
    u.PCMode = GetU8(n, "PCMode");
}

}  // namespace

NodeRef SystemConfNode(const NodeRef& system) { return system.GetOrCreateChild("Conf"); }
NodeRef SystemOptionsNode(const NodeRef& system) { return system.GetOrCreateChild("Options"); }
NodeRef SystemSetupNode(const NodeRef& system) { return system.GetOrCreateChild("Setup"); }
NodeRef SystemOtherNode(const NodeRef& system) { return system.GetOrCreateChild("Other"); }
NodeRef SystemOperNode(const NodeRef& system) { return system.GetOrCreateChild("Oper"); }

void FillTree(const NodeRef& system, const InstrumentConf& conf, const UserSetup& user,
              const SystemDocumentFields& fields) {
    WriteKeys(SystemConfNode(system), kConfKeys, conf);

    const NodeRef options = SystemOptionsNode(system);
    options.SetValue("BottomTrack", Variant(user.BottomTrack));
    options.SetValue("BottomTrackInstalled", Variant(fields.BottomTrackInstalled));

    FillSetup(SystemSetupNode(system), user);

    const NodeRef other = SystemOtherNode(system);
    other.SetValue("MagneticDeclination", Variant(DeclinationDegrees(user.MagneticDeclinationRaw)));
    other.SetValue("MountingMethod", Variant(fields.MountingMethod));
    other.SetValue("AutoMountingDepthInCm", Variant(fields.AutoMountingDepthInCm));
    other.SetValue("AutoFileName", Variant(fields.AutoFileName));

    const NodeRef oper = SystemOperNode(system);
    oper.SetValue("MinBlankLengthInCm", Variant(fields.MinBlankLengthInCm));
    oper.SetValue("OperatingRangeInMeters", Variant(fields.OperatingRangeInMeters));

    EnsureSystemTreeDefaults(system);
}

void ReadTree(const NodeRef& system, InstrumentConf& conf, UserSetup& user, SystemDocumentFields& fields) {
    ReadKeys(SystemConfNode(system), kConfKeys, conf, InstrumentConf{});

    const NodeRef options = SystemOptionsNode(system);
    user.BottomTrack = GetU8(options, "BottomTrack");
    fields.BottomTrackInstalled = GetU8(options, "BottomTrackInstalled");

    ReadSetup(SystemSetupNode(system), user);

    const NodeRef other = SystemOtherNode(system);
    user.MagneticDeclinationRaw = DeclinationToRaw(GetDouble(other, "MagneticDeclination"));
    fields.MountingMethod = GetI16(other, "MountingMethod");
    fields.AutoMountingDepthInCm = GetI16(other, "AutoMountingDepthInCm");
    fields.AutoFileName = GetI16(other, "AutoFileName", 1);

    const NodeRef oper = SystemOperNode(system);
    fields.MinBlankLengthInCm = GetU8(oper, "MinBlankLengthInCm");
    fields.OperatingRangeInMeters = GetU8(oper, "OperatingRangeInMeters");
}

void EnsureSystemTreeDefaults(const NodeRef& system) {
    const NodeRef other = SystemOtherNode(system);
    other.GetValue("UnitSystem", Variant(int16_t{1}));
    other.GetValue("MinCellSizeInCm", Variant(-1.0));
    other.GetValue("MaxCellSizeInCm", Variant(-1.0));
}

}  // namespace rm
