#pragma once

#include "../TopProcesses.h"

#include <string>
#include <vector>

/// Every process under `procDir` (/proc, or a fixture tree's) with a readable stat file,
/// and with `withResident` its resident bytes from statm. A process that ends between
/// the directory listing and its reads is left out.
std::vector<ProcessReading> readProcessTable(const std::string& procDir, bool withResident);
