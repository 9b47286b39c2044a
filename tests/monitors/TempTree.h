#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <unistd.h>

/// A temporary directory tree, removed when the object goes away.
class TempTree {
public:
    TempTree() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vorlune-test-XXXXXX").string();
        root_ = ::mkdtemp(pattern.data());
    }
    ~TempTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    const std::filesystem::path& root() const { return root_; }
    std::string rootString() const { return root_.string(); }

    /// Writes `text` at `relative` (below the root), creating folders.
    void write(const std::string& relative, const std::string& text) const {
        const auto path = root_ / relative;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::trunc) << text;
    }
    void copy(const std::filesystem::path& from, const std::string& relative) const {
        std::ifstream in(from);
        write(relative, std::string(std::istreambuf_iterator<char>(in), {}));
    }

private:
    std::filesystem::path root_;
};

inline std::string fixture(const std::string& name) {
    return std::string(VORLUNE_FIXTURES) + "/" + name;
}
