#pragma once
// One profile made of a group of consecutive profiles, for "Average over N" on load.

#include <cstddef>

#include "data/profile_record.h"

namespace rm {

// Forms `out` from `count` profiles given oldest first. Velocity per beam and cell is the mean
// of the members that are not bad (32767), rounded half away from zero, and bad when none is
// good; standard error and amplitude are the rounded means of all members; the four CTD values
// are summed and multiplied by 1/count; the GPS block runs from the first member's first fix to
// the last member's last fix. Header and the other blocks are those of the last member.
// `out` is re-sized only when its arrays differ from the members'.
void AverageProfiles(const ProfileRecord* const* members, size_t count, ProfileRecord& out);

}  // namespace rm
