#include "link/connection_check.h"

#include "data/instrument_records.h"
#include "data/nmea_sentences.h"
#include "link/internal_gps.h"
#include "link/nmea_port_reader.h"
#include "link/variable_structure.h"
#include "link/wake_up.h"

#include <vector>

namespace rm {

namespace {

const char* const kKvrNoPortText =
    "No communications port has been selected for the KVR.\r\nPlease select a COM port and Baud Rate for your "
    "connection.";
const char* const kKvrCannotWakeText = "Unable to wake up system.\r\nPlease check your cable and connection settings.";
const char* const kKvrNotFoundText =
    "The KVR could not be found.\r\nPlease check your cable and connection settings.";
// The stray point before "Please" is the dialog's own.
const char* const kKvrNoConfText =
    "Unable to retrieve system configuration\r\n.Please check your cable and connection settings.";
const char* const kKvrNoUserText =
    "Unable to retrieve user settings\r\n.Please check your cable and connection settings.";
const char* const kKvrFoundText = "The KVR is operating correctly.";

const char* const kExternalGpsNoPortText =
    "No communications port has been selected for the External GPS.\r\nPlease select a COM port and Baud Rate for "
    "your connection.";
const char* const kExternalGpsNoDataText =
    "No data is being received from the GPS.\r\nPlease check your cable and connection settings.";
const char* const kGpsFoundText = "The GPS system is operating correctly.";
const char* const kValidGpsStringText = "A valid GPS string (";
const char* const kGpsStringEmptyText =
    ") is being received by Ripplemark,\r\nhowever the string is either incomplete or contains no data.\r\n\r\n"
    "Possible reasons for this are:\r\n    a) The GPS receiver may not have a clear unobstructed view of the "
    "sky.\r\n    b) MultiPath errors caused by reflects from walls, tree, canyons, etc.";
const char* const kGpsWrongStringsText =
    "Data is being received on this port, however Ripplemark requires\r\neither the GGA or GXP output strings to "
    "operate with GPS systems.\r\nPress the Show Incoming Data button to see the data that is being\r\nreceived by "
    "Ripplemark.\r\n\r\nIf the incoming data is:\r\n    a) made up of NMEA output strings then you will need to "
    "change the\r\n\t\tstrings being ouput by your GPS to include eithe GGA or GXP.\r\n\r\n   ";

const char* const kInternalGpsKvrFirstText =
    "The KVR must be checked (connected to)\r\nbefore Internal GPS settings can be set.";
const char* const kInternalGpsMissingText = "Internal GPS is not available on this KVR.";
const char* const kInternalGpsOffText =
    "Internal GPS has been disabled.\r\nTo enable Internal GPS, click the Internal GPS check box\r\nand press OK.";
const char* const kInternalGpsNoKvrText =
    "Unable to connect to the KVR on this port.\r\nPlease check your cables and try again.";
const char* const kInternalGpsNoEchoText =
    "Unable to open connection to the Internal GPS.\r\nPlease check your cables and try again.";
const char* const kInternalGpsNoDataText =
    "No data is being received from the Internal GPS.\r\nPlease check the cable to the GPS receiver.";

const char* const kEchoNoPortText =
    "No communications port has been selected for the Echo Sounder.\r\nPlease select a COM port and Baud Rate for "
    "your connection.";
const char* const kEchoNoDataText =
    "No data is being received from the EchoSounder.\r\nPlease check your cable and connection settings.";
const char* const kValidEchoStringText = "A valid Echo Sounder string (";
const char* const kEchoStringEmptyText =
    ") is being received by Ripplemark,\r\nhowever the string is either incomplete or contains no data.\r\n\r\n"
    "Possible reasons for this are:\r\n                              a) The transducer may not be connected\r\n"
    "                                 to the Echo Sounder.\r\n                              b) The Echo Sounders "
    "require the transducer\r\n                                 to be in the wwater for correct ";
const char* const kEchoWrongStringsText =
    "Data is being received on this port, however Ripplemark requires\r\neither the DPT or BPT output strings to "
    "operate with Echo Sounders.\r\nPress the Show Incoming Data button to see the data that is being\r\nreceived "
    "by Ripplemark.\r\n\r\nIf the incoming data is:\r\n                       a) made up of NMEA output strings "
    "then you\r\n                          will need to change the strings being ouput\r\n ";
const char* const kEchoFoundText = "The Echo Sounder is operating correctly.";

CheckOutcome Found(const char* text) { return {kCheckFound, ConnectionState::Found, text}; }
CheckOutcome Invalid(const std::string& text, int result = kCheckFailed) {
    return {result, ConnectionState::Invalid, text};
}

bool PortUsable(SerialPort* port) { return port != nullptr && port->IsOpen(); }

// The id of the first of `ids` that the receiver sent, or empty.
std::string FirstSentenceHeard(const NodeRef& sentences, const std::vector<const char*>& ids) {
    for (const char* id : ids) {
        if (FindSentence(sentences, id)) return id;
    }
    return {};
}

// The four outcomes of listening to a receiver: what it sent decoded, nothing came, a sentence
// of the right kind came without a value, or only other data came.
struct ListenTexts {
    const char* found;
    const char* noData;
    const char* validStringHead;
    const char* validStringTail;
    const char* wrongStrings;
};

CheckOutcome AnalyseListening(int waitResult, int bytesRead, const NodeRef& sentences,
                              const std::vector<const char*>& ids, const ListenTexts& texts) {
    if (waitResult == 1) return Found(texts.found);
    if (bytesRead <= 0) return Invalid(texts.noData);
    const std::string heard = FirstSentenceHeard(sentences, ids);
    if (!heard.empty()) return Invalid(std::string(texts.validStringHead) + heard + texts.validStringTail);
    return Invalid(texts.wrongStrings);
}

CheckOutcome ListenForFix(SerialPort& port, UserPrompt* progress, uint32_t limitMs, const char* noDataText) {
    NmeaPortReader gps = MakeGpsPortReader();
    int bytesRead = 0;
    const int result = WaitForFix(gps, &port, limitMs, progress, bytesRead);
    return AnalyseListening(result, bytesRead, gps.Sentences(), {"GGA", "GXP"},
                            {kGpsFoundText, noDataText, kValidGpsStringText, kGpsStringEmptyText,
                             kGpsWrongStringsText});
}

}  // namespace

const char* ConnectionDeviceName(int device) {
    switch (device) {
        case kDeviceKvr: return "KVR";
        case kDeviceInternalGps: return "Internal GPS";
        case kDeviceExternalGps: return "External GPS";
        case kDeviceEchoSounder: return "Echo Sounder";
        default: return "";
    }
}

const char* ConnectionStateText(ConnectionState state) {
    switch (state) {
        case ConnectionState::Checking: return "Checking";
        case ConnectionState::Unchecked: return "click here to check";
        case ConnectionState::Found: return "Found - click to check again";
        case ConnectionState::Invalid: return "Invalid - click here for information";
    }
    return "";
}

const char* VerificationLineText(bool automaticOn) {
    return automaticOn ? "Automatic Verification is on" : "Automatic Verification is off";
}

std::string TroubleShootingTitle(int device) { return std::string(ConnectionDeviceName(device)) + " TroubleShooting"; }

std::string RetryQuestion(int device) {
    // The external receiver's row name already begins with "External ", so it is named as it stands.
    return "Do you want to try connecting to the " + std::string(ConnectionDeviceName(device)) + " again?";
}

bool GpsChoiceConflicts(bool externalChosen, bool internalChosen) { return externalChosen && internalChosen; }

CheckOutcome CheckKvr(PromptDialogue* dialogue, KvrCheckFacts& facts) {
    facts = KvrCheckFacts{};
    if (dialogue == nullptr || !dialogue->Port().IsOpen()) return Invalid(kKvrNoPortText, kCheckNoPort);

    const int wake = WakeInstrument(*dialogue, 0, nullptr, nullptr);
    if (!WakeResultIsKvr(wake)) return Invalid(wake == -7 ? kKvrCannotWakeText : kKvrNotFoundText);

    std::vector<uint8_t> confImage;
    InstrumentConf conf;
    if (!GetVariableStructure(*dialogue, "Get CONF", confImage, nullptr, kFailedToStartSystemText) ||
        DecodeConf(confImage.data(), confImage.size(), conf) != RecordStatus::Ok) {
        return Invalid(kKvrNoConfText);
    }
    std::vector<uint8_t> userImage;
    UserSetup user;
    if (!GetVariableStructure(*dialogue, "Get USER", userImage, nullptr, kFailedToStartSystemText) ||
        DecodeUser(userImage.data(), userImage.size(), conf, user) != RecordStatus::Ok) {
        return Invalid(kKvrNoUserText);
    }
    facts.checked = true;
    facts.gpsInstalled = conf.InternalGpsAvailable != 0;
    facts.internalGpsEnabled = user.EnableInternalGps != 0;
    return Found(kKvrFoundText);
}

CheckOutcome CheckExternalGps(SerialPort* port, UserPrompt* progress, uint32_t limitMs) {
    if (!PortUsable(port)) return Invalid(kExternalGpsNoPortText, kCheckNoPort);
    return ListenForFix(*port, progress, limitMs, kExternalGpsNoDataText);
}

CheckOutcome CheckInternalGps(PromptDialogue* dialogue, const KvrCheckFacts& facts, UserPrompt* progress,
                              uint32_t limitMs) {
    if (dialogue == nullptr || !dialogue->Port().IsOpen()) return Invalid(kKvrNoPortText, kCheckNoPort);
    if (!facts.checked) return Invalid(kInternalGpsKvrFirstText);
    if (!facts.gpsInstalled) return Invalid(kInternalGpsMissingText);
    if (!facts.internalGpsEnabled) return Invalid(kInternalGpsOffText);

    if (!WakeResultIsKvr(WakeInstrument(*dialogue, 0, nullptr, nullptr))) return Invalid(kInternalGpsNoKvrText);
    if (ShowInternalGpsOutput(*dialogue, nullptr) != 1) return Invalid(kInternalGpsNoEchoText);
    return ListenForFix(dialogue->Port(), progress, limitMs, kInternalGpsNoDataText);
}

CheckOutcome CheckEchoSounder(SerialPort* port, const EchoSounderSettings& settings, UserPrompt* progress,
                              uint32_t limitMs) {
    if (!PortUsable(port)) return Invalid(kEchoNoPortText, kCheckNoPort);
    NmeaPortReader echo = MakeEchoPortReader(settings);
    int bytesRead = 0;
    const int result = WaitForDepth(echo, port, limitMs, progress, bytesRead);
    return AnalyseListening(result, bytesRead, echo.Sentences(), {"DPT", "DBT", "BPT"},
                            {kEchoFoundText, kEchoNoDataText, kValidEchoStringText, kEchoStringEmptyText,
                             kEchoWrongStringsText});
}

}  // namespace rm
