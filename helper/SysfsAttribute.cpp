#include "SysfsAttribute.h"

#include <array>
#include <cctype>
#include <charconv>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t maxAttributeBytes = 128;
constexpr std::size_t maxNameBytes = 64;

bool consumeDigits(std::string_view& text) {
    std::size_t count = 0;
    while (count < text.size() && std::isdigit(static_cast<unsigned char>(text[count])))
        ++count;
    text.remove_prefix(count);
    return count > 0;
}

bool consume(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix)
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

// "<prefix><N><suffix>" for one of the given suffixes.
bool matchesIndexed(std::string_view name, std::string_view prefix,
                    std::initializer_list<std::string_view> suffixes) {
    if (!consume(name, prefix) || !consumeDigits(name))
        return false;
    for (std::string_view suffix : suffixes) {
        if (name == suffix)
            return true;
    }
    return false;
}

std::string_view baseName(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// `name` relative to `dirFd`, never through a symlink.
int checkedOpen(int dirFd, const char* name, bool forWriting) {
    const int access = forWriting ? O_RDWR : O_RDONLY;
    // O_NONBLOCK: a FIFO planted in a fake tree can never make a read wait.
    const int fd = ::openat(dirFd, name, access | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0 || !forWriting)
        return fd;
    // The daemon keeps what it opens for writing; that must be an attribute file.
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return -1;
    }
    return fd;
}

std::optional<std::string> readAll(int fd) {
    char buffer[maxAttributeBytes];
    const ssize_t count = ::pread(fd, buffer, sizeof buffer, 0);
    if (count < 0)
        return std::nullopt;
    return std::string(buffer, static_cast<std::size_t>(count));
}

} // namespace

bool isAllowedAttribute(std::string_view name) {
    static constexpr std::string_view plainNames[] = {"name", "type", "temp", "runtime_status"};
    for (std::string_view plain : plainNames) {
        if (name == plain)
            return true;
    }
    return matchesIndexed(name, "temp", {"_input", "_label", "_crit"}) ||
           matchesIndexed(
               name, "fan",
               {"_input", "_min", "_max", "_target", "_fault", "_enable", "_output", "_manual"}) ||
           matchesIndexed(name, "pwm", {"", "_enable"}) ||
           matchesIndexed(name, "trip_point_", {"_type", "_temp"});
}

int openAttributeAt(int dirFd, std::string_view name, bool forWriting) {
    // Whitelisted names hold no '/', so the open never leaves the directory.
    char terminated[maxNameBytes];
    if (!isAllowedAttribute(name) || name.size() >= sizeof terminated)
        return -1;
    name.copy(terminated, name.size());
    terminated[name.size()] = '\0';
    return checkedOpen(dirFd, terminated, forWriting);
}

int openAttribute(const std::string& path, bool forWriting) {
    if (!isAllowedAttribute(baseName(path)))
        return -1;
    return checkedOpen(AT_FDCWD, path.c_str(), forWriting);
}

std::optional<long long> parseAttributeInteger(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    if (text.empty() || text.size() > 19)
        return std::nullopt;
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::string> readAttributeText(int dirFd, std::string_view name) {
    const int fd = openAttributeAt(dirFd, name);
    if (fd < 0)
        return std::nullopt;
    auto text = readAttributeText(fd);
    ::close(fd);
    return text;
}

std::optional<std::string> readAttributeText(int fd) {
    auto text = readAll(fd);
    if (!text)
        return std::nullopt;
    text->erase(std::min(text->find('\n'), text->size()));
    while (!text->empty() && std::isspace(static_cast<unsigned char>(text->back())))
        text->pop_back();
    return text;
}

std::optional<long long> readAttributeInteger(int dirFd, std::string_view name) {
    const int fd = openAttributeAt(dirFd, name);
    if (fd < 0)
        return std::nullopt;
    auto value = readAttributeInteger(fd);
    ::close(fd);
    return value;
}

std::optional<long long> readAttributeInteger(int fd) {
    const auto text = readAll(fd);
    if (!text)
        return std::nullopt;
    return parseAttributeInteger(*text);
}

bool writeAttributeInteger(int fd, long long value) {
    std::array<char, 24> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size() - 1, value);
    if (error != std::errc())
        return false;
    *end++ = '\n';
    const auto length = static_cast<std::size_t>(end - buffer.data());
    if (::pwrite(fd, buffer.data(), length, 0) != static_cast<ssize_t>(length))
        return false;
    // sysfs takes each write as the whole value; a plain file (a test's fake tree) would
    // keep the tail of a longer old value, so cut it. sysfs ignores the length.
    [[maybe_unused]] const int ignored = ::ftruncate(fd, static_cast<off_t>(length));
    return true;
}
