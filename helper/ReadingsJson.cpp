#include "ReadingsJson.h"

#include <charconv>
#include <utility>

namespace {

void appendInteger(std::string& out, long long value) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendJsonString(std::string& out, std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    out += '"';
    while (!text.empty()) {
        // Plain characters go in whole runs; only the rest is looked at one by one.
        std::size_t plain = 0;
        while (plain < text.size()) {
            const auto byte = static_cast<unsigned char>(text[plain]);
            if (byte < 0x20 || byte >= 0x7f || byte == '"' || byte == '\\')
                break;
            ++plain;
        }
        out.append(text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const auto byte = static_cast<unsigned char>(text.front());
        text.remove_prefix(1);
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += static_cast<char>(byte);
        } else if (byte < 0x20) {
            out += "\\u00";
            out += hex[byte >> 4];
            out += hex[byte & 0xf];
        } else {
            out += '?';
        }
    }
    out += '"';
}

void appendDecimalFromMilli(std::string& out, long long milli) {
    const bool negative = milli < 0;
    const unsigned long long magnitude = negative ? 0ULL - static_cast<unsigned long long>(milli)
                                                  : static_cast<unsigned long long>(milli);
    if (negative)
        out += '-';
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, magnitude / 1000).ptr);
    unsigned int fraction = static_cast<unsigned int>(magnitude % 1000);
    if (fraction == 0)
        return;
    out += '.';
    for (unsigned int place = 100; fraction != 0; place /= 10) {
        out += static_cast<char>('0' + fraction / place);
        fraction %= place;
    }
}

} // namespace

std::string jsonString(std::string_view text) {
    std::string out;
    appendJsonString(out, text);
    return out;
}

std::string decimalFromMilli(long long milli) {
    std::string out;
    appendDecimalFromMilli(out, milli);
    return out;
}

std::string formatReadingsJson(const SensorReadings& readings) {
    std::string out;
    out.reserve(64 + readings.temperatures.size() * 96 + readings.fans.size() * 80);
    out += "{\"temperatures\":[";
    for (std::size_t i = 0; i < readings.temperatures.size(); ++i) {
        const TemperatureReading& t = readings.temperatures[i];
        out += i == 0 ? "{\"key\":" : ",{\"key\":";
        appendJsonString(out, t.key);
        out += ",\"label\":";
        appendJsonString(out, t.label);
        out += ",\"value\":";
        appendDecimalFromMilli(out, t.milliCelsius);
        out += '}';
    }
    out += "],\"fans\":[";
    for (std::size_t i = 0; i < readings.fans.size(); ++i) {
        const FanReading& f = readings.fans[i];
        out += i == 0 ? "{\"id\":" : ",{\"id\":";
        appendInteger(out, f.id);
        out += ",\"key\":";
        appendJsonString(out, f.key);
        out += ",\"actual\":";
        appendInteger(out, f.rpm);
        // A figure the chip does not report is left out, not sent as 0 or a guess.
        const std::pair<const char*, const std::optional<long long>&> figures[] = {
            {",\"min\":", f.minRpm}, {",\"max\":", f.maxRpm}, {",\"target\":", f.targetRpm}};
        for (const auto& [name, figure] : figures) {
            if (figure) {
                out += name;
                appendInteger(out, *figure);
            }
        }
        out += '}';
    }
    out += "]}\n";
    return out;
}
