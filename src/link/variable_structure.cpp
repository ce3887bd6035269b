#include "link/variable_structure.h"

#include "data/byte_io.h"
#include "link/logged_reads.h"
#include "link/wake_up.h"

#include <algorithm>
#include <cstring>

namespace rm {

namespace {

constexpr uint32_t kGetCommandLimitMs = 3000;
constexpr uint32_t kBeforeFrameSleepMs = 50;
constexpr uint32_t kFrameWaitStepMs = 5;
// Bytes taken away while waiting for the frame before the line counts as busy with other data.
constexpr int kStrayByteLimit = 300;
constexpr int kStrayFlushLength = 199;
constexpr uint32_t kStrayFlushLimitMs = 100;
constexpr uint32_t kBeforeLengthSleepMs = 10;
constexpr int kBodyWaitRounds = 50;
constexpr uint32_t kBodyWaitStepMs = 10;
constexpr uint32_t kBodyReadLimitMs = 500;

constexpr int kFlagLineLength = 99;
constexpr uint32_t kFlagReadLimitMs = 100;
constexpr uint32_t kFlagRestLimitMs = 300;

constexpr uint32_t kLoadCommandLimitMs = 1000;
constexpr uint32_t kLoadWriteLimitMs = 200;
constexpr size_t kLoadPromptBufferSize = 1024;
constexpr int kLoadPromptRounds = 5000;
constexpr uint32_t kSaveSetupLimitMs = 1000;
// The instrument's buffer that a record read back is compared in.
constexpr size_t kCompareBufferSize = 1024;

bool Contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

// Waits until two bytes wait, taking away whatever single byte stands before them. Returns the
// bytes taken away, or -1 when the port fails.
int WaitForFrameStart(SerialPort& port, RawLog* raw) {
    uint8_t scrap[2];
    int taken = 0;
    for (;;) {
        int waiting = port.RxCount();
        if (waiting < 0) return -1;
        if (waiting >= 2 || taken >= kStrayByteLimit) return taken;
        int n = port.ReadBuffer(scrap, std::min(waiting, static_cast<int>(sizeof scrap)));
        if (n < 0) return -1;
        if (raw && n > 0) raw->Write(scrap, static_cast<size_t>(n));
        port.SleepMs(kFrameWaitStepMs);
        taken += n;
    }
}

}  // namespace

std::vector<uint8_t> EncodeVariableFrame(const uint8_t* payload, size_t size) {
    std::vector<uint8_t> frame(size + kVariableFrameOverhead);
    ByteWriter w(frame.data(), frame.size());
    w.u16(0, static_cast<uint16_t>(frame.size()));
    if (size > 0) std::memcpy(frame.data() + 2, payload, size);
    w.u16(size + 2, RecordChecksum(payload, size));
    return frame;
}

int GetVariableStructure(PromptDialogue& dialogue, const std::string& command, std::vector<uint8_t>& payload,
                         RawLog* raw, const char* startFailureText) {
    SerialPort& port = dialogue.Port();
    UserPrompt& prompt = dialogue.Prompt();
    if (!dialogue.SendCommandWaitOk(command, kGetCommandLimitMs, raw)) {
        prompt.Message(kGetStructureErrorText);
        return 0;
    }

    port.SleepMs(kBeforeFrameSleepMs);
    int taken = WaitForFrameStart(port, raw);
    if (taken < 0) {
        prompt.Message(kGetStructureErrorText);
        return 0;
    }
    if (taken >= kStrayByteLimit) {
        uint8_t flush[kStrayFlushLength];
        ReadBufferLogged(port, flush, kStrayFlushLength, kStrayFlushLimitMs, raw);
        prompt.Message(startFailureText);
        return 0;
    }

    port.SleepMs(kBeforeLengthSleepMs);
    const int length = ReadBlockLength(port, raw);
    if (length < static_cast<int>(kVariableFrameOverhead)) {
        // No room for a checksum: the frame cannot be right.
        prompt.Message(kStructureChecksumText);
        return 0;
    }

    const int body = length - 2;  // payload and checksum
    int lastCount = port.RxCount();
    for (int round = 0; round < kBodyWaitRounds && lastCount < body; ++round) {
        port.SleepMs(kBodyWaitStepMs);
        lastCount = port.RxCount();
    }
    std::vector<uint8_t> bytes(static_cast<size_t>(body));
    const int got = ReadBufferLogged(port, bytes.data(), body, kBodyReadLimitMs, raw);
    if (lastCount > length && DrainReceive(port, kDrainLimitMs, raw) != 0) return 0;

    const size_t payloadSize = static_cast<size_t>(length) - kVariableFrameOverhead;
    if (got != body ||
        ByteReader(bytes.data(), bytes.size()).u16(payloadSize) != RecordChecksum(bytes.data(), payloadSize)) {
        prompt.Message(kStructureChecksumText);
        return 0;
    }
    payload.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(payloadSize));
    return 1;
}

int GetVariableFlag(PromptDialogue& dialogue, const std::string& command, std::string& answer, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    if (!dialogue.SendCommandNoWait(command, raw)) {
        dialogue.Prompt().Message(kGetStructureErrorText);
        return 0;
    }
    std::string line;
    ReadStringLogged(port, line, kFlagLineLength, kLineEnd, kFlagReadLimitMs, raw);
    answer = kFlagAnswerYes;
    if (Contains(line, "NO")) {
        answer = kFlagAnswerNo;
        return 1;
    }
    if (Contains(line, "YES")) return 1;
    answer = kFlagAnswerNo;
    dialogue.Prompt().Message(kInvalidCommandText);
    ReadStringLogged(port, line, kFlagLineLength, kLineEnd, kFlagRestLimitMs, raw);
    return 0;
}

int LoadVariableStructure(PromptDialogue& dialogue, const std::string& name, const uint8_t* bytes, size_t size,
                          char promptChar) {
    SerialPort& port = dialogue.Port();
    const std::vector<uint8_t> frame = EncodeVariableFrame(bytes, size);
    if (!dialogue.SendCommandWaitOk("Load " + name, kLoadCommandLimitMs, nullptr)) return 1;

    // Length, payload and checksum go out as three writes, each under its own limit.
    const int payloadSize = static_cast<int>(size);
    if (port.WriteBufferTimed(frame.data(), 2, kLoadWriteLimitMs) != 2) return 1;
    if (payloadSize > 0 &&
        port.WriteBufferTimed(frame.data() + 2, payloadSize, kLoadWriteLimitMs) != payloadSize) {
        return 1;
    }
    if (port.WriteBufferTimed(frame.data() + 2 + size, 2, kLoadWriteLimitMs) != 2) return 1;

    std::string buffer;
    return ReadUntilPattern(port, buffer, kLoadPromptBufferSize, std::string(1, promptChar), kLoadPromptRounds,
                            nullptr, nullptr) == 1
               ? 0
               : 1;
}

int PutVariableStructure(PromptDialogue& dialogue, int systemType, const std::string& name, const uint8_t* bytes,
                         size_t size, RawLog* raw) {
    std::vector<uint8_t> current;
    if (!GetVariableStructure(dialogue, "Get " + name, current, raw)) return 0;
    // The comparison buffer is zeroed first, so a shorter record compares with zeros behind it.
    current.resize(std::max({current.size(), size, kCompareBufferSize}), 0);
    if (std::equal(bytes, bytes + size, current.begin())) return 1;

    if (WakeResultIsKvr(systemType) && LoadVariableStructure(dialogue, name, bytes, size) != 0) return 0;
    if (!dialogue.SendCommandWaitOk("Save setup", kSaveSetupLimitMs, raw)) return 0;
    return 1;
}

}  // namespace rm
