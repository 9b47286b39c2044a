#pragma once

#include "MenuBarAppearance.h"
#include "MenuBarGraph.h"
#include "MenuBarReadings.h"
#include "tray/SensorType.h"

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

/// One run of an item's title. Icons are meant for the system font at 10 points,
/// values for the monospaced system font at 9 points, regular weight.
struct TitleRun {
    enum class Kind { icon, value };

    Kind kind = Kind::value;
    QString text;
    QColor colour;

    bool operator==(const TitleRun&) const = default;
};

/// Where the image sits relative to the title.
enum class ImagePosition { leading };

/// The content of one tray item's button, as values.
struct ButtonModel {
    SensorType type = SensorType::cpu;
    PersistentStyle style = PersistentStyle::graphAndText;
    std::vector<TitleRun> title;                ///< empty: an empty title
    std::optional<MenuBarGraph> image;          ///< nullopt: no image
    std::optional<ImagePosition> imagePosition; ///< nullopt: leave the position as it was
    QString toolTip;                            ///< "CPU: 42%"
    QString valueText;                          ///< "42%", for labels beside the icon

    bool operator==(const ButtonModel&) const = default;
};

/// Applies the item's style: `graphOnly` gives no title and the graph; `textOnly` the icon
/// run (when icons are on and the type has one; the icon followed by one space) and the
/// value run, no image; `graphAndText` one value run of a space and the value text (never
/// an icon), the graph, and the image leading. Every run takes the item's colour.
ButtonModel buildButtonModel(SensorType type, const MenuBarReadings& readings,
                             const MenuBarAppearance& appearance);
