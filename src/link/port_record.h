#pragma once
// One opened serial port with its settings, the opening and closing of it, the baud rate table
// of the dialogs, and the scan of the eight port numbers that the port dialogs offer. Port
// numbers stand for device paths through the factory; a record may also name its device path
// directly (a pseudo-terminal, an adapter outside the numbered list).

#include "link/serial_port.h"

#include <array>
#include <memory>
#include <string>

namespace rm {

struct SerialPortRecord {
    std::unique_ptr<SerialPort> Port;  // the open port, or none
    int PortIndex = -1;                // 0-based port number
    int BaudRate = 9600;
    int DataBitsIndex = 3;  // data bits minus 5
    int StopBitsIndex = 0;  // stop bits minus 1
    char Parity = 'N';
    // The device path; when empty the factory's path of PortIndex stands for it.
    std::string PortPath;
};

// The receive and transmit buffer size the system opens every port with.
constexpr int kSerialBufferSize = 0x2000;

// Closes any open port and sets the defaults above.
void InitPortRecord(SerialPortRecord& record);

// The device path of the record: PortPath, or the factory's path of PortIndex.
std::string RecordPortPath(const SerialPortRecord& record, const SerialPortFactory& factory);

// The baud rate table of the dialogs: index 0..9 to 300..115200; anything unlisted gives 9600
// (index 5).
int BaudFromIndex(int index);
int IndexFromBaud(int baud);

// Parity index to letter: 1 'E', 2 'O', 3 'M', 4 'S', anything else 'N'.
char ParityLetter(int parityIndex);

// Opens `path` into `slot` (closing what it held). 1 open; 0 the port does not exist; -1 any
// other failure. A failed port is closed and the slot left empty.
int OpenPortRecord(SerialPortFactory& factory, std::unique_ptr<SerialPort>& slot,
                   const std::string& path, int baud, int parityIndex, int dataBitsIndex,
                   int stopBitsIndex, int bufferSize);
// Opens the record's port again from its own fields, always without parity: 1, or 0 with the
// slot empty.
int ReopenPortRecord(SerialPortFactory& factory, SerialPortRecord& record);
// Closes the port and empties the slot; always 1.
int ClosePortRecord(SerialPortRecord& record);

// States of the port scan.
enum PortScanState : int {
    kPortBusy = 0,      // exists but could not be opened
    kPortUsable = 2,
    kPortMissing = 3,
};

// Tries port numbers 0 to 7 at 9600 8N1 and writes a state for each where it changed. With
// `skipCurrent` the port number `currentIndex`, which the system holds itself, counts usable.
void ScanSerialPorts(SerialPortFactory& factory, bool skipCurrent, int currentIndex,
                     std::array<int, 8>& states);

}  // namespace rm
