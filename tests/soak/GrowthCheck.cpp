#include "GrowthCheck.h"

namespace {

void check(std::vector<std::string>& findings, const char* name, long long before, long long after,
           long long tolerance) {
    // A figure that could not be read (-1) would hide growth, so it counts as a finding.
    if (before < 0 || after < 0) {
        findings.push_back(std::string(name) + " could not be read");
        return;
    }
    if (after - before > tolerance)
        findings.push_back(std::string(name) + " grew from " + std::to_string(before) + " to " +
                           std::to_string(after) + " (tolerance " + std::to_string(tolerance) +
                           ")");
}

} // namespace

std::vector<std::string> growthBeyond(const ProcessFigures& baseline, const ProcessFigures& end,
                                      const GrowthTolerance& tolerance) {
    std::vector<std::string> findings;
    check(findings, "threads", baseline.threads, end.threads, tolerance.threads);
    check(findings, "fds", baseline.openFds, end.openFds, tolerance.openFds);
    check(findings, "children", baseline.children, end.children, tolerance.children);
    check(findings, "heap", baseline.heapBytes, end.heapBytes, tolerance.heapBytes);
    return findings;
}
