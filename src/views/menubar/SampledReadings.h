#pragma once

#include "MenuBarReadings.h"

class SystemMonitor;

/// What the sampler last published, as the tray items and the bar lines read it.
MenuBarReadings sampledReadings(const SystemMonitor& monitor);
