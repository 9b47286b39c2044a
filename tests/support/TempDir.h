#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

/// The whole content of `file`, "" when it cannot be read.
inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// A directory of one test's own under /tmp, removed with everything in it. Every
/// test rig that lays out files (fake sysfs and /proc trees, stand-in scripts,
/// settings files) builds on it.
class TempDir {
public:
    TempDir() {
        std::string pattern = "/tmp/vorlune-test-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("mkdtemp failed");
        path_ = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string str() const { return path_.string(); }

    /// Writes `content` at `relative` (an absolute path is taken as it is), making folders.
    std::filesystem::path write(const std::filesystem::path& relative, const std::string& content,
                                mode_t mode = 0644) const {
        const std::filesystem::path file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
        ::chmod(file.c_str(), mode);
        return file;
    }
    /// An executable /bin/sh script with this body.
    std::filesystem::path writeScript(const std::filesystem::path& relative,
                                      const std::string& body, mode_t mode = 0755) const {
        return write(relative, "#!/bin/sh\n" + body, mode);
    }
    std::string read(const std::filesystem::path& relative) const {
        return readFile(path_ / relative);
    }
    void makeDirectory(const std::filesystem::path& relative) const {
        std::filesystem::create_directories(path_ / relative);
    }
    /// A symbolic link at `relative` pointing to `target` (kept relative if it is).
    void link(const std::filesystem::path& target, const std::filesystem::path& relative) const {
        const std::filesystem::path at = path_ / relative;
        std::filesystem::create_directories(at.parent_path());
        std::filesystem::create_symlink(target, at);
    }

private:
    std::filesystem::path path_;
};

#ifdef VORLUNE_FIXTURES
/// A file under tests/fixtures.
inline std::string fixturePath(const std::string& name) {
    return std::string(VORLUNE_FIXTURES) + "/" + name;
}
#endif

/// Polls `condition` until it holds or `limit` has passed; returns its last value.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return condition();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}
