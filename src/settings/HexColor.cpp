#include "HexColor.h"

#include <QTextBoundaryFinder>
#include <QtGlobal>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

// Letters and numbers of any script count as alphanumeric, as in the stored
// strings' original rules; only the ends are trimmed.
QString trimNonAlphanumeric(QStringView text) {
    const QList<uint> codePoints = text.toUcs4();
    qsizetype first = 0;
    qsizetype last = codePoints.size();
    while (first < last && !QChar::isLetterOrNumber(char32_t(codePoints[first])))
        ++first;
    while (last > first && !QChar::isLetterOrNumber(char32_t(codePoints[last - 1])))
        --last;
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(codePoints.constData() + first),
                             last - first);
}

// Length as a reader counts it: a letter with a combining accent is one character.
qsizetype characterCount(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

int hexDigitValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= '0' && u <= '9')
        return u - '0';
    if (u >= 'a' && u <= 'f')
        return u - 'a' + 10;
    if (u >= 'A' && u <= 'F')
        return u - 'A' + 10;
    return -1;
}

// An optional 0x prefix, then hex digits up to the first non-hex character;
// 0 when nothing scans. Saturates like the scanner it mirrors.
std::uint64_t scanHex(QStringView text) {
    if (text.size() >= 3 && text[0] == u'0' && (text[1] == u'x' || text[1] == u'X') &&
        hexDigitValue(text[2]) >= 0)
        text = text.mid(2);
    std::uint64_t value = 0;
    for (QChar c : text) {
        const int digit = hexDigitValue(c);
        if (digit < 0)
            break;
        value = value > (UINT64_MAX >> 4) ? UINT64_MAX : (value << 4) | std::uint64_t(digit);
    }
    return value;
}

long long truncatedByte(double component, const char* name) {
    const double product = component * 255.0;
    // 2^63 itself is out of range; -2^63 is in.
    if (!std::isfinite(product) || product >= 9223372036854775808.0 ||
        product < -9223372036854775808.0)
        qFatal("hexFromColor: %s component %g cannot be turned into a whole number", name,
               component);
    return static_cast<long long>(product);
}

// "%02X" takes its argument as a 32-bit unsigned value.
unsigned formatArgument(long long value) {
    return static_cast<unsigned>(static_cast<std::uint64_t>(value) & 0xFFFFFFFFu);
}

} // namespace

Color colorFromHex(QStringView text) {
    const QString trimmed = trimNonAlphanumeric(text);
    if (characterCount(trimmed) != 6)
        return Color{{1.0, 1.0, 1.0, 1.0}};
    const std::uint64_t value = scanHex(trimmed);
    return Color{{double((value >> 16) & 255) / 255.0, double((value >> 8) & 255) / 255.0,
                  double(value & 255) / 255.0, 1.0}};
}

QString hexFromColor(const Color& colour) {
    static const std::vector<double> white{1.0, 1.0, 1.0};
    const std::vector<double>& c = colour.components.empty() ? white : colour.components;
    const long long red = truncatedByte(c[0], "red");
    long long green = 0;
    long long blue = 0;
    if (c.size() > 1) {
        green = truncatedByte(c[1], "green");
        if (c.size() > 2)
            blue = truncatedByte(c[2], "blue");
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%02X%02X%02X", formatArgument(red), formatArgument(green),
                  formatArgument(blue));
    return QString::fromLatin1(buffer);
}
