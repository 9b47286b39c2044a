#pragma once

#include <string_view>

/// Writes all of `text` to `fd`, retrying short writes; false on error.
bool writeAll(int fd, std::string_view text);

/// One line "smc_helper: <message>" on standard error.
void reportError(std::string_view message);
