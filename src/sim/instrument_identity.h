#pragma once
// How a simulated instrument names itself: the answer line to "Ver", the answer to
// "systemtype" and the banner it prints after a break. A KVR puts its firmware byte
// (CPUSoftwareVerNum) as the fifth character of the "Ver" line, where the system takes it from;
// the sibling families name themselves so that the system can recognise and refuse them.

#include <cstdint>
#include <string>

namespace rm::sim {

enum class InstrumentFamily { Kvr, Skiffjack, Zsn };

// "kvr", "skiffjack" or "zsn"; false for anything else.
bool ParseInstrumentFamily(const std::string& text, InstrumentFamily& family);

std::string VersionLine(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber);
std::string SystemTypeLine(InstrumentFamily family);
// The lines printed after a break, without the prompt.
std::string BreakBanner(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber);

}  // namespace rm::sim
