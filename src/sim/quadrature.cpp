#include "sim/quadrature.h"

#include <algorithm>
#include <cmath>

namespace rm::sim {

namespace {

struct Panel {
    double a, fa, m, fm, b, fb, whole;
};

double Simpson(double a, double fa, double fm, double b, double fb) { return (b - a) / 6.0 * (fa + 4.0 * fm + fb); }

double Refine(const std::function<double(double)>& f, const Panel& p, double tol, int depth) {
    const double lm = 0.5 * (p.a + p.m);
    const double rm = 0.5 * (p.m + p.b);
    const double flm = f(lm);
    const double frm = f(rm);
    const double left = Simpson(p.a, p.fa, flm, p.m, p.fm);
    const double right = Simpson(p.m, p.fm, frm, p.b, p.fb);
    const double diff = left + right - p.whole;
    if (depth <= 0 || std::fabs(diff) <= 15.0 * tol) return left + right + diff / 15.0;
    return Refine(f, {p.a, p.fa, lm, flm, p.m, p.fm, left}, 0.5 * tol, depth - 1) +
           Refine(f, {p.m, p.fm, rm, frm, p.b, p.fb, right}, 0.5 * tol, depth - 1);
}

}  // namespace

double IntegrateAdaptive(const std::function<double(double)>& f, double a, double b, double relTol, double absTol,
                         int maxDepth) {
    if (a == b) return 0.0;
    if (a > b) return -IntegrateAdaptive(f, b, a, relTol, absTol, maxDepth);
    // A coarse composite estimate sets the scale of the tolerance.
    constexpr int kStart = 16;
    const double step = (b - a) / kStart;
    std::vector<double> x(2 * kStart + 1), fx(2 * kStart + 1);
    for (int i = 0; i <= 2 * kStart; ++i) {
        x[static_cast<size_t>(i)] = (i == 2 * kStart) ? b : a + 0.5 * step * i;
        fx[static_cast<size_t>(i)] = f(x[static_cast<size_t>(i)]);
    }
    double coarse = 0.0;
    for (int i = 0; i < kStart; ++i) {
        const size_t k = static_cast<size_t>(2 * i);
        coarse += Simpson(x[k], fx[k], fx[k + 1], x[k + 2], fx[k + 2]);
    }
    const double tol = std::max(std::fabs(coarse) * relTol, absTol) / kStart;
    double sum = 0.0;
    for (int i = 0; i < kStart; ++i) {
        const size_t k = static_cast<size_t>(2 * i);
        const Panel p{x[k],
                      fx[k],
                      x[k + 1],
                      fx[k + 1],
                      x[k + 2],
                      fx[k + 2],
                      Simpson(x[k], fx[k], fx[k + 1], x[k + 2], fx[k + 2])};
        sum += Refine(f, p, tol, maxDepth);
    }
    return sum;
}

double IntegratePiecewise(const std::function<double(double)>& f, double a, double b, std::vector<double> breakPoints,
                          double relTol) {
    if (a > b) return -IntegratePiecewise(f, b, a, std::move(breakPoints), relTol);
    std::vector<double> edges{a};
    std::sort(breakPoints.begin(), breakPoints.end());
    for (double p : breakPoints) {
        if (p > edges.back() && p < b) edges.push_back(p);
    }
    edges.push_back(b);
    double sum = 0.0;
    for (size_t i = 0; i + 1 < edges.size(); ++i) sum += IntegrateAdaptive(f, edges[i], edges[i + 1], relTol);
    return sum;
}

}  // namespace rm::sim
