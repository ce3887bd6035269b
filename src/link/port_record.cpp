#include "link/port_record.h"

namespace rm {

namespace {

constexpr int kBaudTable[] = {300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
constexpr int kBaudTableSize = static_cast<int>(sizeof kBaudTable / sizeof kBaudTable[0]);
constexpr int kDefaultBaudIndex = 5;

constexpr int kScanBaud = 9600;

}  // namespace

void InitPortRecord(SerialPortRecord& record) {
    if (record.Port) record.Port->Close();
    record.Port.reset();
    record.PortIndex = -1;
    record.BaudRate = 9600;
    record.DataBitsIndex = 3;
    record.StopBitsIndex = 0;
    record.Parity = 'N';
    record.PortPath.clear();
}

std::string RecordPortPath(const SerialPortRecord& record, const SerialPortFactory& factory) {
    return record.PortPath.empty() ? factory.PortPath(record.PortIndex) : record.PortPath;
}

int BaudFromIndex(int index) {
    return (index >= 0 && index < kBaudTableSize) ? kBaudTable[index] : kBaudTable[kDefaultBaudIndex];
}

int IndexFromBaud(int baud) {
    for (int i = 0; i < kBaudTableSize; ++i) {
        if (kBaudTable[i] == baud) return i;
    }
    return kDefaultBaudIndex;
}

char ParityLetter(int parityIndex) {
    switch (parityIndex) {
        case 1: return 'E';
        case 2: return 'O';
        case 3: return 'M';
        case 4: return 'S';
        default: return 'N';
    }
}

int OpenPortRecord(SerialPortFactory& factory, std::unique_ptr<SerialPort>& slot,
                   const std::string& path, int baud, int parityIndex, int dataBitsIndex,
                   int stopBitsIndex, int bufferSize) {
    const char parity = ParityLetter(parityIndex);
    if (slot) {
        slot->Close();
        slot.reset();
    }
    factory.SetDefaultBufferSize(bufferSize, bufferSize);
    slot = factory.PortOpen(path, baud, parity, dataBitsIndex + 5, stopBitsIndex + 1);
    const int status = slot ? slot->Status() : kSerialCannotOpen;
    if (status >= 0) return 1;
    if (slot) slot->Close();
    slot.reset();
    return status == kSerialNoSuchPort ? 0 : -1;
}

int ReopenPortRecord(SerialPortFactory& factory, SerialPortRecord& record) {
    if (record.Port) {
        record.Port->Close();
        record.Port.reset();
    }
    record.Port = factory.PortOpen(RecordPortPath(record, factory), record.BaudRate, 'N',
                                   record.DataBitsIndex + 5, record.StopBitsIndex + 1);
    if (record.Port && record.Port->Status() >= 0) return 1;
    record.Port.reset();
    return 0;
}

int ClosePortRecord(SerialPortRecord& record) {
    if (record.Port) record.Port->Close();
    record.Port.reset();
    return 1;
}

void ScanSerialPorts(SerialPortFactory& factory, bool skipCurrent, int currentIndex,
                     std::array<int, 8>& states) {
    for (int index = 0; index < static_cast<int>(states.size()); ++index) {
        int state;
        if (skipCurrent && index == currentIndex) {
            state = kPortUsable;
        } else {
            std::unique_ptr<SerialPort> port;
            int opened = OpenPortRecord(factory, port, factory.PortPath(index), kScanBaud, 0, 3, 0,
                                        kSerialBufferSize);
            state = opened == 1 ? kPortUsable : opened == 0 ? kPortMissing : kPortBusy;
            if (port) port->Close();
        }
        if (states[index] != state) states[index] = state;
    }
}

}  // namespace rm

