#include "link/scripted_port.h"

#include <algorithm>
#include <utility>

namespace rm {

ScriptedPort::ScriptedPort(std::string name, std::shared_ptr<VirtualClock> clock)
    : name_(std::move(name)), clock_(clock ? std::move(clock) : std::make_shared<VirtualClock>()) {}

std::string ScriptedPort::ErrorText() const {
    if (status_ == kSerialOk) return {};
    if (status_ == kSerialNoSuchPort) return "There is no serial port " + name_;
    return "Serial port " + name_ + " cannot be opened";
}

void ScriptedPort::ArriveAt(uint32_t atMs, const std::string& bytes) {
    Schedule(static_cast<uint64_t>(atMs) * 1000, bytes);
}

void ScriptedPort::ArriveAfter(uint32_t delayMs, const std::string& bytes) {
    Schedule(clock_->NowUs() + static_cast<uint64_t>(delayMs) * 1000, bytes);
}

void ScriptedPort::Flood(uint32_t firstMs, uint32_t periodUs, uint64_t count, uint8_t byte) {
    if (count == 0) return;
    floods_.push_back({static_cast<uint64_t>(firstMs) * 1000, std::max<uint32_t>(periodUs, 1),
                       count, byte});
}

void ScriptedPort::SetEcho(bool on, uint32_t delayMs) {
    echo_ = on;
    echoDelayMs_ = delayMs;
}

void ScriptedPort::OnWrite(const std::string& trigger, const std::string& reply, uint32_t delayMs,
                           bool repeat) {
    writeRules_.push_back({trigger, reply, delayMs, repeat, false});
}

void ScriptedPort::OnBreak(const std::string& reply, uint32_t delayMs, bool repeat) {
    breakRules_.push_back({std::string(), reply, delayMs, repeat, false});
}

void ScriptedPort::Schedule(uint64_t atUs, const std::string& bytes) {
    if (!bytes.empty()) pending_.emplace(atUs, bytes);  // equal times keep their order
}

void ScriptedPort::Deliver() {
    uint64_t now = clock_->NowUs();
    while (!pending_.empty() && pending_.begin()->first <= now) {
        const std::string& bytes = pending_.begin()->second;
        rx_.insert(rx_.end(), bytes.begin(), bytes.end());
        pending_.erase(pending_.begin());
    }
    for (FloodSource& f : floods_) {
        while (f.left > 0 && f.nextUs <= now) {
            rx_.push_back(f.byte);
            f.nextUs += f.periodUs;
            --f.left;
        }
    }
}

bool ScriptedPort::NextArrivalUs(uint64_t& at) const {
    bool any = false;
    if (!pending_.empty()) {
        at = pending_.begin()->first;
        any = true;
    }
    for (const FloodSource& f : floods_) {
        if (f.left == 0) continue;
        if (!any || f.nextUs < at) at = f.nextUs;
        any = true;
    }
    return any;
}

int ScriptedPort::RxCount() {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    return static_cast<int>(rx_.size());
}

int ScriptedPort::ReadChar() {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    if (rx_.empty()) return kSerialNoData;
    uint8_t b = rx_.front();
    rx_.pop_front();
    clock_->AdvanceUs(readCostUs_);
    return b;
}

int ScriptedPort::PeekChar() {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    return rx_.empty() ? kSerialNoData : rx_.front();
}

int ScriptedPort::ReadBuffer(uint8_t* dst, int count) {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    int n = 0;
    while (n < count && !rx_.empty()) {
        dst[n++] = rx_.front();
        rx_.pop_front();
    }
    clock_->AdvanceUs(static_cast<uint64_t>(readCostUs_) * n);
    return n;
}

int ScriptedPort::ClearRXBuffer() {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    rx_.clear();
    return kSerialOk;
}

int ScriptedPort::WaitForRx(uint32_t limitMs) {
    if (!IsOpen()) return kSerialNotOpen;
    Deliver();
    if (!rx_.empty()) return static_cast<int>(rx_.size());
    uint64_t now = clock_->NowUs();
    uint64_t deadline = now + static_cast<uint64_t>(limitMs) * 1000;
    uint64_t next = 0;
    uint64_t until = (NextArrivalUs(next) && next <= deadline) ? next : deadline;
    clock_->AdvanceUs(until - now);
    Deliver();
    return static_cast<int>(rx_.size());
}

void ScriptedPort::OnByteWritten(uint8_t byte) {
    uint64_t now = clock_->NowUs();
    written_.push_back(static_cast<char>(byte));
    writeTimesMs_.push_back(now / 1000);
    if (echo_) {
        int e = echoFilter_ ? echoFilter_(byte) : byte;
        if (e >= 0) {
            Schedule(now + static_cast<uint64_t>(echoDelayMs_) * 1000,
                     std::string(1, static_cast<char>(e)));
        }
    }
    for (Rule& r : writeRules_) {
        if (r.used) continue;
        if (written_.size() < r.trigger.size()) continue;
        if (written_.compare(written_.size() - r.trigger.size(), r.trigger.size(), r.trigger) != 0) {
            continue;
        }
        uint64_t at = now + std::max<uint64_t>(static_cast<uint64_t>(r.delayMs) * 1000,
                                               echo_ ? static_cast<uint64_t>(echoDelayMs_) * 1000 : 0);
        Schedule(at, r.reply);
        r.used = !r.repeat;
        break;
    }
}

int ScriptedPort::WriteBufferTimed(const uint8_t* bytes, int count, uint32_t) {
    if (!IsOpen()) return kSerialNotOpen;
    if (writeResult_ != kSerialOk) return writeResult_;
    for (int i = 0; i < count; ++i) OnByteWritten(bytes[i]);
    return count;
}

int ScriptedPort::ClearTxBuffer() {
    if (!IsOpen()) return kSerialNotOpen;
    return clearTxResult_;
}

int ScriptedPort::SendBreak(uint32_t durationMs) {
    if (!IsOpen()) return kSerialNotOpen;
    if (breakResult_ != kSerialOk) return breakResult_;
    breaks_.push_back(durationMs);
    clock_->AdvanceUs(static_cast<uint64_t>(durationMs) * 1000);
    for (Rule& r : breakRules_) {
        if (r.used) continue;
        Schedule(clock_->NowUs() + static_cast<uint64_t>(r.delayMs) * 1000, r.reply);
        r.used = !r.repeat;
    }
    return kSerialOk;
}

void ScriptedPort::SleepMs(uint32_t ms) { clock_->AdvanceUs(static_cast<uint64_t>(ms) * 1000); }

// --- factory

ScriptedPortFactory::ScriptedPortFactory(std::shared_ptr<VirtualClock> clock)
    : clock_(clock ? std::move(clock) : std::make_shared<VirtualClock>()) {
    for (int i = 0; i < 8; ++i) paths_.push_back("/dev/ttyUSB" + std::to_string(i));
}

std::unique_ptr<ScriptedPort> ScriptedPortFactory::MakePort(const std::string& path) const {
    return std::make_unique<ScriptedPort>(path, clock_);
}

void ScriptedPortFactory::Provide(const std::string& path, std::unique_ptr<ScriptedPort> port) {
    provided_[path].push_back(std::move(port));
}

void ScriptedPortFactory::SetDefaultBufferSize(int rxSize, int txSize) {
    rxSize_ = rxSize;
    txSize_ = txSize;
}

std::unique_ptr<SerialPort> ScriptedPortFactory::PortOpen(const std::string& path, int baud,
                                                          char parity, int dataBits,
                                                          int stopBits) {
    opens_.push_back({path, baud, parity, dataBits, stopBits, rxSize_, txSize_});
    auto queued = provided_.find(path);
    if (queued != provided_.end() && !queued->second.empty()) {
        std::unique_ptr<ScriptedPort> port = std::move(queued->second.front());
        queued->second.pop_front();
        return port;
    }
    auto port = MakePort(path);
    auto status = statuses_.find(path);
    port->SetStatus(status != statuses_.end() ? status->second : kSerialNoSuchPort);
    return port;
}

std::string ScriptedPortFactory::PortPath(int index) const {
    if (index < 0 || index >= static_cast<int>(paths_.size())) return {};
    return paths_[index];
}

}  // namespace rm
