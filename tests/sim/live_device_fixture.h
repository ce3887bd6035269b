#pragma once
// A kvr-sim device started for one test and the project's own link code on its pseudo-terminal:
// the POSIX port, the prompt dialogue and a prompt that records what the user would be shown.
// The child is ended in teardown, and every wait has a limit, so a test cannot hang.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/byte_io.h"
#include "data/user_prompt.h"
#include "link/posix_serial_port.h"
#include "link/prompt_dialogue.h"
#include "sim/sim_process.h"
#include "sim_test_support.h"

namespace rm::simtest {

class LiveDevice : public ::testing::Test {
protected:
    // Starts `kvr-sim <args>`; with `openPort` the device is opened as the application would.
    void Launch(const std::vector<std::string>& args, bool openPort = true, int baud = 9600) {
        ASSERT_TRUE(process.Start(sim::KvrSimProgram(), args, scratch.File("device.err"))) << process.Error();
        if (!openPort) return;
        port = std::make_unique<PosixSerialPort>(process.DevicePath(), baud, 'N', 8, 1, 8192);
        ASSERT_EQ(port->Status(), kSerialOk) << port->ErrorText();
        dialogue = std::make_unique<PromptDialogue>(*port, prompt, "");
    }
    void TearDown() override {
        dialogue.reset();
        port.reset();
        process.Stop();
    }

    // One profile frame off the line: the bytes skipped before its sync byte, the frame, and
    // whether its checksum (0xA596 plus every byte before it) holds.
    struct Frame {
        size_t skipped = 0;
        std::vector<uint8_t> bytes;
        bool checksumGood = false;
        uint32_t Number() const { return ByteReader(bytes.data(), bytes.size()).u32(14); }
    };
    bool ReadFrame(SerialPort& line, size_t size, Frame& frame, uint32_t limitMs = 3000) {
        frame = {};
        for (;;) {
            const int c = line.ReadCharTimed(limitMs);
            if (c < 0) return false;
            if (c == 0xA5) break;
            ++frame.skipped;
        }
        frame.bytes.assign(size, 0);
        frame.bytes[0] = 0xA5;
        if (line.ReadBufferTimed(frame.bytes.data() + 1, static_cast<int>(size - 1), limitMs) !=
            static_cast<int>(size - 1))
            return false;
        const ByteReader r(frame.bytes.data(), size);
        frame.checksumGood = RecordChecksum(frame.bytes.data(), size - 2) == r.u16(size - 2);
        return true;
    }

    ScratchFolder scratch;
    sim::SimDeviceProcess process;
    std::unique_ptr<PosixSerialPort> port;
    RecordingPrompt prompt;
    std::unique_ptr<PromptDialogue> dialogue;
};

}  // namespace rm::simtest
