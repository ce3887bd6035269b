#include "sim/sim_clock.h"

#include <cstdio>

namespace rm::sim {

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date, and back.
int64_t DaysFromCivil(int64_t y, int m, int d) {
    y -= m <= 2 ? 1 : 0;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const int64_t yoe = y - era * 400;
    const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(int64_t z, int& y, int& m, int& d) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const int64_t doe = z - era * 146097;
    const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const int64_t mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2 ? 1 : 0));
}

int64_t FloorDiv(int64_t a, int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0); }

}  // namespace

bool ParseCivilTime(const std::string& text, CivilTime& out) {
    CivilTime t;
    char sep = 0;
    int consumed = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d%c%2d:%2d:%2d%n", &t.year, &t.month, &t.day, &sep, &t.hour, &t.minute,
                    &t.second, &consumed) != 7 ||
        static_cast<size_t>(consumed) != text.size() || (sep != ' ' && sep != 'T')) {
        return false;
    }
    if (t.month < 1 || t.month > 12 || t.day < 1 || t.hour < 0 || t.hour > 23 || t.minute < 0 || t.minute > 59 ||
        t.second < 0 || t.second > 59 || t.year < 1980 || t.year > 2200) {
        return false;
    }
    // A day past the month's end comes back as another date.
    int y, m, d;
    CivilFromDays(DaysFromCivil(t.year, t.month, t.day), y, m, d);
    if (y != t.year || m != t.month || d != t.day) return false;
    out = t;
    return true;
}

CivilTime AddSeconds(const CivilTime& t, int64_t seconds) {
    const int64_t total =
        DaysFromCivil(t.year, t.month, t.day) * 86400 + t.hour * 3600 + t.minute * 60 + t.second + seconds;
    const int64_t days = FloorDiv(total, 86400);
    const int64_t rest = total - days * 86400;
    CivilTime r;
    CivilFromDays(days, r.year, r.month, r.day);
    r.hour = static_cast<int>(rest / 3600);
    r.minute = static_cast<int>(rest / 60 % 60);
    r.second = static_cast<int>(rest % 60);
    return r;
}

double HhmmssOf(const CivilTime& t) { return t.hour * 10000.0 + t.minute * 100.0 + t.second; }

}  // namespace rm::sim
