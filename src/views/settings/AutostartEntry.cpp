#include "AutostartEntry.h"

namespace AutostartEntry {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace

bool launchesAtLogin(std::string_view text) {
    bool inMainGroup = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inMainGroup || equals == std::string_view::npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if ((key == "Hidden" && value == "true") ||
            (key == "X-GNOME-Autostart-enabled" && value == "false"))
            return false;
    }
    return true;
}

QString execArgument(const QString& program) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    bool needsQuotes = false;
    for (const QChar c : program)
        needsQuotes = needsQuotes || reserved.contains(c);

    QString argument;
    if (needsQuotes) {
        argument += u'"';
        for (const QChar c : program) {
            if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
                argument += u'\\';
            argument += c;
        }
        argument += u'"';
    } else {
        argument = program;
    }
    // Exec is also a string value, whose own escaping is undone before the quoting.
    argument.replace(u'\\', QStringLiteral("\\\\"));
    argument.replace(u'\n', QStringLiteral("\\n"));
    argument.replace(u'\t', QStringLiteral("\\t"));
    argument.replace(u'%', QStringLiteral("%%"));
    return argument;
}

QString text(const QString& execCommand) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Vorlune\n"
                          "Comment=System monitor in the system tray\n"
                          "Exec=%1\n"
                          "Icon=utilities-system-monitor\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(execCommand);
}

} // namespace AutostartEntry
