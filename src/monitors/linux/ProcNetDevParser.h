#pragma once

#include "../NetworkMonitor.h"

#include <string_view>
#include <vector>

/// Parses /proc/net/dev: per interface, the 64-bit received bytes (first number
/// after the colon) and sent bytes (ninth). Header and malformed lines are skipped.
std::vector<InterfaceCounters> parseProcNetDev(std::string_view text);
/// The same into `interfaces`, replacing its content and reusing its storage.
void parseProcNetDev(std::string_view text, std::vector<InterfaceCounters>& interfaces);
