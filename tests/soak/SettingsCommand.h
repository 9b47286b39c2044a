#pragma once

#include <string>
#include <string_view>

class AppSettings;

/// Answers one line typed to a running program: "get <key>" or "set <key> <value>",
/// for the settings whose type is bool, double or text. The answer is
/// "<key>=<value read back after the command>" or "error <reason>".
std::string answerSettingsCommand(AppSettings& settings, std::string_view line);
