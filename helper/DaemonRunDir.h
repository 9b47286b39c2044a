#pragma once

#include <optional>
#include <string>

/// The daemon's folder under /run: an exclusive lock that only one daemon at a time can
/// hold, and the state file that remembers the fans' original state for as long as a
/// daemon controls them. Everything is opened while privileged; after privileges are
/// dropped the daemon can still empty the state file through its descriptor.
class DaemonRunDir {
public:
    /// Creates `path` (mode 0755, owned by the effective user) if missing, refuses one
    /// that is a symlink, owned by someone else or writable by others, and takes the
    /// lock. On failure `error` says why; another daemon holding the lock is one reason.
    static std::optional<DaemonRunDir> claim(const std::string& path, std::string& error);

    DaemonRunDir(DaemonRunDir&& other) noexcept;
    DaemonRunDir& operator=(DaemonRunDir&&) = delete;
    DaemonRunDir(const DaemonRunDir&) = delete;
    ~DaemonRunDir();

    /// What a daemon that did not end cleanly left in the state file; "" when none.
    std::string leftoverStates() const;
    /// Replaces the state file atomically (temporary file, fsync, rename).
    bool saveStates(const std::string& content);
    /// Empties the state file: every fan is back as the machine left it.
    void clearStates();

private:
    DaemonRunDir(int directory, int lock) : directory_(directory), lock_(lock) {}

    int directory_ = -1;
    int lock_ = -1;
    int states_ = -1; ///< open on the saved state file, for emptying it unprivileged
};
