#pragma once
// Where a pass gets its profiles: the data file through CKvrData, with the selection of the load
// dialog (every profile, every N-th, or the mean of N), and the .pmk companion that supplies the
// GPS fixes and echo sounder depths of each profile.
//
// Items are the profiles that reach the data set, numbered from 1; item i sits in the ring slot
// (i - 1) modulo the ring size. An item is one file profile, or the mean of a group of them.
//
// GPS of an item: the record's own GPS block when the file carries one (internal receiver, or
// an external one written into the file). Otherwise, when the .pmk has GPS, the block is built
// from the GGA/GXP fixes stored with the profiles: it runs from the newest fix before the item's
// first profile to the newest fix of its profiles; an item without a fix of its own repeats the
// newest earlier fix (no movement can be measured over it), and before the first fix of the
// recording the item has no GPS at all.
//
// Echo depth of an item: the EsData sentences of its last profile through the echo sounder
// correction, with the profile's pitch and roll and the sound speed factor.

#include <cstdint>

#include "data/gps_velocity.h"
#include "data/kvr_data.h"
#include "data/nmea_echo_depth.h"
#include "data/nmea_gps_fix.h"
#include "data/pmk_file.h"
#include "processing/processing_context.h"

namespace rm {

// The profiles of the file that reach the data set.
struct ProfileSelection {
    int firstIndex = 0;  // first file profile, from 0
    int step = 1;        // N of "select every" or "average over"
    GroupType type = GroupType::EveryProfile;
    int count = -1;      // items; below 0 all that the file gives
};

class ProfileSource {
public:
    explicit ProfileSource(CKvrData& data);
    virtual ~ProfileSource() = default;
    ProfileSource(const ProfileSource&) = delete;
    ProfileSource& operator=(const ProfileSource&) = delete;

    // Sets the grouping of the data file as well.
    void SetSelection(const ProfileSelection& selection);
    const ProfileSelection& Selection() const { return selection_; }
    // Items available: the selection's count, limited to what the file holds.
    int ItemCount() const;

    // The .pmk of the data set, or null. Held by pointer; it must outlive the source.
    void SetSideFile(const PmkState* pmk) { pmk_ = pmk; }

    // Starts a pass with the settings of that pass (echo sounder correction).
    void Restart(const ProcessingSettings& settings);

    // Reads item `item` (from 1) into its slot and attaches its GPS block and echo depth. The
    // slot's per-profile results are cleared; its track points are left for the track steps,
    // which save the point they overwrite. Returns the read result of CKvrData (a bad checksum
    // leaves the record in its slot, readable).
    int Load(ProcessingContext& ctx, int item);

    // Records read from the file since construction.
    int64_t RecordReads() const { return recordReads_; }

    // File profile numbers (from 1) of the first and last profile that form an item.
    int FirstFileProfile(int item) const;
    int LastFileProfile(int item) const;

protected:
    // One read of the data file: group `group` (from 0) into cache slot `slot`.
    virtual int ReadRecord(int group, int slot);
    // The echo sounder depth of the item, here from the .pmk; live data have it already.
    virtual void AttachEcho(ProcessingContext& ctx, int slot, int item);

private:
    void AttachGps(ProcessingContext& ctx, int slot, int item);
    NodeRef ProfileNode(int fileProfile) const;
    bool FixOfProfile(int fileProfile, GpsFix& fix) const;
    bool NewestFixAtOrBefore(int fileProfile, int lowest, GpsFix& fix) const;

    CKvrData& data_;
    ProfileSelection selection_;
    const PmkState* pmk_ = nullptr;
    EchoSounderSettings echo_;
    int64_t recordReads_ = 0;
    // The end fix of the item read last, for the start of the next one.
    int lastItem_ = 0;
    bool lastFixValid_ = false;
    GpsFix lastFix_;
};

}  // namespace rm
