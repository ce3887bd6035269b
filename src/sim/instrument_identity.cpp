#include "sim/instrument_identity.h"

#include <cstdio>

namespace rm::sim {

bool ParseInstrumentFamily(const std::string& text, InstrumentFamily& family) {
    if (text == "kvr") family = InstrumentFamily::Kvr;
    else if (text == "skiffjack") family = InstrumentFamily::Skiffjack;
    else if (text == "zsn") family = InstrumentFamily::Zsn;
    else return false;
    return true;
}

std::string VersionLine(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber) {
    char text[96];
    switch (family) {
        case InstrumentFamily::Kvr:
            std::snprintf(text, sizeof text, "KVR %c firmware %d.%d serial %s", static_cast<char>(cpuVersion),
                          cpuVersion / 10, cpuVersion % 10, serialNumber.c_str());
            return text;
        case InstrumentFamily::Skiffjack:
            return "TLM 3.2 Skiffjack water level logger";
        case InstrumentFamily::Zsn:
            return "ZSN 2.4 point current meter";
    }
    return {};
}

std::string SystemTypeLine(InstrumentFamily family) {
    switch (family) {
        case InstrumentFamily::Kvr: return "System type: KVR";
        case InstrumentFamily::Skiffjack: return "System type: TLM-SJ";
        case InstrumentFamily::Zsn: return "System type: ZSN";
    }
    return {};
}

std::string BreakBanner(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber) {
    return "\r\n\r\n" + VersionLine(family, cpuVersion, serialNumber) + "\r\nCommand mode\r\n";
}

}  // namespace rm::sim
