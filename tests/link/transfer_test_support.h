#pragma once
// A scripted instrument for the settings-transfer tests: record images laid out by hand from
// the records' byte tables, their frames on the line, and a fixture that answers chosen
// commands and otherwise sits at its prompt.

#include "data/kvr_data.h"
#include "data/user_prompt.h"
#include "link/link_state.h"
#include "link/prompt_dialogue.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace rm::test {

inline std::string Le16(unsigned v) {
    return std::string{static_cast<char>(v & 0xFF), static_cast<char>((v >> 8) & 0xFF)};
}

inline void Put16(std::string& image, size_t at, unsigned v) { image.replace(at, 2, Le16(v)); }

// Length (payload + 4), payload, and the sum of 0xA596 and the payload bytes.
inline std::string FrameOf(const std::string& payload) {
    unsigned sum = 0xA596;
    for (char c : payload) sum += static_cast<uint8_t>(c);
    return Le16(static_cast<unsigned>(payload.size() + 4)) + payload + Le16(sum & 0xFFFF);
}

// What the instrument sends after a "Get" command: its acknowledgement, then the frame.
inline std::string GetReply(const std::string& payload) { return "\r\nOK\r\n" + FrameOf(payload); }

struct ConfSpec {
    uint8_t cpu = 170;
    uint8_t kvrType = 1;
    uint8_t beams = 3;
    uint8_t orientation = 0;
    uint8_t compass = 1;
    uint8_t extSensor = 0;
    uint8_t extPressure = 0;
    uint8_t ctd = 0;
    uint8_t pressureRange = 0;
};

// A version 2 configuration record of 96 bytes.
inline std::string ConfImage(const ConfSpec& s) {
    std::string b(96, '\0');
    b[0] = 16;
    b[1] = 2;
    Put16(b, 2, 96);
    b[12] = static_cast<char>(s.cpu);
    b[13] = 50;
    b[14] = 'D';
    b.replace(15, 6, "SN4711");
    b[25] = static_cast<char>(s.kvrType);
    b[26] = static_cast<char>(s.beams);
    b[27] = 1;
    Put16(b, 28, 250);
    b[30] = static_cast<char>(s.orientation);
    b[31] = static_cast<char>(s.compass);
    b[33] = 1;
    b[79] = static_cast<char>(s.extSensor);
    b[80] = static_cast<char>(s.extPressure);
    b[81] = static_cast<char>(s.ctd);
    b[88] = static_cast<char>(s.pressureRange);
    return b;
}

struct UserSpec {
    unsigned cells = 20;
    unsigned cellSizeCm = 50;
    uint8_t bottomTrack = 0;
    uint8_t waveInterval = 0;
    unsigned pseriesLength = 0;
    uint8_t pcMode = 0;
};

// A 256-byte user setup whose tail (bytes 245 to 255) is in use.
inline std::string UserImage(const UserSpec& s) {
    std::string b(256, '\0');
    b[0] = 18;
    b[1] = 1;
    Put16(b, 2, 256);
    Put16(b, 18, s.cells);
    Put16(b, 20, s.cellSizeCm);
    Put16(b, 22, 20);
    b.replace(47, 5, "RIVER");
    b[245] = static_cast<char>(s.bottomTrack);
    b[248] = static_cast<char>(s.waveInterval);
    b[249] = 1;
    Put16(b, 250, s.pseriesLength);
    b[254] = static_cast<char>(s.pcMode);
    return b;
}

inline std::string OperImage() {
    std::string b(64, '\0');
    b[0] = 17;
    b[1] = 1;
    Put16(b, 2, 64);
    Put16(b, 47, 12);
    return b;
}

constexpr const char* kKvrVerReply = "\r\nKVR 2 Ripple\r\n>";

// An instrument at its prompt that answers the commands the test gives it. Answers must be
// given before Ready(), which adds the prompt and "Ver" answers behind them.
class TransferTest : public ::testing::Test {
protected:
    void Answer(const std::string& command, const std::string& reply, bool repeat = false) {
        port.OnWrite(command + "\r", reply, 0, repeat);
    }
    void Ready() { ScriptAwakeInstrument(port, kKvrVerReply); }
    // The commands written, each up to its carriage return, without the empty lines that ask
    // for a fresh prompt and the blanks of the wake-up.
    std::vector<std::string> Commands() const {
        std::vector<std::string> out;
        std::string current;
        for (char c : port.Written()) {
            if (c == '\r') {
                if (!current.empty()) out.push_back(current);
                current.clear();
            } else if (c != ' ' || !current.empty()) {
                current.push_back(c);
            }
        }
        return out;
    }

    ScratchDir dir;
    ScriptedPort port;
    RecordingPrompt prompt;
    PromptDialogue dialogue{port, prompt, dir.File("LogFile")};
    CKvrData kvr;
    InstrumentLinkState state;
};

}  // namespace rm::test
