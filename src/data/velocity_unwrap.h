#pragma once
// Velocity unwrapping of a pulse-coherent profile. Pulse-coherent velocities are ambiguous by
// multiples of 2 L; walking up the profile from the first cell, each velocity is moved by 2 L
// when it jumps more than L from the one below, and the whole beam is then moved by multiples
// of 2 L so that its mean over the reference range agrees with the reference velocity that
// the shallow-water ping measured. Pure functions over one record and the instrument records.

#include "data/instrument_records.h"
#include "data/profile_record.h"

namespace rm {

struct UnwrapParameters {
    double limit = 0.0;       // L, in the unit of velocity x velocity scale; 0 or less: nothing to do
    double pulseCount = 0.0;  // pulses a ping, for information
    int firstCell = 0;        // first cell of the reference range (from 0)
    int cellCount = 0;        // cells of the reference range
};

// The limit and the reference range from the record's shallow-water block and the records.
UnwrapParameters ComputeUnwrapParameters(const ProfileRecord& record, const InstrumentConf& conf,
                                         const OperationRecord& oper, const UserSetup& user);

// Unwraps every beam of `record` in place. The bad markers 32767 and 9999 stay as they are.
// `velocityScale` turns a stored velocity into the unit of the limit and of the block's
// reference; a beam whose block count is above `threshold` is shifted to its reference.
void UnwrapVelocities(ProfileRecord& record, const UnwrapParameters& parameters, double velocityScale, int threshold);

// Runs the unwrapping when it applies: pulse-coherent mode and a shallow-water block present.
// True when it ran.
bool UnwrapProfile(ProfileRecord& record, const InstrumentConf& conf, const OperationRecord& oper,
                   const UserSetup& user, const DerivedValues& derived, int threshold);

}  // namespace rm
