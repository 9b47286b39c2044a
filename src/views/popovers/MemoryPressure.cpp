#include "MemoryPressure.h"

#include "PopoverStyle.h"
#include "views/menubar/MenuBarColor.h"

#include <cmath>

MemoryPressure memoryPressure(double usedFraction) {
    if (std::isnan(usedFraction) || usedFraction < 0.70)
        return MemoryPressure::normal;
    if (usedFraction < 0.90)
        return MemoryPressure::moderate;
    return MemoryPressure::high;
}

QString memoryPressureText(MemoryPressure level) {
    switch (level) {
    case MemoryPressure::normal:
        return QStringLiteral("Normal");
    case MemoryPressure::moderate:
        return QStringLiteral("Moderate");
    case MemoryPressure::high:
        return QStringLiteral("High");
    }
    return {};
}

QColor memoryPressureColor(MemoryPressure level) {
    switch (level) {
    case MemoryPressure::normal:
        return PopoverStyle::green;
    case MemoryPressure::moderate:
        return MenuBarColors::warm;
    case MemoryPressure::high:
        return MenuBarColors::hot;
    }
    return PopoverStyle::green;
}
