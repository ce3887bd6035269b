#pragma once
// The loops that put a simulated device on a pseudo-terminal: the instrument, which answers
// what it receives and sends its frames on time, and the NMEA streams of a GPS receiver or an
// echo sounder, which only talk. They serve one program after another until SIGTERM or SIGINT;
// what they send while no program holds the device is lost, as on a cable with nobody at the
// other end. For one program only, they end when the other side, having once opened the device,
// has kept it closed for a grace period (so that a program that closes and reopens its port, as
// the collection start does, is not cut off).

#include <functional>
#include <string>

#include "sim/pseudo_terminal.h"
#include "sim/simulated_instrument.h"

namespace rm::sim {

// Seconds the other side may keep the device closed before the loop ends.
constexpr double kPeerGoneGraceS = 2.0;

// Makes SIGTERM and SIGINT end the loops below instead of the process.
void InstallStopSignals();
bool StopRequested();
// Ends the loops as the signals do (for a caller's own reasons).
void RequestStop();

enum class ServeEnd { Signal, PeerClosed, LineFailed };

// Until a signal, or until the first program that opened the device has closed it.
enum class ServeLifetime { UntilStopped, OneProgram };

ServeEnd ServeInstrument(PseudoTerminal& pty, SimulatedInstrument& instrument,
                         ServeLifetime lifetime = ServeLifetime::UntilStopped);

// Calls `sentencesAt(seconds since the start)` every `periodS` and sends what it returns.
ServeEnd ServeStream(PseudoTerminal& pty, const std::function<std::string(double)>& sentencesAt, double periodS,
                     ServeLifetime lifetime = ServeLifetime::UntilStopped);

}  // namespace rm::sim
