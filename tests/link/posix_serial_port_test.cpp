// The POSIX port over a real pseudo-terminal pair: the test holds the master side, the port
// opens the slave by its path, as it would a USB adapter.

#include "link/posix_serial_port.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

namespace rm {
namespace {

// A pseudo-terminal pair: the master stays with the test.
class PtyPair {
public:
    PtyPair() {
        master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) return;
        const char* name = ::ptsname(master_);
        if (name) slavePath_ = name;
    }
    ~PtyPair() { CloseMaster(); }
    bool Ok() const { return master_ >= 0 && !slavePath_.empty(); }
    const std::string& SlavePath() const { return slavePath_; }
    void Send(const std::string& bytes) {
        size_t done = 0;
        while (done < bytes.size()) {
            ssize_t n = ::write(master_, bytes.data() + done, bytes.size() - done);
            if (n > 0) done += static_cast<size_t>(n);
            else if (n < 0 && errno != EINTR && errno != EAGAIN) return;
        }
    }
    // What the port sent, collected until `count` bytes or `limitMs` passes.
    std::string Receive(size_t count, int limitMs) {
        std::string out;
        auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
        while (out.size() < count && std::chrono::steady_clock::now() < until) {
            pollfd p = {master_, POLLIN, 0};
            if (::poll(&p, 1, 10) <= 0) continue;
            char buf[256];
            ssize_t n = ::read(master_, buf, std::min(sizeof buf, count - out.size()));
            if (n > 0) out.append(buf, static_cast<size_t>(n));
        }
        return out;
    }
    void CloseMaster() {
        if (master_ >= 0) ::close(master_);
        master_ = -1;
    }

private:
    int master_ = -1;
    std::string slavePath_;
};

class PosixPortTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(pty.Ok()) << "no pseudo-terminal available"; }
    std::unique_ptr<PosixSerialPort> Open(int rxSize = 8192) {
        return std::make_unique<PosixSerialPort>(pty.SlavePath(), 9600, 'N', 8, 1, rxSize);
    }
    PtyPair pty;
};

TEST_F(PosixPortTest, BytesOfEveryValueTravelBothWays) {
    auto port = Open();
    ASSERT_EQ(port->Status(), kSerialOk) << port->ErrorText();
    pty.Send("KVR 2\r\n>");
    std::string line;
    EXPECT_EQ(port->ReadStringTimed(line, 99, kLineEnd, 2000), 7);
    EXPECT_EQ(line, "KVR 2\r\n");
    EXPECT_EQ(port->ReadCharTimed(2000), '>');
    EXPECT_EQ(port->WriteStringTimed("Ver\r", kLineEnd, 1000), 4);
    EXPECT_EQ(pty.Receive(4, 2000), "Ver\r");

    // Every byte value passes unchanged.
    std::string all;
    for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
    pty.Send(all);
    uint8_t buf[256] = {};
    ASSERT_EQ(port->ReadBufferTimed(buf, 256, 2000), 256);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(buf), 256), all);
    port->WriteBuffer(buf, 256);
    EXPECT_EQ(pty.Receive(256, 2000), all);
}

TEST_F(PosixPortTest, ATimedReadOfASilentLineReturnsAtItsLimit) {
    auto port = Open();
    ASSERT_EQ(port->Status(), kSerialOk);
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(port->ReadCharTimed(100), kSerialTimeout);
    auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                  std::chrono::steady_clock::now() - start).count();
    EXPECT_GE(ms, 99);
    EXPECT_LT(ms, 2000);  // returned, not hung
}

TEST_F(PosixPortTest, BytesArrivingWhileNobodyReadsAreKeptAndCountedExactly) {
    auto port = Open();
    ASSERT_EQ(port->Status(), kSerialOk);
    // More than the kernel holds for a terminal: the port's own reader must take them in.
    std::string data;
    for (int i = 0; i < 6000; ++i) data.push_back(static_cast<char>('a' + i % 26));
    std::thread sender([&] { pty.Send(data); });
    sender.join();
    for (int i = 0; i < 200 && port->RxCount() < 6000; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(port->RxCount(), 6000);
    EXPECT_EQ(port->PeekChar(), 'a');
    std::string got(6000, '\0');
    EXPECT_EQ(port->ReadBuffer(reinterpret_cast<uint8_t*>(&got[0]), 6000), 6000);
    EXPECT_EQ(got, data);
    EXPECT_EQ(port->RxCount(), 0);
    EXPECT_EQ(port->ReadChar(), kSerialNoData);
}

TEST_F(PosixPortTest, AFullReceiveRingHoldsBackInsteadOfDropping) {
    auto port = Open(1024);
    ASSERT_EQ(port->Status(), kSerialOk);
    std::string data;
    for (int i = 0; i < 5000; ++i) data.push_back(static_cast<char>(i * 7));
    std::thread sender([&] { pty.Send(data); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LE(port->RxCount(), 1024);
    std::string got(5000, '\0');
    EXPECT_EQ(port->ReadBufferTimed(reinterpret_cast<uint8_t*>(&got[0]), 5000, 5000), 5000);
    sender.join();
    EXPECT_EQ(got, data);
}

TEST_F(PosixPortTest, ABreakOnAPseudoTerminalArrivesAsAZeroByte) {
    auto port = Open();
    ASSERT_EQ(port->Status(), kSerialOk);
    EXPECT_EQ(port->SendBreak(200), kSerialOk);
    EXPECT_EQ(pty.Receive(1, 2000), std::string(1, '\0'));
}

TEST_F(PosixPortTest, AFarEndThatGoesAwayLeavesAQuietPort) {
    auto port = Open();
    ASSERT_EQ(port->Status(), kSerialOk);
    pty.CloseMaster();
    EXPECT_EQ(port->ReadCharTimed(50), kSerialTimeout);
    EXPECT_EQ(port->RxCount(), 0);
    port->Close();
    EXPECT_FALSE(port->IsOpen());
    EXPECT_EQ(port->RxCount(), kSerialNotOpen);
}

TEST_F(PosixPortTest, OpenFailuresAreTold) {
    auto first = Open();
    ASSERT_EQ(first->Status(), kSerialOk);
    auto second = Open();
    EXPECT_EQ(second->Status(), kSerialCannotOpen);
    EXPECT_FALSE(second->IsOpen());

    PosixSerialPort badRate(pty.SlavePath(), 12345, 'N', 8, 1, 8192);
    EXPECT_EQ(badRate.Status(), kSerialBadSetting);
    EXPECT_NE(badRate.ErrorText().find("12345"), std::string::npos);

    PosixSerialPort missing("/dev/no-such-serial-port", 9600, 'N', 8, 1, 8192);
    EXPECT_EQ(missing.Status(), kSerialNoSuchPort);
    PosixSerialPort notATerminal("/dev/null", 9600, 'N', 8, 1, 8192);
    EXPECT_EQ(notATerminal.Status(), kSerialNoSuchPort);
}

}  // namespace
}  // namespace rm
