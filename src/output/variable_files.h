#pragma once
// The per-profile lines of the "ASCII File Output" files. Every line opens with "\n%6ld" and the
// profile number; what follows depends on the file:
//   .a1 ...   "%5d" per cell, the raw amplitude count of the beam
//   .sd1 ...  "%6.1f" per cell, the velocity standard deviation of the beam
//   .sn1 ...  "%6.1f" per cell, the signal-to-noise ratio of the beam
//   velocity  "%8.1f" per cell, one axis or beam of the velocity (see velocity_files.h)
//   .hdr      date and time, pings, heading, pitch, roll, temperature, pressure, mean
//             bottom-track depth, the standard deviations of heading, pitch, roll and pressure,
//             the external pressure and the battery voltage
//   .gps      the first and the last fix of the profile (time, latitude, longitude), the GPS
//             velocity East and North and its speed (m/s, ft/s in English units) and direction
// Every file is a text file (CR LF line ends, data/text_file.h).
// Values come from GetProfileValue in the document's unit system; missing ones print 32767.
// The configuration file (.ctl) has no lines per profile: it holds the records' text dumps.

#include <functional>
#include <string>
#include <vector>

#include "data/kvr_data.h"
#include "data/text_file.h"
#include "processing/recompute_pass.h"

namespace rm {

// Writes one line body (after the profile number) into a file of the set.
using ProfileLineBody = std::function<void(TextFile& file, const ProcessingContext& ctx, int slot, size_t fileIndex)>;

// A set of files with a line per profile of `range`, written while a pass runs. The files are
// created anew on Open and closed by Close (or the destructor).
class ProfileLineFiles : public PassObserver {
public:
    ProfileLineFiles(ItemRange range, ProfileLineBody body);
    ~ProfileLineFiles() override;
    ProfileLineFiles(const ProfileLineFiles&) = delete;
    ProfileLineFiles& operator=(const ProfileLineFiles&) = delete;

    // Creates every file; false (with none left open) when one cannot be created.
    bool Open(const std::vector<std::string>& paths);
    void OnProfile(const ProcessingContext& ctx, int item, int slot, bool readOk) override;
    // Closes the files; false when any write or close failed.
    bool Close();

private:
    ItemRange range_;
    ProfileLineBody body_;
    std::vector<TextFile> files_;
};

// "%5d", "%6.1f" or "%8.1f" per cell of code `code` (2 amplitude, 3 standard deviation, 4 SNR,
// 1 velocity), component `component`, in the given coordinate system and reference.
void WriteCellValues(TextFile& file, const ProcessingContext& ctx, int slot, int code, int component,
                     int coordinateSystem, int reference);
void WriteHeaderLine(TextFile& file, const ProcessingContext& ctx, int slot);
void WriteGpsLine(TextFile& file, const ProcessingContext& ctx, int slot);

// The .ctl text: the dumps of the configuration, user and operation records and of the file's
// facts, then "\nGPS Data is present in file\n" and "\nBottom Track Data is present in file\n"
// when the file has them. False when it cannot be written.
bool WriteConfigurationFile(const std::string& path, const CKvrData& data, bool gpsPresent);

}  // namespace rm
