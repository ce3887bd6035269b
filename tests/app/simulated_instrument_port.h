#pragma once
// The simulated instrument on an in-process serial port with a virtual clock: what is written
// reaches the instrument at the current virtual time, what it produces by then is waiting to be
// read, and sleeping or waiting moves the clock (to the instrument's next output when that
// comes first). A whole wake-up, setup transfer and collection runs in milliseconds. The clock
// and the bytes waiting belong to the line, so a port opened again goes on where the last one
// stood.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>
#include <string>

#include "link/serial_port.h"
#include "sim/nmea_output.h"
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
    SimulatedLine& Line() { return line_; }

private:
    SimulatedLine line_;
};

// An external GPS receiver on the line's clock: every read gives one GGA sentence of the boat at
// that moment (10:00:00 at time 0), which moves from 45 N 7 E by 1e-5 degree a second in
// latitude and in longitude. A silent receiver gives nothing.
class SimulatedGpsPort : public SerialPort {
public:
    static constexpr double kStartLatitude = 45.0, kStartLongitude = 7.0, kDegreesPerSecond = 1e-5;

    SimulatedGpsPort(const SimulatedLine& line, bool talks) : line_(line), talks_(talks) {}

    int Status() const override { return kSerialOk; }
    bool IsOpen() const override { return true; }
    std::string Name() const override { return "gps"; }
    std::string ErrorText() const override { return {}; }
    void Close() override {}
    int RxCount() override { return talks_ ? static_cast<int>(Sentence().size()) : 0; }
    int ReadChar() override { return kSerialNoData; }
    int PeekChar() override { return kSerialNoData; }
    int ReadBuffer(uint8_t* dst, int count) override {
        if (!talks_) return 0;
        const std::string text = Sentence();
        const int n = std::min(count, static_cast<int>(text.size()));
        std::memcpy(dst, text.data(), static_cast<size_t>(n));
        return n;
    }
    int ClearRXBuffer() override { return kSerialOk; }
    int WaitForRx(uint32_t) override { return RxCount(); }
    int WriteBufferTimed(const uint8_t*, int count, uint32_t) override { return count; }
    int ClearTxBuffer() override { return kSerialOk; }
    int SendBreak(uint32_t) override { return kSerialOk; }
    void SleepMs(uint32_t) override {}
    uint32_t TickMs() override { return static_cast<uint32_t>(line_.nowUs / 1000); }

private:
    std::string Sentence() const {
        const double t = static_cast<double>(line_.nowUs) * 1e-6;
        const sim::NmeaAngle lat = sim::FormatNmeaLatitude(kStartLatitude + kDegreesPerSecond * t);
        const sim::NmeaAngle lon = sim::FormatNmeaLongitude(kStartLongitude + kDegreesPerSecond * t);
        char time[16];
        std::snprintf(time, sizeof time, "10%02d%05.2f", static_cast<int>(t / 60.0), std::fmod(t, 60.0));
        return "$GPGGA," + std::string(time) + "," + lat.value + "," + lat.hemisphere + "," + lon.value + "," +
               lon.hemisphere + ",1,10,0.8,12.0,M,0.0,M,,*00\r\n";
    }

    const SimulatedLine& line_;
    bool talks_;
};

}  // namespace rm::doctest
