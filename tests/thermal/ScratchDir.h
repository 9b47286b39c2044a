#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

// A fresh directory under /tmp for one test, removed with everything in it.
class ScratchDir {
public:
    ScratchDir() {
        std::string pattern = "/tmp/vorlune-thermal-XXXXXX";
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("mkdtemp failed");
        path_ = pattern;
    }
    ~ScratchDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::filesystem::path& path() const { return path_; }

    std::filesystem::path writeFile(const std::filesystem::path& relative,
                                    const std::string& content, mode_t mode = 0644) const {
        const std::filesystem::path file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        {
            std::ofstream out(file, std::ios::binary | std::ios::trunc);
            out << content;
        }
        ::chmod(file.c_str(), mode);
        return file;
    }

    // A /bin/sh script with this body, executable.
    std::filesystem::path writeScript(const std::filesystem::path& relative,
                                      const std::string& body, mode_t mode = 0755) const {
        return writeFile(relative, "#!/bin/sh\n" + body, mode);
    }

private:
    std::filesystem::path path_;
};

inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Polls `condition` until it holds or `limit` has passed; returns its last value.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}
