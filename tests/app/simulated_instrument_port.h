#pragma once
// The simulated instrument on an in-process serial port with a virtual clock: what is written
// reaches the instrument at the current virtual time, what it produces by then is waiting to be
// read, and sleeping or waiting moves the clock (to the instrument's next output when that
// comes first). A whole wake-up, setup transfer and collection runs in milliseconds. The clock
// and the bytes waiting belong to the line, so a port opened again goes on where the last one
// stood.

#include <algorithm>
#include <cmath>
#include <deque>
#include <memory>
#include <string>

#include "link/serial_port.h"
#include "sim/simulated_instrument.h"

namespace rm::doctest {

struct SimulatedLine {
    explicit SimulatedLine(sim::SimulatedInstrument& i) : instrument(i) {}
    sim::SimulatedInstrument& instrument;
    std::deque<char> rx;
    uint64_t nowUs = 0;
};

class SimulatedInstrumentPort : public SerialPort {
public:
    explicit SimulatedInstrumentPort(SimulatedLine& line)
        : instrument_(line.instrument), rx_(line.rx), nowUs_(line.nowUs) {}

    double NowS() const { return static_cast<double>(nowUs_) * 1e-6; }
    void AdvanceMs(uint32_t ms) { nowUs_ += uint64_t{ms} * 1000; }

    int Status() const override { return open_ ? kSerialOk : kSerialNotOpen; }
    bool IsOpen() const override { return open_; }
    std::string Name() const override { return "simulated"; }
    std::string ErrorText() const override { return {}; }
    void Close() override { open_ = false; }

    int RxCount() override {
        Collect();
        return static_cast<int>(rx_.size());
    }
    int ReadChar() override {
        Collect();
        if (rx_.empty()) return kSerialNoData;
        const int c = static_cast<uint8_t>(rx_.front());
        rx_.pop_front();
        return c;
    }
    int PeekChar() override {
        Collect();
        return rx_.empty() ? kSerialNoData : static_cast<uint8_t>(rx_.front());
    }
    int ReadBuffer(uint8_t* dst, int count) override {
        Collect();
        int n = 0;
        for (; n < count && !rx_.empty(); ++n) {
            dst[n] = static_cast<uint8_t>(rx_.front());
            rx_.pop_front();
        }
        return n;
    }
    int ClearRXBuffer() override {
        Collect();
        rx_.clear();
        return kSerialOk;
    }
    int WaitForRx(uint32_t limitMs) override {
        if (RxCount() > 0) return RxCount();
        const uint64_t deadline = nowUs_ + uint64_t{limitMs} * 1000;
        const double next = instrument_.NextDueS();
        const uint64_t due = std::isfinite(next) ? static_cast<uint64_t>(std::ceil(next * 1e6)) : deadline;
        nowUs_ = std::max(nowUs_, std::min(std::max(due, nowUs_ + 1), deadline));  // always some progress
        return RxCount();
    }
    int WriteBufferTimed(const uint8_t* bytes, int count, uint32_t) override {
        instrument_.Receive(bytes, static_cast<size_t>(count), NowS());
        Collect();
        return count;
    }
    int ClearTxBuffer() override { return kSerialOk; }
    int SendBreak(uint32_t durationMs) override {
        AdvanceMs(durationMs);
        const uint8_t breakByte = 0;  // a break reads as one zero byte on this line
        return WriteBufferTimed(&breakByte, 1, kNoLimit) == 1 ? kSerialOk : kSerialIoError;
    }
    void SleepMs(uint32_t ms) override { AdvanceMs(ms); }
    uint32_t TickMs() override { return static_cast<uint32_t>(nowUs_ / 1000); }

private:
    void Collect() {
        instrument_.Advance(NowS());
        const std::string out = instrument_.TakeOutput();
        rx_.insert(rx_.end(), out.begin(), out.end());
    }

    sim::SimulatedInstrument& instrument_;
    std::deque<char>& rx_;
    uint64_t& nowUs_;
    bool open_ = true;
};

// Every open, whatever the path, is a port on the one line to the instrument.
class SimulatedInstrumentFactory : public SerialPortFactory {
public:
    explicit SimulatedInstrumentFactory(sim::SimulatedInstrument& instrument) : line_(instrument) {}
    void SetDefaultBufferSize(int, int) override {}
    std::unique_ptr<SerialPort> PortOpen(const std::string&, int, char, int, int) override {
        return std::make_unique<SimulatedInstrumentPort>(line_);
    }
    std::string PortPath(int index) const override { return index == 0 ? "simulated" : ""; }

private:
    SimulatedLine line_;
};

}  // namespace rm::doctest
