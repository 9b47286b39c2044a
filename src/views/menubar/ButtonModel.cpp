#include "ButtonModel.h"

#include "MenuBarColor.h"
#include "MenuBarValueText.h"

ButtonModel buildButtonModel(SensorType type, const MenuBarReadings& readings,
                             const MenuBarAppearance& appearance) {
    const QString value = menuBarValueText(type, readings);
    const QColor colour = menuBarColor(type, readings, appearance);

    ButtonModel model;
    model.type = type;
    model.valueText = value;
    model.style = appearance.style;
    model.toolTip = menuBarToolTip(type, readings);
    switch (appearance.style) {
    case PersistentStyle::graphOnly:
        model.image = menuBarGraph(type, readings, appearance);
        break;
    case PersistentStyle::textOnly:
        if (appearance.showIcons) {
            const QString icon = menuBarIcon(type);
            if (!icon.isEmpty())
                model.title.push_back({TitleRun::Kind::icon, icon + u' ', colour});
        }
        model.title.push_back({TitleRun::Kind::value, value, colour});
        break;
    case PersistentStyle::graphAndText:
        model.title.push_back({TitleRun::Kind::value, u' ' + value, colour});
        model.image = menuBarGraph(type, readings, appearance);
        model.imagePosition = ImagePosition::leading;
        break;
    }
    return model;
}
