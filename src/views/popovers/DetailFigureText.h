#pragma once

#include "FigureRowsView.h"
#include "monitors/DetailSource.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

// The texts of the figures only detail popovers show. Sizes count in units of 1024, like
// the rest of the popovers ("GB" is 2^30 bytes).

/// A share of one core as a percentage with one decimal: 1.5 → "150.0%".
QString coreShareText(double share);
/// Bytes as "512 MB" below one GB, else "1.5 GB".
QString byteSizeText(double bytes);
/// A file system's used and total space: "120 / 500 GB", with one decimal below 10 GB.
QString volumeCapacityText(double usedBytes, double totalBytes);
/// "Limited to 4.0 GB by this session's cgroup" when the limit is below the installed
/// memory (GB), else empty: a limit above what is installed limits nothing.
QString memoryLimitText(std::optional<std::uint64_t> limitBytes, double installedGiB);

/// The rows of a process list, the figure written by `text`.
std::vector<FigureRowsView::Row> processRows(const std::vector<ProcessFigure>& processes,
                                             QString (*text)(double));
/// One row per file system: its mount point, used / total and a bar of the share used.
std::vector<FigureRowsView::Row> volumeRows(const std::vector<MountedVolume>& volumes);
