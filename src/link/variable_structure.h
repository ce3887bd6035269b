#pragma once
// The instrument's records on the line. "Get <name>" makes the instrument send a record, and
// "Load <name>" makes it take one, in the same binary frame:
//
//   offset 0      u16  total length L = payload length + 4 (these two bytes and the checksum)
//   offset 2      L-4  payload: the record's image
//   offset L-2    u16  checksum: 0xA596 plus every payload byte, carries dropped
//
// The line may give 0xE8 bytes before the length bytes; they are dropped. A few commands are
// answered with a yes or no line instead of a frame.

#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace rm {

// Length field and checksum around the payload.
constexpr size_t kVariableFrameOverhead = 4;

constexpr const char* kGetStructureErrorText = "Error Getting System Variable Structure: ";
constexpr const char* kStructureChecksumText = " Bad CheckSum getting System Variable Structure: ";
constexpr const char* kFailedToStartKvrText = "Failed to start Kvr. Please try again.";
// The same failure in the words of the connection check.
constexpr const char* kFailedToStartSystemText = "Failed to start system. Please try again.";
constexpr const char* kInvalidCommandText = "Invalid Command";

// The two values a yes or no answer leaves behind: "NSEW" stands for no, "Y" for yes.
constexpr const char* kFlagAnswerYes = "Y";
constexpr const char* kFlagAnswerNo = "NSEW";

// The frame of `payload`, as "Load" sends it and "Get" receives it.
std::vector<uint8_t> EncodeVariableFrame(const uint8_t* payload, size_t size);

// Sends `command` (e.g. "Get CONF"), waits for its "OK" and reads the frame that follows;
// `payload` gets the record's image. 1, or 0 after a message: the command failed, the line
// kept sending other bytes ("Failed to start Kvr. Please try again.", or `startFailureText`),
// or the checksum was wrong (also for a frame too short to hold one). The wait for the frame's
// first two bytes has no time limit while the line stays silent.
int GetVariableStructure(PromptDialogue& dialogue, const std::string& command, std::vector<uint8_t>& payload,
                         RawLog* raw, const char* startFailureText = kFailedToStartKvrText);

// Sends `command` and reads a yes or no line. `answer` becomes "NSEW" for an answer holding
// "NO" and "Y" for one holding "YES": 1. Any other answer gives "NSEW", "Invalid Command" and
// 0; a command that cannot be sent gives 0 after its message.
int GetVariableFlag(PromptDialogue& dialogue, const std::string& command, std::string& answer, RawLog* raw);

// Sends "Load <name>", then the frame of `bytes`, and waits for the prompt `promptChar`.
// 0 when the prompt came back; 1 when the command, a write or the prompt failed. Nothing is
// shown to the user.
int LoadVariableStructure(PromptDialogue& dialogue, const std::string& name, const uint8_t* bytes, size_t size,
                          char promptChar = kInstrumentPrompt);

// Writes a record only when the instrument holds a different one: reads "Get <name>" first
// and stops with 1 when its first `size` bytes equal `bytes`. Otherwise loads the record (only
// for system types 2 and 8) and sends "Save setup". 1 on success, 0 on any failure.
int PutVariableStructure(PromptDialogue& dialogue, int systemType, const std::string& name, const uint8_t* bytes,
                         size_t size, RawLog* raw);

}  // namespace rm
