#include "DetailFigureText.h"

#include "monitors/GiB.h"

#include <cmath>

namespace {

double orZero(double value) {
    return std::isfinite(value) ? value : 0.0;
}

} // namespace

QString coreShareText(double share) {
    return QString::asprintf("%.1f%%", orZero(share) * 100.0);
}

QString byteSizeText(double bytes) {
    const double gib = gibFromBytes(orZero(bytes));
    if (gib < 1.0)
        return QString::asprintf("%.0f MB", gib * 1024.0);
    return QString::asprintf("%.1f GB", gib);
}

QString volumeCapacityText(double usedBytes, double totalBytes) {
    const double used = gibFromBytes(orZero(usedBytes));
    const double total = gibFromBytes(orZero(totalBytes));
    return QString::asprintf(total < 10.0 ? "%.1f / %.1f GB" : "%.0f / %.0f GB", used, total);
}

QString memoryLimitText(std::optional<std::uint64_t> limitBytes, double installedGiB) {
    if (!limitBytes)
        return {};
    const double limit = gibFromBytes(static_cast<double>(*limitBytes));
    if (!(limit < installedGiB))
        return {};
    return QString::asprintf("Limited to %.1f GB by this session's cgroup", limit);
}

std::vector<FigureRowsView::Row> processRows(const std::vector<ProcessFigure>& processes,
                                             QString (*text)(double)) {
    std::vector<FigureRowsView::Row> rows;
    for (const ProcessFigure& process : processes)
        rows.push_back({QString::fromStdString(process.name), text(process.value), std::nullopt});
    return rows;
}

std::vector<FigureRowsView::Row> volumeRows(const std::vector<MountedVolume>& volumes) {
    std::vector<FigureRowsView::Row> rows;
    for (const MountedVolume& volume : volumes)
        rows.push_back({QString::fromStdString(volume.mountPoint),
                        volumeCapacityText(volume.used, volume.total),
                        volume.total > 0 ? volume.used / volume.total : 0.0});
    return rows;
}
