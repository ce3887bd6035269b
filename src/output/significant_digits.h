#pragma once
// The significant-digit rounding of the reports. The routines live with the processing layer,
// which prints the .dis trailer with them; outputs include this header.

#include "processing/significant_digits.h"
