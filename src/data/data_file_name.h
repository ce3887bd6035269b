#pragma once
// The name of a new data file and its creation. The name is the deployment name of the user
// setup plus ".kvr", in a chosen folder; with automatic naming it carries the start time or
// a four-digit number that makes it new. An existing file is overwritten only when the person
// agrees; otherwise they pick another name or cancel. Paths use '/'.

#include <cstdio>
#include <ctime>
#include <functional>
#include <string>

namespace rm {

class UserPrompt;

enum class FileNaming {
    Plain,     // folder + deployment name + ".kvr" (automatic naming off)
    Timed,     // deployment name followed by ten digits of the local start time
    Numbered,  // the first free of name, name0000, name0001 ... name9999
};

struct DataFileNameRequest {
    std::string directory;       // a '/' is put between it and the name when missing
    std::string deploymentName;
    FileNaming naming = FileNaming::Plain;
    std::tm localTime{};         // the start of the recording, for FileNaming::Timed
};

using FileExists = std::function<bool(const std::string& path)>;
bool PathExists(const std::string& path);

extern const char* const kDataFileFilter;     // "KVR Data files (.kvr)|*.kvr|"
extern const char* const kDataFileExtension;  // "kvr"

std::string JoinPath(const std::string& directory, const std::string& name);

// Name followed by the last two digits of the year, month, day, hour and minute, two digits
// each.
std::string TimedStem(const std::string& name, const std::tm& localTime);

// The first path that does not exist of name.kvr, name0000.kvr ... name9999.kvr; when all
// exist, the last one tried.
std::string NumberedPath(const std::string& directory, const std::string& name, const FileExists& exists);

// The path the recording is to go to, or "" when the person cancelled. An existing file that
// numbering did not avoid raises the question "File <path> Already exists.\nOverwrite?"; on No
// the save dialog offers another name.
std::string ChooseDataFilePath(const DataFileNameRequest& request, UserPrompt& prompt,
                               const FileExists& exists = PathExists);

// Creates (or empties) the file and opens it for reading and writing. On failure the person is
// told "Can not initialize File: <path>" or "Error opening file: <path>" and the result is null.
std::FILE* OpenNewDataFile(const std::string& path, UserPrompt& prompt);

}  // namespace rm
