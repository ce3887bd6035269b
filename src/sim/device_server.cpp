#include "sim/device_server.h"

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>

namespace rm::sim {

namespace {

volatile std::sig_atomic_t g_stop = 0;

extern "C" void OnStopSignal(int) { g_stop = 1; }

// Longest wait of one round, so that a signal or a closed peer is noticed soon.
constexpr double kLongestWaitS = 0.05;
// Limit of one write: the other side may be slow to take the bytes.
constexpr int kWriteLimitMs = 2000;

class SteadySeconds {
public:
    double Now() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Follows whether the other side holds the device: true once it has been open and has then
// stayed closed for the grace period.
class PeerWatch {
public:
    bool Gone(const PseudoTerminal& pty, double nowS) {
        if (pty.PeerOpen()) {
            seen_ = true;
            closedSinceS_ = -1.0;
            return false;
        }
        if (!seen_) return false;
        if (closedSinceS_ < 0.0) closedSinceS_ = nowS;
        return nowS - closedSinceS_ >= kPeerGoneGraceS;
    }

    // Bytes from the other side prove it was there, even if it closed before a look.
    void Seen() { seen_ = true; }

private:
    bool seen_ = false;
    double closedSinceS_ = -1.0;
};

int WaitMs(double untilS, double nowS) {
    const double wait = std::clamp(untilS - nowS, 0.0, kLongestWaitS);
    return static_cast<int>(std::ceil(wait * 1000.0));
}

}  // namespace

void InstallStopSignals() {
    struct sigaction action {};
    action.sa_handler = OnStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // no restart: a wait returns at once
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    // A closed pipe on stdout must not end the device.
    signal(SIGPIPE, SIG_IGN);
}

bool StopRequested() { return g_stop != 0; }
void RequestStop() { g_stop = 1; }

ServeEnd ServeInstrument(PseudoTerminal& pty, SimulatedInstrument& instrument, ServeLifetime lifetime) {
    SteadySeconds clock;
    PeerWatch peer;
    uint8_t buffer[4096];
    while (!StopRequested()) {
        double now = clock.Now();
        if (peer.Gone(pty, now) && lifetime == ServeLifetime::OneProgram) return ServeEnd::PeerClosed;
        if (pty.WaitReadable(WaitMs(instrument.NextDueS(), now))) {
            const long n = pty.Read(buffer, sizeof buffer);
            if (n < 0) return ServeEnd::LineFailed;
            if (n > 0) peer.Seen();
            instrument.Receive(buffer, static_cast<size_t>(n), clock.Now());
        }
        instrument.Advance(clock.Now());
        const std::string out = instrument.TakeOutput();
        if (!out.empty() && pty.PeerOpen()) pty.Write(out, kWriteLimitMs);
    }
    return ServeEnd::Signal;
}

ServeEnd ServeStream(PseudoTerminal& pty, const std::function<std::string(double)>& sentencesAt, double periodS,
                     ServeLifetime lifetime) {
    SteadySeconds clock;
    PeerWatch peer;
    uint8_t scrap[256];
    double nextS = 0.0;
    while (!StopRequested()) {
        const double now = clock.Now();
        if (peer.Gone(pty, now) && lifetime == ServeLifetime::OneProgram) return ServeEnd::PeerClosed;
        if (now >= nextS) {
            const std::string text = sentencesAt(nextS);
            if (!text.empty() && pty.PeerOpen()) pty.Write(text, kWriteLimitMs);
            nextS += periodS;
            continue;
        }
        // What the other side sends is read and dropped, so it never blocks the line.
        if (pty.WaitReadable(WaitMs(nextS, now)) && pty.Read(scrap, sizeof scrap) < 0) return ServeEnd::LineFailed;
    }
    return ServeEnd::Signal;
}

}  // namespace rm::sim
