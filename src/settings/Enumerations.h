#pragma once

#include <array>
#include <optional>
#include <string_view>

// Every enumeration is stored and shown as its raw value. Case order is the
// order of the choices shown in pickers.

/// Global menu bar display mode.
enum class DisplayMode { graphOnly, textOnly, graphAndText };
/// Display style of one menu bar item; the same raw values as DisplayMode.
enum class PersistentStyle { graphOnly, textOnly, graphAndText };
/// Where a tray item's value text goes: a label beside the icon (hosts that draw one),
/// or inside the square icon; `automatic` decides from the desktop.
enum class TrayTextPlacement { automatic, besideIcon, insideIcon };
enum class AppearanceMode { system, light, dark };
/// Note the crossing: `monoLight` is "Mono Dark" (black) and `monoDark` is "Mono Light" (white).
/// Stored values keep meaning the same colours, so it stays.
enum class ThemePreset { colorful, mono, monoLight, monoDark, pastel, neon, ocean, midnight };

template <typename E> struct EnumRawValues;

template <> struct EnumRawValues<DisplayMode> {
    static constexpr std::array<std::string_view, 3> values{"Graph Only", "Text Only",
                                                            "Graph & Text"};
};
template <> struct EnumRawValues<PersistentStyle> {
    static constexpr std::array<std::string_view, 3> values{"Graph Only", "Text Only",
                                                            "Graph & Text"};
};
template <> struct EnumRawValues<TrayTextPlacement> {
    static constexpr std::array<std::string_view, 3> values{"Automatic", "Beside the icon",
                                                            "Inside the icon"};
};
template <> struct EnumRawValues<AppearanceMode> {
    static constexpr std::array<std::string_view, 3> values{"System", "Light", "Dark"};
};
template <> struct EnumRawValues<ThemePreset> {
    static constexpr std::array<std::string_view, 8> values{
        "Colorful", "Mono", "Mono Dark", "Mono Light", "Pastel", "Neon", "Ocean", "Midnight"};
};

/// All cases of an enumeration in declaration order.
template <typename E> constexpr auto allCases() {
    constexpr auto count = EnumRawValues<E>::values.size();
    std::array<E, count> cases{};
    for (std::size_t i = 0; i < count; ++i)
        cases[i] = static_cast<E>(i);
    return cases;
}

template <typename E> constexpr std::string_view rawValue(E value) {
    return EnumRawValues<E>::values[static_cast<std::size_t>(value)];
}

/// The case whose raw value is exactly `raw`, or nullopt.
template <typename E> constexpr std::optional<E> fromRawValue(std::string_view raw) {
    const auto& values = EnumRawValues<E>::values;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] == raw)
            return static_cast<E>(i);
    return std::nullopt;
}
