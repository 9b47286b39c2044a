#pragma once

#include "tray/SensorType.h"
#include "views/menubar/MenuBarReadings.h"

#include <QString>
#include <optional>
#include <vector>

/// The output formats of `vorlune --bar`: waybar's custom module (one JSON object a line),
/// the i3bar protocol (a header, then an endless JSON array of blocks), or plain text.
enum class BarFormat { waybar, i3bar, plain };

std::optional<BarFormat> barFormatNamed(const QString& name);

/// The kinds `--items` names, comma-separated by their lower-case key words (cpu, memory,
/// disk, networkin, networkout, network, cputemp, gputemp, fan); nullopt when any name is
/// unknown or none is given.
std::optional<std::vector<SensorType>> barItemsNamed(const QString& list);

/// The lines before the first tick's: i3bar's header and the array's opening bracket.
QString barPreamble(BarFormat format);

/// One tick's line, without its line feed, of each kind's symbol and value text as the
/// tray shows them. waybar's `class` is "warm" or "hot" as the tray colours the hottest
/// temperature shown; its `percentage` is the first kind's usage or °C, within 0...100.
QString barLine(BarFormat format, const std::vector<SensorType>& kinds,
                const MenuBarReadings& readings);
