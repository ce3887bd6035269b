#pragma once
// Numerical integration for the truth of the virtual river: adaptive Simpson with Richardson
// correction, split at given break points so that kinks and jumps of the integrand fall on
// panel edges.

#include <functional>
#include <vector>

namespace rm::sim {

// Integral of f over [a, b] (a may exceed b; the sign follows). Panels are halved until the
// Simpson estimates of a panel and its halves agree within 15 * tolerance, the tolerance being
// relTol times the magnitude of a coarse first estimate (absTol when that is zero), and at
// most maxDepth halvings deep.
double IntegrateAdaptive(const std::function<double(double)>& f, double a, double b, double relTol = 1e-11,
                         double absTol = 1e-14, int maxDepth = 40);

// The same over [a, b] cut at every break point strictly inside it.
double IntegratePiecewise(const std::function<double(double)>& f, double a, double b, std::vector<double> breakPoints,
                          double relTol = 1e-11);

}  // namespace rm::sim
