// A second process for the settings tests, with a QSettings cache of its own: opens the
// store (a file, or the standard one with "--standard"), writes "KEY TEXT" through that
// setting's setter when given, and prints every setting as it reads. Exit status 2: the
// write was refused.
#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QMetaProperty>
#include <cstdio>

template <typename... Enumeration> QString enumerationText(const QVariant& value) {
    QString text;
    ((value.metaType() == QMetaType::fromType<Enumeration>()
          ? text = QString::fromUtf8(rawValue(value.value<Enumeration>()).data())
          : text),
     ...);
    return text;
}

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QString where = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    auto settings = where == "--standard" ? std::make_unique<AppSettings>()
                                          : std::make_unique<AppSettings>(where);
    if (argc == 4 && !settings->setProperty(argv[2], QString::fromUtf8(argv[3])))
        return 2;
    std::printf("file=%s\n", qPrintable(settings->fileName()));
    const QMetaObject* meta = settings->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QVariant value = meta->property(i).read(settings.get());
        QString text =
            enumerationText<AppearanceMode, DisplayMode, ThemePreset, PersistentStyle>(value);
        std::printf("%s=%s\n", meta->property(i).name(),
                    (text.isNull() ? value.toString() : text).toUtf8().constData());
    }
    for (const auto& [id, percent] : settings->fanPercentages())
        std::printf("fanPercentages/%lld=%g\n", id, percent);
}
