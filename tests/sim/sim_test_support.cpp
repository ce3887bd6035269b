#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "data/byte_io.h"

namespace rm::simtest {

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm_sim_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<uint8_t> FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void ReadRecording(const std::string& path, Recording& out) {
    ASSERT_TRUE(out.data.OpenFile(path)) << path;
    ASSERT_EQ(out.data.Validate(), 0);
    ASSERT_EQ(out.data.ReadHeader(false), kReadOk);
    out.profiles.clear();
    for (int i = 0; i < out.data.ProfileCount(); ++i) {
        ASSERT_EQ(out.data.LoadProfile(i, 0), kReadOk) << "profile index " << i;
        out.profiles.push_back(out.data.Slot(0));
    }
}

std::array<std::array<double, 3>, 3> ReferenceOrientation(double heading, double pitch, double roll) {
    const double k = 0.017453292f;
    const double k2 = 0.0174532925199433;
    const double a = (90.0 - heading) * k2;
    const double ch = std::cos(a), sh = std::sin(a);
    const double cr = std::cos(roll * k), sr = std::sin(roll * k);
    const double q = std::sin(-pitch * k);
    const double t = q * sr;
    const double P = std::asin(q * cr / std::sqrt(1.0 - t * t));
    const double cp = std::cos(P), sp = std::sin(P);
    return {{{cp * ch - sp * sh * sr, -sh * cr, cp * sh * sr + sp * ch},
             {sp * ch * sr + cp * sh, ch * cr, sp * sh - cp * ch * sr},
             {-sp * cr, sr, cp * cr}}};
}

namespace {

// raw (any system) -> ENU, scaled by `scale`, for one vector of `n` raw values.
std::array<double, 3> ToEnu(const double* raw, int n, const ProfileHeader& h, const DerivedValues& derived, int coords,
                            double scale) {
    if (coords == 2) return {raw[0] * scale, raw[1] * scale, raw[2] * scale};
    std::array<double, 3> xyz{};
    if (coords == 1) {
        xyz = {raw[0], raw[1], raw[2]};
    } else {
        for (int row = 0; row < 3; ++row) {
            for (int b = 0; b < n; ++b)
                xyz[static_cast<size_t>(row)] += derived.matrix[static_cast<size_t>(row * n + b)] * raw[b];
        }
    }
    const auto R = ReferenceOrientation(h.heading * 0.1, h.pitch * 0.1, h.roll * 0.1);
    std::array<double, 3> enu{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            enu[static_cast<size_t>(i)] +=
                R[static_cast<size_t>(i)][static_cast<size_t>(j)] * xyz[static_cast<size_t>(j)] * scale;
    return enu;
}

}  // namespace

std::vector<EnuCell> ReferenceEnuVelocities(const ProfileRecord& p, const DerivedValues& derived, int coords) {
    std::vector<EnuCell> out(static_cast<size_t>(p.cells));
    for (int cell = 0; cell < p.cells; ++cell) {
        double raw[4] = {0, 0, 0, 0};
        bool bad = false;
        for (int b = 0; b < p.beams; ++b) {
            raw[b] = p.Velocity(b, cell);
            bad = bad || p.Velocity(b, cell) == kBadVelocity;
        }
        if (bad) continue;
        const auto enu = ToEnu(raw, p.beams, p.header, derived, coords, 0.1);
        out[static_cast<size_t>(cell)] = {enu[0], enu[1], enu[2], true};
    }
    return out;
}

std::array<double, 2> ReferenceBottomTrack(const ProfileRecord& p, const DerivedValues& derived, int coords) {
    ByteReader r(p.bottomTrack.data(), p.bottomTrack.size());
    double raw[4];
    for (int b = 0; b < 4; ++b) raw[b] = r.i16(static_cast<size_t>(10 + 2 * b));
    const auto enu = ToEnu(raw, p.beams, p.header, derived, coords, 0.001);
    return {enu[0], enu[1]};
}

ReferenceDischarge ComputeReferenceDischarge(const Recording& rec, bool startedRight) {
    const UserSetup& u = rec.data.user;
    const double T = u.SensorDepth * 0.01, blank = u.BlankDistance * 0.01, cell = u.CellSizeCm * 0.01;
    const double dt = u.AveragingInterval;
    const double sign = startedRight ? -1.0 : 1.0;
    const double cellCentre = T + blank + cell;
    const double p = 1.0 + 1.0 / 6.0;
    ReferenceDischarge q;
    for (const ProfileRecord& prof : rec.profiles) {
        const auto bt = ReferenceBottomTrack(prof, rec.data.derived, u.CoordinateSystem);
        ByteReader r(prof.bottomTrack.data(), prof.bottomTrack.size());
        double sum = 0.0, least = 1e9;
        for (int b = 0; b < prof.beams; ++b) {
            const double d = r.u16(static_cast<size_t>(2 + 2 * b)) * 0.01;
            sum += d;
            least = std::min(least, d);
        }
        const double H = sum / prof.beams + T;
        int c = static_cast<int>((least * 0.9 - blank - cell / 2) / cell);
        c = std::clamp(c, 0, prof.cells);
        const auto cells = ReferenceEnuVelocities(prof, rec.data.derived, u.CoordinateSystem);
        double e = 0.0, n = 0.0;
        int m = 0;
        for (int j = 0; j < c; ++j) {
            if (!cells[static_cast<size_t>(j)].valid) continue;
            e += cells[static_cast<size_t>(j)].east - bt[0] * 100.0;
            n += cells[static_cast<size_t>(j)].north - bt[1] * 100.0;
            ++m;
        }
        if (m == 0) continue;
        e /= m;
        n /= m;
        const double D1 = H - cellCentre + cell / 2;
        const double D2 = H - ((c - 1) * cell + cellCentre) - cell / 2;
        const double perThickness = (bt[1] * e - bt[0] * n) * dt * 0.01 * sign;
        const double fit = std::pow(D1, p) - std::pow(D2, p);
        q.middle += perThickness * (D1 - D2);
        q.top += perThickness * (D1 - D2) * (std::pow(H, p) - std::pow(D1, p)) / fit;
        q.bottom += perThickness * (D1 - D2) * std::pow(D2, p) / fit;
    }
    return q;
}

}  // namespace rm::simtest
