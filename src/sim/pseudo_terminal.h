#pragma once
// The master side of a pseudo-terminal, for simulated devices: the program under test opens the
// slave device as if it were a serial port. The slave is put in raw mode (no echo, no line
// editing, no translation of line ends), so that every byte passes unchanged both ways; a
// symbolic link may give it a stable name.
//
// The master does not keep the slave open itself, so it can tell whether the other side holds
// the device: PeerOpen() is false before the first open and after the last close.

#include <cstddef>
#include <cstdint>
#include <string>

namespace rm::sim {

class PseudoTerminal {
public:
    PseudoTerminal() = default;
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // Opens a new pseudo-terminal at `baud` (a standard rate; others leave the default) and, if
    // `linkPath` is not empty, makes a symbolic link there to the slave (an existing link is
    // replaced, any other file is refused). False with Error() on failure.
    bool Open(int baud, const std::string& linkPath);
    void Close();

    const std::string& SlavePath() const { return slavePath_; }
    const std::string& Error() const { return error_; }
    int MasterFd() const { return master_; }

    // Waits up to `timeoutMs` for bytes from the other side; false when none came. A peer that
    // has closed the slave gives false at once after a short rest (no busy loop).
    bool WaitReadable(int timeoutMs);
    // Reads what waits, without blocking; 0 when nothing, -1 on an error other than a closed peer.
    long Read(uint8_t* buffer, size_t size);
    // Writes all bytes, waiting while the other side has not taken earlier ones, for at most
    // `timeoutMs` in all; bytes that could not be written by then are dropped. Returns the count
    // written.
    size_t Write(const uint8_t* data, size_t size, int timeoutMs);
    size_t Write(const std::string& text, int timeoutMs) {
        return Write(reinterpret_cast<const uint8_t*>(text.data()), text.size(), timeoutMs);
    }

    // True while a process holds the slave open.
    bool PeerOpen() const;

private:
    int master_ = -1;
    std::string slavePath_;
    std::string linkPath_;
    std::string error_;
};

}  // namespace rm::sim
