// A second process for the settings tests: opens the store (an explicit file, or
// the standard location with "--standard") and either prints every setting as
// the store reads it ("dump") or writes one through its typed setter
// ("set KEY TEXT"). Exit status 2 means the command was not understood.
#include "SettingsPropertyText.h"

#include <QCoreApplication>
#include <cstdio>
#include <memory>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    const QString where = QString::fromLocal8Bit(argv[1]);
    auto settings = where == "--standard" ? std::make_unique<AppSettings>()
                                          : std::make_unique<AppSettings>(where);
    const QByteArray command = argv[2];
    if (command == "dump" && argc == 3) {
        std::printf("file=%s\n", settings->fileName().toUtf8().constData());
        for (const std::string& name : settings_text::names(*settings))
            std::printf("%s=%s\n", name.c_str(),
                        settings_text::read(*settings, name.c_str()).c_str());
        for (const auto& [id, percent] : settings->fanPercentages())
            std::printf("fanPercentages/%lld=%s\n", id, formatStoredDouble(percent).c_str());
        return 0;
    }
    if (command == "set" && argc == 5)
        return settings_text::write(*settings, argv[3], argv[4]) ? 0 : 2;
    return 2;
}
