// Records on the line: the "Get" frame with its length, 0xE8 markers and checksum, the yes/no
// answers, and the guarded write that loads and saves only a changed record.

#include "link/variable_structure.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::FrameOf;
using test::GetReply;

class VariableStructureTest : public test::TransferTest {
protected:
    std::string Fetch(int expectedResult) {
        std::vector<uint8_t> payload;
        EXPECT_EQ(GetVariableStructure(dialogue, "Get OPER", payload, nullptr), expectedResult);
        return std::string(payload.begin(), payload.end());
    }
};

TEST_F(VariableStructureTest, AFrameAfterTheAcknowledgementGivesItsPayload) {
    const std::string image = test::OperImage();
    Answer("Get OPER", GetReply(image) + "\r\n>");  // the prompt behind the frame is drained
    Ready();
    EXPECT_EQ(Fetch(1), image);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(port.RxCount(), 0);
}

// Up to four markers before the length are dropped and a fifth spoils the frame; a flipped bit
// fails the checksum; a length of four carries no payload and the seed as its checksum.
TEST_F(VariableStructureTest, MarkersLengthAndChecksumDecideWhetherAFrameIsTaken) {
    const std::string image = test::OperImage();
    std::string flipped = FrameOf(image);
    flipped[10] ^= 0x01;
    const struct {
        std::string frame;
        int result;
        std::string payload;  // when taken
    } cases[] = {{std::string(4, '\xE8') + FrameOf(image), 1, image},
                 {std::string(5, '\xE8') + FrameOf(image), 0, ""},
                 {flipped, 0, ""},
                 {test::Le16(4) + test::Le16(0xA596), 1, ""}};
    for (const auto& c : cases) Answer("Get OPER", "\r\nOK\r\n" + c.frame);
    Ready();
    for (const auto& c : cases) {
        const std::string payload = Fetch(c.result);
        if (c.result == 1) {
            EXPECT_EQ(payload, c.payload);
        }
    }
    EXPECT_EQ(prompt.messages, std::vector<std::string>(2, " Bad CheckSum getting System Variable Structure: "));
}

TEST_F(VariableStructureTest, ALineThatKeepsSendingSingleBytesCountsAsNotStarted) {
    Answer("Get OPER", "\r\nOK\r\n");
    Ready();
    port.Flood(5000, 20000, 400, 'x');  // one byte every 20 ms, never two waiting at once
    Fetch(0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Failed to start Kvr. Please try again."});
}

TEST_F(VariableStructureTest, YesAndNoAnswersLeaveTheirFlags) {
    Answer("enablebtrack", "\r\nBottom track enabled: YES\r\n>");
    Answer("enablewaves", "\r\nWaves: NO\r\n>");
    Answer("enablectd", "\r\nwhat?\r\n>");
    Ready();
    std::string answer;
    EXPECT_EQ(GetVariableFlag(dialogue, "enablebtrack", answer, nullptr), 1);
    EXPECT_EQ(answer, "Y");
    EXPECT_EQ(GetVariableFlag(dialogue, "enablewaves", answer, nullptr), 1);
    EXPECT_EQ(answer, "NSEW");
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(GetVariableFlag(dialogue, "enablectd", answer, nullptr), 0);
    EXPECT_EQ(answer, "NSEW");
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Invalid Command"});
}

class PutVariableStructureTest : public VariableStructureTest {
protected:
    // The instrument takes a loaded frame without echoing it and replies with its prompt.
    void TakeLoad(const std::string& image) {
        const std::string frame = FrameOf(image);
        // A carriage return or blank inside would make the scripted prompt answer it.
        ASSERT_EQ(frame.find_first_of("\r "), std::string::npos);
        port.SetEchoFilter([this, size = frame.size()](uint8_t b) {
            const std::string& w = port.Written();
            const size_t at = w.rfind("Load USER\r");
            if (at != std::string::npos && w.size() - (at + 10) <= size) return -1;
            return static_cast<int>(b);
        });
        port.OnWrite(frame, "\r\n>");
    }
};

TEST_F(PutVariableStructureTest, ARecordTheInstrumentAlreadyHoldsIsNeitherLoadedNorSaved) {
    const std::string image = test::UserImage({});
    Answer("Get USER", GetReply(image));
    Ready();
    EXPECT_EQ(PutVariableStructure(dialogue, 2, "USER", reinterpret_cast<const uint8_t*>(image.data()),
                                   image.size(), nullptr),
              1);
    EXPECT_EQ(Commands(), std::vector<std::string>{"Get USER"});
}

TEST_F(PutVariableStructureTest, AChangedRecordIsLoadedInItsFrameAndSaved) {
    const std::string held = test::UserImage({});
    const std::string wanted = test::UserImage({30, 50, 1});
    Answer("Get USER", GetReply(held));
    Answer("Load USER", "\r\nOK\r\n");
    Answer("Save setup", "\r\nOK\r\n>");
    TakeLoad(wanted);
    Ready();
    EXPECT_EQ(PutVariableStructure(dialogue, 8, "USER", reinterpret_cast<const uint8_t*>(wanted.data()),
                                   wanted.size(), nullptr),
              1);
    const std::string& w = port.Written();
    const size_t load = w.find("Load USER\r");
    ASSERT_NE(load, std::string::npos);
    EXPECT_EQ(w.substr(load + 10, wanted.size() + 4), FrameOf(wanted));
    EXPECT_NE(w.find("Save setup\r", load), std::string::npos);
}

}  // namespace
}  // namespace rm
