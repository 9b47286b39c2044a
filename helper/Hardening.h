#pragma once

#include <string>

// Process set-up for a program that may run setuid-root.

/// Opens /dev/null on any of fds 0-2 that is closed, so no file the helper opens later
/// can land there, and closes every other inherited descriptor. False if that fails.
bool sanitizeFileDescriptors();

/// umask 077 and an empty environment.
void resetProcessEnvironment();

/// Whether the kernel started us with raised privileges (setuid, setgid, capabilities).
bool runsWithRaisedPrivileges();

/// Becomes the real user and group for good, then forbids core dumps, ptrace by that
/// user, and any later privilege gain. Returns false, with `error` set, on failure.
bool dropPrivileges(std::string& error);
