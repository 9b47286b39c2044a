#pragma once

#include "DetailSample.h"

#include <array>
#include <atomic>
#include <memory>

/// How many open views want each detail figure. Changed on the main thread, read by
/// the sampling thread at each tick.
struct DetailWants {
    std::array<std::atomic<int>, DetailFigure::count> counts{};

    /// The figures at least one view wants.
    DetailFigures figures() const;
};

/// Keeps its figures wanted while it lives; moving it hands that on.
class DetailWatch {
public:
    DetailWatch() = default;
    DetailWatch(std::shared_ptr<DetailWants> wants, DetailFigures figures);
    DetailWatch(DetailWatch&& other) noexcept;
    DetailWatch& operator=(DetailWatch&& other) noexcept;
    DetailWatch(const DetailWatch&) = delete;
    DetailWatch& operator=(const DetailWatch&) = delete;
    ~DetailWatch();

    /// Whether it keeps any figure wanted.
    bool isWatching() const { return wants && figures != 0; }

private:
    void release();

    // Shared so a watch that outlives the monitor releases into nothing harmful.
    std::shared_ptr<DetailWants> wants;
    DetailFigures figures = 0;
};
