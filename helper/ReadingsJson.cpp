#include "ReadingsJson.h"

#include <cstdio>

std::string jsonString(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            out += escaped;
        } else if (byte >= 0x7f) {
            out += '?';
        } else {
            out += c;
        }
    }
    out += '"';
    return out;
}

std::string decimalFromMilli(long long milli) {
    const bool negative = milli < 0;
    const unsigned long long magnitude = negative ? 0ULL - static_cast<unsigned long long>(milli)
                                                  : static_cast<unsigned long long>(milli);
    std::string out = negative ? "-" : "";
    out += std::to_string(magnitude / 1000);
    unsigned long long fraction = magnitude % 1000;
    if (fraction != 0) {
        std::string digits = std::to_string(1000 + fraction).substr(1);
        while (digits.back() == '0')
            digits.pop_back();
        out += "." + digits;
    }
    return out;
}

std::string formatReadingsJson(const SensorReadings& readings) {
    std::string out = "{\"temperatures\":[";
    for (std::size_t i = 0; i < readings.temperatures.size(); ++i) {
        const TemperatureReading& t = readings.temperatures[i];
        out += i == 0 ? "{" : ",{";
        out += "\"key\":" + jsonString(t.key) + ",\"label\":" + jsonString(t.label) +
               ",\"value\":" + decimalFromMilli(t.milliCelsius) + "}";
    }
    out += "],\"fans\":[";
    for (std::size_t i = 0; i < readings.fans.size(); ++i) {
        const FanReading& f = readings.fans[i];
        out += i == 0 ? "{" : ",{";
        out += "\"id\":" + std::to_string(f.id) + ",\"actual\":" + std::to_string(f.rpm) +
               ",\"min\":" + std::to_string(f.minRpm);
        if (f.maxRpm)
            out += ",\"max\":" + std::to_string(*f.maxRpm);
        out += ",\"target\":" + std::to_string(f.targetRpm) + "}";
    }
    out += "]}\n";
    return out;
}
