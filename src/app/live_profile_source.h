#pragma once
// Where the live document's pass gets its profiles: the record is already in its CKvrData ring
// slot (LiveAcquisition put it there), so a "read" only says whether the slot holds the profile
// asked for and unwraps pulse-coherent velocities as reading a file would. The echo sounder
// depth comes from the acquisition's slot, which holds the depth of the sentences polled during
// the profile, instead of from the .pmk. Everything else is the playback source's, so a live
// profile and the same profile read back from the data file go through one code path.

#include "link/live_acquisition.h"
#include "processing/profile_source.h"

namespace rm {

class LiveProfileSource : public ProfileSource {
public:
    LiveProfileSource(CKvrData& data, const LiveAcquisition& acquisition);

    // The item that the next Load asks for and whether its frame was good; any other item reads
    // as an error (a lost profile).
    void SetArrived(int item, bool good);

protected:
    int ReadRecord(int group, int slot) override;
    void AttachEcho(ProcessingContext& ctx, int slot, int item) override;

private:
    CKvrData& data_;
    const LiveAcquisition& acquisition_;
    int item_ = 0;
    bool good_ = false;
};

}  // namespace rm
