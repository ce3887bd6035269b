#pragma once
// An in-memory serial port on a virtual clock, for tests of instrument dialogues. The script
// says which bytes arrive when (absolute virtual times, delays, split deliveries, a steady
// flood), whether written bytes are echoed, and which written texts or breaks trigger which
// replies. Sleeping and waiting advance the clock instead of taking real time, so a wake-up of
// several virtual seconds runs in microseconds. Everything written is recorded.

#include "link/serial_port.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace rm {

// Virtual time with microsecond resolution, so that per-byte costs can be below a millisecond.
// The tick starts at a chosen value, so tests can put a 32-bit wrap inside a dialogue.
class VirtualClock {
public:
    explicit VirtualClock(uint32_t startTickMs = 0) : startTickMs_(startTickMs) {}
    uint64_t NowUs() const { return nowUs_; }
    uint32_t TickMs() const { return static_cast<uint32_t>(startTickMs_ + nowUs_ / 1000); }
    void AdvanceUs(uint64_t us) { nowUs_ += us; }

private:
    uint32_t startTickMs_;
    uint64_t nowUs_ = 0;
};

class ScriptedPort : public SerialPort {
public:
    explicit ScriptedPort(std::string name = "scripted",
                          std::shared_ptr<VirtualClock> clock = nullptr);

    // --- script: what the line sends. Times are virtual milliseconds since the clock's start.
    void ArriveAt(uint32_t atMs, const std::string& bytes);
    void ArriveAfter(uint32_t delayMs, const std::string& bytes);
    // `count` copies of `byte`, one every `periodUs`, the first at `firstMs`: a line that keeps
    // sending.
    void Flood(uint32_t firstMs, uint32_t periodUs, uint64_t count, uint8_t byte);
    // Echo every written byte after `delayMs`, as an instrument at its command line does.
    void SetEcho(bool on, uint32_t delayMs = 0);
    // Replaces the echo of a byte: return the byte to echo, or -1 to echo nothing.
    void SetEchoFilter(std::function<int(uint8_t)> filter) { echoFilter_ = std::move(filter); }
    // When everything written so far ends with `trigger`, `reply` arrives `delayMs` later (after
    // the echo of the last byte). Rules are tried in the order given; the first that matches
    // fires, and a rule without `repeat` fires once.
    void OnWrite(const std::string& trigger, const std::string& reply, uint32_t delayMs = 0,
                 bool repeat = false);
    // `reply` arrives `delayMs` after the end of the next break (of every break with `repeat`).
    // Every break rule not yet used fires, so a reply can come in timed pieces.
    void OnBreak(const std::string& reply, uint32_t delayMs = 0, bool repeat = false);
    // Virtual cost of taking one received byte, to model a line faster than its reader.
    void SetReadCostUs(uint32_t us) { readCostUs_ = us; }
    // --- injected failures (kSerialOk restores normal behaviour)
    void SetStatus(int status) { status_ = status; }
    void FailClearTx(int status) { clearTxResult_ = status; }
    void FailBreak(int status) { breakResult_ = status; }
    void FailWrites(int status) { writeResult_ = status; }

    // --- what the program did
    const std::string& Written() const { return written_; }
    // The virtual millisecond at which each byte of Written() went out.
    const std::vector<uint64_t>& WriteTimesMs() const { return writeTimesMs_; }
    const std::vector<uint32_t>& Breaks() const { return breaks_; }
    // Virtual milliseconds since the clock's start.
    uint64_t NowMs() const { return clock_->NowUs() / 1000; }
    VirtualClock& Clock() { return *clock_; }

    // --- SerialPort
    int Status() const override { return status_; }
    bool IsOpen() const override { return status_ == kSerialOk && !closed_; }
    std::string Name() const override { return name_; }
    std::string ErrorText() const override;
    void Close() override { closed_ = true; }
    int RxCount() override;
    int ReadChar() override;
    int PeekChar() override;
    int ReadBuffer(uint8_t* dst, int count) override;
    int ClearRXBuffer() override;
    int WaitForRx(uint32_t limitMs) override;
    int WriteBufferTimed(const uint8_t* bytes, int count, uint32_t limitMs) override;
    int ClearTxBuffer() override;
    int SendBreak(uint32_t durationMs) override;
    void SleepMs(uint32_t ms) override;
    uint32_t TickMs() override { return clock_->TickMs(); }

private:
    struct Rule {
        std::string trigger;
        std::string reply;
        uint32_t delayMs;
        bool repeat;
        bool used;
    };
    struct FloodSource {
        uint64_t nextUs;
        uint32_t periodUs;
        uint64_t left;
        uint8_t byte;
    };

    void Schedule(uint64_t atUs, const std::string& bytes);
    // Moves every byte whose time has come into the receive buffer.
    void Deliver();
    // Time of the next byte still to arrive; false when none is scheduled.
    bool NextArrivalUs(uint64_t& at) const;
    void OnByteWritten(uint8_t byte);

    std::string name_;
    std::shared_ptr<VirtualClock> clock_;
    int status_ = kSerialOk;
    bool closed_ = false;
    std::multimap<uint64_t, std::string> pending_;
    std::vector<FloodSource> floods_;
    std::deque<uint8_t> rx_;
    bool echo_ = false;
    uint32_t echoDelayMs_ = 0;
    std::function<int(uint8_t)> echoFilter_;
    std::vector<Rule> writeRules_;
    std::vector<Rule> breakRules_;
    uint32_t readCostUs_ = 0;
    int clearTxResult_ = kSerialOk;
    int breakResult_ = kSerialOk;
    int writeResult_ = kSerialOk;
    std::string written_;
    std::vector<uint64_t> writeTimesMs_;
    std::vector<uint32_t> breaks_;
};

// Hands out scripted ports by path: a port provided for a path is given at its next open, a
// path with only an open status gets a silent port with that status, and any other path does
// not exist. Every open is recorded with its settings.
class ScriptedPortFactory : public SerialPortFactory {
public:
    struct OpenRequest {
        std::string path;
        int baud;
        char parity;
        int dataBits;
        int stopBits;
        int rxSize;
        int txSize;
    };

    explicit ScriptedPortFactory(std::shared_ptr<VirtualClock> clock = nullptr);

    // A port on the factory's clock, for a test to script and then Provide.
    std::unique_ptr<ScriptedPort> MakePort(const std::string& path) const;
    void Provide(const std::string& path, std::unique_ptr<ScriptedPort> port);
    void SetOpenStatus(const std::string& path, int status) { statuses_[path] = status; }
    // Paths behind port numbers 0, 1, ...; by default "/dev/ttyUSB0" to "/dev/ttyUSB7".
    void SetPortPaths(std::vector<std::string> paths) { paths_ = std::move(paths); }
    const std::vector<OpenRequest>& Opens() const { return opens_; }
    VirtualClock& Clock() { return *clock_; }

    void SetDefaultBufferSize(int rxSize, int txSize) override;
    std::unique_ptr<SerialPort> PortOpen(const std::string& path, int baud, char parity,
                                         int dataBits, int stopBits) override;
    std::string PortPath(int index) const override;

private:
    std::shared_ptr<VirtualClock> clock_;
    std::map<std::string, std::deque<std::unique_ptr<ScriptedPort>>> provided_;
    std::map<std::string, int> statuses_;
    std::vector<std::string> paths_;
    std::vector<OpenRequest> opens_;
    int rxSize_ = 8192;
    int txSize_ = 8192;
};

}  // namespace rm
