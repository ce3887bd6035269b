// The raw terminal: typed bytes to the port, port bytes to the screen, in turns.

#include "link/scripted_port.h"
#include "link/terminal.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

#include <deque>

namespace rm {
namespace {

using Screen = test::TextWindow;

// Hands out one scripted piece of typing per poll, then ends (or stays open when `endAtLast`
// is false, as a person who has stopped typing).
class ScriptedKeys : public TerminalInput {
public:
    ScriptedKeys(std::deque<std::string> pieces, bool endAtLast = true)
        : pieces_(std::move(pieces)), endAtLast_(endAtLast) {}
    bool Poll(std::string& bytes) override {
        ++polls;
        if (!pieces_.empty()) {
            bytes += pieces_.front();
            pieces_.pop_front();
        }
        return !(endAtLast_ && pieces_.empty());
    }
    int polls = 0;

private:
    std::deque<std::string> pieces_;
    bool endAtLast_;
};

TEST(TerminalTest, TypedLinesGoOutWithReturnsAndTheAnswersAreShown) {
    ScriptedPort port;
    port.SetEcho(true);
    port.OnWrite("Ver\r", "\r\nKVR 2\r\n>", 300);
    ScriptedKeys keys({"V", "er\n"});
    Screen screen;
    EXPECT_EQ(RunTerminal(port, keys, screen), kTerminalEnded);
    EXPECT_EQ(port.Written(), "Ver\r");
    EXPECT_EQ(screen.text, "Ver\r\r\nKVR 2\r\n>");  // echo, then the answer that came after the input ended
}

TEST(TerminalTest, TheExitKeyEndsAtOnceAndWhatFollowsItIsNotSent) {
    ScriptedPort port;
    ScriptedKeys keys({"ab\x1D" "cd", "ef"}, false);
    Screen screen;
    EXPECT_EQ(RunTerminal(port, keys, screen), kTerminalEnded);
    EXPECT_EQ(port.Written(), "ab");
    EXPECT_EQ(keys.polls, 1);
}

TEST(TerminalTest, TheBreakKeySendsABreakAndLineFeedsCanStayAsTheyAre) {
    ScriptedPort port;
    port.OnBreak("\r\nwoken\r\n>", 100);
    ScriptedKeys keys({"\x02", "x\ny"});
    Screen screen;
    TerminalOptions options;
    options.lineFeedAsReturn = false;
    EXPECT_EQ(RunTerminal(port, keys, screen, options), kTerminalEnded);
    EXPECT_EQ(port.Breaks(), std::vector<uint32_t>{200});
    EXPECT_EQ(port.Written(), "x\ny");
    EXPECT_EQ(screen.text, "\r\nwoken\r\n>");
}

}  // namespace
}  // namespace rm
