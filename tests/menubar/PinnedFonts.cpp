#include "PinnedFonts.h"

#include <QFontDatabase>
#include <QString>
#include <QStringList>

namespace {

std::optional<QString> loadFamily(const QString& path) {
    const int id = QFontDatabase::addApplicationFont(path);
    if (id < 0)
        return std::nullopt;
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty())
        return std::nullopt;
    return families.front();
}

} // namespace

std::optional<TrayIconFonts> pinnedFonts() {
    static const auto value =
        loadFamily(QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"));
    static const auto icon =
        loadFamily(QStringLiteral("/usr/share/fonts/truetype/ancient-scripts/Symbola_hint.ttf"));
    if (!value || !icon)
        return std::nullopt;
    TrayIconFonts fonts;
    fonts.value = QFont(*value);
    fonts.icon = QFont(*icon);
    return fonts;
}
