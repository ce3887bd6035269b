#include "sim/instrument_identity.h"

#include <cstdio>
#include <iterator>

namespace rm::sim {

namespace {

struct FamilyIdentity {
    const char* name;
    const char* versionLine;  // for KVR and Hullstar the first word, followed by the firmware byte
    const char* systemType;
};

// In the order of InstrumentFamily. The lines are what the system's identification looks for:
// "KVR", "WQD", "TLM" (with "ZSN" in the system type for the ZSN-built Skiffjack), "ZSN6600",
// "ZSN", "Flow", "VNQ"; the last names none of them.
const FamilyIdentity kFamilies[] = {
    {"kvr", "KVR", "System type: KVR"},
    {"hullstar", "WQD", "System type: WQD"},
    {"skiffjack", "TLM 3.2 Skiffjack water level logger", "System type: TLM-SJ"},
    {"skiffjack-zsn", "TLM 3.4 Skiffjack water level logger", "System type: TLM-ZSN"},
    {"zsn", "ZSN 2.4 point current meter", "System type: ZSN"},
    {"zsn6600", "ZSN6600 1.1 multiparameter sonde", "System type: ZSN6600"},
    {"flow", "Flow probe 5.0", "System type: FP"},
    {"vnq", "VNQ 1.3 velocimeter", "System type: VNQ"},
    {"unknown", "ABC 1.0 data logger", "System type: ABC"},
};

const FamilyIdentity& IdentityOf(InstrumentFamily family) { return kFamilies[static_cast<int>(family)]; }

}  // namespace

bool ParseInstrumentFamily(const std::string& text, InstrumentFamily& family) {
    for (size_t i = 0; i < std::size(kFamilies); ++i) {
        if (text != kFamilies[i].name) continue;
        family = static_cast<InstrumentFamily>(i);
        return true;
    }
    return false;
}

const std::vector<std::string>& InstrumentFamilyNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const FamilyIdentity& f : kFamilies) all.emplace_back(f.name);
        return all;
    }();
    return names;
}

std::string VersionLine(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber) {
    if (family != InstrumentFamily::Kvr && family != InstrumentFamily::Hullstar) return IdentityOf(family).versionLine;
    char rest[96];
    std::snprintf(rest, sizeof rest, " firmware %d.%d serial %s", cpuVersion / 10, cpuVersion % 10,
                  serialNumber.c_str());
    return std::string(IdentityOf(family).versionLine) + " " + static_cast<char>(cpuVersion) + rest;
}

std::string SystemTypeLine(InstrumentFamily family) { return IdentityOf(family).systemType; }

std::string BreakBanner(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber) {
    return "\r\n\r\n" + VersionLine(family, cpuVersion, serialNumber) + "\r\nCommand mode\r\n";
}

}  // namespace rm::sim
