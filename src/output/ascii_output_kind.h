#pragma once
// The kinds of the "ASCII File Output" set, in the order "Write All Files" writes them, with
// the title of each in the message list.

#include <array>

namespace rm {

enum class AsciiOutputKind { Configuration, Header, SignalStrength, StdDeviation, SnRatio, Gps, Velocity };

constexpr std::array<AsciiOutputKind, 7> kAllAsciiOutputKinds{
    AsciiOutputKind::Configuration, AsciiOutputKind::Header, AsciiOutputKind::SignalStrength,
    AsciiOutputKind::StdDeviation,  AsciiOutputKind::SnRatio, AsciiOutputKind::Gps,
    AsciiOutputKind::Velocity};

// "Configuration Data File: ", "Header Data File: ", ... as the message list opens each kind.
const char* AsciiOutputTitle(AsciiOutputKind kind);

}  // namespace rm
