#include "DetailSampler.h"

DetailSampler::DetailSampler(std::unique_ptr<DetailSource> source, MonotonicClock clock)
    : source(std::move(source)), clock(std::move(clock)) {}

DetailSample DetailSampler::sample(DetailFigures figures) {
    DetailSample sample;
    sample.figures = figures;
    const bool busiest = figures & DetailFigure::busiestProcesses;
    const bool largest = figures & DetailFigure::largestProcesses;
    if (busiest || largest) {
        const auto table = source->readProcesses(largest);
        if (busiest)
            sample.busiestProcesses = topProcesses.busiest(table, clock());
        if (largest)
            sample.largestProcesses = TopProcesses::largest(table);
    }
    if (figures & DetailFigure::memoryLimit)
        sample.memoryLimit = source->readMemoryLimit();
    if (figures & DetailFigure::mountedVolumes)
        sample.mountedVolumes = source->readVolumes();
    return sample;
}

void DetailSampler::keepOnly(DetailFigures wanted) {
    if (!(wanted & DetailFigure::busiestProcesses))
        topProcesses.forget();
}
