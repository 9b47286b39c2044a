#include "DetailWatch.h"

#include <utility>

DetailFigures DetailWants::figures() const {
    DetailFigures wanted = 0;
    for (int bit = 0; bit < DetailFigure::count; ++bit)
        if (counts[bit] > 0)
            wanted |= 1u << bit;
    return wanted;
}

DetailWatch::DetailWatch(std::shared_ptr<DetailWants> wants, DetailFigures figures)
    : wants(std::move(wants)), figures(figures) {
    for (int bit = 0; bit < DetailFigure::count; ++bit)
        if (figures & (1u << bit))
            ++this->wants->counts[bit];
}

DetailWatch::DetailWatch(DetailWatch&& other) noexcept
    : wants(std::move(other.wants)), figures(std::exchange(other.figures, 0)) {}

DetailWatch& DetailWatch::operator=(DetailWatch&& other) noexcept {
    if (this != &other) {
        release();
        wants = std::move(other.wants);
        figures = std::exchange(other.figures, 0);
    }
    return *this;
}

DetailWatch::~DetailWatch() {
    release();
}

void DetailWatch::release() {
    if (wants)
        for (int bit = 0; bit < DetailFigure::count; ++bit)
            if (figures & (1u << bit))
                --wants->counts[bit];
    wants.reset();
    figures = 0;
}
