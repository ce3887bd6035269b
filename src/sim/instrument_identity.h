#pragma once
// How a simulated instrument names itself: the answer line to "Ver", the answer to
// "systemtype" and the banner it prints after a break. A KVR (and a Hullstar, which the system
// treats as one) puts its firmware byte (CPUSoftwareVerNum) as the fifth character of the "Ver"
// line, where the system takes it from; the other families name themselves so that the system
// can recognise and refuse them.

#include <cstdint>
#include <string>
#include <vector>

namespace rm::sim {

enum class InstrumentFamily { Kvr, Hullstar, Skiffjack, SkiffjackZsn, Zsn, Zsn6600, Flow, Vnq, Unknown };

// The family's name on the command line ("kvr", "hullstar", ...); false for anything else.
bool ParseInstrumentFamily(const std::string& text, InstrumentFamily& family);
// Every name ParseInstrumentFamily takes, in the order of the enumeration.
const std::vector<std::string>& InstrumentFamilyNames();

std::string VersionLine(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber);
std::string SystemTypeLine(InstrumentFamily family);
// The lines printed after a break, without the prompt.
std::string BreakBanner(InstrumentFamily family, uint8_t cpuVersion, const std::string& serialNumber);

}  // namespace rm::sim
