#include "TrayIconFonts.h"

#include <QFontDatabase>
#include <QStringList>

TrayIconFonts TrayIconFonts::systemDefault() {
    TrayIconFonts fonts;
    fonts.value = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fonts.value.setWeight(QFont::Normal);
    const QFont general = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    fonts.icon = general;
    fonts.icon.setFamilies(QStringList{QStringLiteral("Symbola"), general.family()});
    return fonts;
}
