#include "SymbolPath.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>

namespace {

// A cursor over path data: numbers in SVG's compact form, where "-" or a second "."
// starts the next number ("1.5.5-2" is 1.5, .5, -2).
class PathData {
public:
    explicit PathData(std::string_view text) : text(text) {}

    std::optional<char> command() {
        skipSeparators();
        if (at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])))
            return text[at++];
        return std::nullopt;
    }

    bool hasNumber() {
        skipSeparators();
        if (at >= text.size())
            return false;
        const char c = text[at];
        return std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '+';
    }

    std::optional<double> number() {
        if (!hasNumber())
            return std::nullopt;
        std::size_t end = at;
        if (text[end] == '-' || text[end] == '+')
            ++end;
        bool dot = false;
        bool exponent = false;
        for (; end < text.size(); ++end) {
            const char c = text[end];
            if (std::isdigit(static_cast<unsigned char>(c)))
                continue;
            if (c == '.' && !dot && !exponent) {
                dot = true;
                continue;
            }
            if ((c == 'e' || c == 'E') && !exponent) {
                exponent = true;
                if (end + 1 < text.size() && (text[end + 1] == '-' || text[end + 1] == '+'))
                    ++end;
                continue;
            }
            break;
        }
        const std::string digits(text.substr(at, end - at));
        char* parsedEnd = nullptr;
        const double value = std::strtod(digits.c_str(), &parsedEnd);
        if (parsedEnd != digits.c_str() + digits.size() || !std::isfinite(value))
            return std::nullopt;
        at = end;
        return value;
    }

private:
    void skipSeparators() {
        while (at < text.size() &&
               (std::isspace(static_cast<unsigned char>(text[at])) || text[at] == ','))
            ++at;
    }

    std::string_view text;
    std::size_t at = 0;
};

// SVG's endpoint arc (radii, flags, end point) as Qt's centre arc, which Qt turns into
// curves; radii too small to reach the end point grow until they do.
void arcTo(QPainterPath& path, QPointF to, double rx, double ry, bool large, bool sweep) {
    const QPointF from = path.currentPosition();
    rx = std::abs(rx);
    ry = std::abs(ry);
    if (from == to)
        return;
    if (rx == 0.0 || ry == 0.0) {
        path.lineTo(to);
        return;
    }
    const double x1 = (from.x() - to.x()) / 2.0;
    const double y1 = (from.y() - to.y()) / 2.0;
    const double reach = (x1 * x1) / (rx * rx) + (y1 * y1) / (ry * ry);
    if (reach > 1.0) {
        rx *= std::sqrt(reach);
        ry *= std::sqrt(reach);
    }
    const double numerator = rx * rx * ry * ry - rx * rx * y1 * y1 - ry * ry * x1 * x1;
    const double denominator = rx * rx * y1 * y1 + ry * ry * x1 * x1;
    double factor = std::sqrt(std::max(0.0, numerator / denominator));
    if (large == sweep)
        factor = -factor;
    const double cx1 = factor * rx * y1 / ry;
    const double cy1 = -factor * ry * x1 / rx;
    const QPointF centre(cx1 + (from.x() + to.x()) / 2.0, cy1 + (from.y() + to.y()) / 2.0);

    const auto angle = [](double x, double y) {
        return std::atan2(y, x) * 180.0 / std::numbers::pi;
    };
    const double start = angle((x1 - cx1) / rx, (y1 - cy1) / ry);
    double span = angle((-x1 - cx1) / rx, (-y1 - cy1) / ry) - start;
    if (sweep && span < 0.0)
        span += 360.0;
    if (!sweep && span > 0.0)
        span -= 360.0;
    // SVG's angles turn towards +y, down the screen; Qt's turn up it.
    path.arcTo(QRectF(centre.x() - rx, centre.y() - ry, 2.0 * rx, 2.0 * ry), -start, -span);
}

void addPathData(QPainterPath& path, std::string_view d) {
    PathData data(d);
    QPointF lastControl; // the second control point of the last cubic, for S and s
    char previous = 0;
    while (const auto letter = data.command()) {
        const char command = *letter;
        const bool relative = std::islower(static_cast<unsigned char>(command));
        const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(command)));
        if (kind == 'Z') {
            path.closeSubpath(); // which moves back to the subpath's start
            previous = kind;
            continue;
        }
        // Each command repeats while numbers follow it; after a move, as lines.
        bool first = true;
        do {
            const QPointF origin = relative ? path.currentPosition() : QPointF();
            const auto point = [&data, &origin]() -> std::optional<QPointF> {
                const auto x = data.number();
                const auto y = data.number();
                if (!x || !y)
                    return std::nullopt;
                return origin + QPointF(*x, *y);
            };
            if (kind == 'M' || kind == 'L') {
                const auto to = point();
                if (!to)
                    return;
                if (kind == 'M' && first)
                    path.moveTo(*to);
                else
                    path.lineTo(*to);
            } else if (kind == 'H' || kind == 'V') {
                const auto value = data.number();
                if (!value)
                    return;
                QPointF to = path.currentPosition();
                (kind == 'H' ? to.rx() : to.ry()) =
                    *value + (kind == 'H' ? origin.x() : origin.y());
                path.lineTo(to);
            } else if (kind == 'C' || kind == 'S') {
                QPointF control1 = path.currentPosition();
                if (kind == 'C') {
                    const auto c1 = point();
                    if (!c1)
                        return;
                    control1 = *c1;
                } else if (previous == 'C' || previous == 'S') {
                    control1 = 2.0 * path.currentPosition() - lastControl;
                }
                const auto control2 = point();
                const auto to = control2 ? point() : std::nullopt;
                if (!to)
                    return;
                path.cubicTo(control1, *control2, *to);
                lastControl = *control2;
            } else if (kind == 'A') {
                const auto rx = data.number();
                const auto ry = data.number();
                const auto rotation = data.number();
                const auto large = data.number();
                const auto sweep = data.number();
                const auto to = rotation && large && sweep ? point() : std::nullopt;
                if (!rx || !ry || !to)
                    return;
                arcTo(path, *to, *rx, *ry, *large != 0.0, *sweep != 0.0);
            } else {
                return; // a command the icons do not use: the rest cannot be read
            }
            previous = kind;
            first = false;
        } while (data.hasNumber());
    }
}

// The value of `name="..."` in one element's text, or nullopt.
std::optional<std::string_view> attribute(std::string_view element, std::string_view name) {
    for (std::size_t at = element.find(name); at != std::string_view::npos;
         at = element.find(name, at + 1)) {
        const bool starts = at > 0 && std::isspace(static_cast<unsigned char>(element[at - 1]));
        const std::string_view rest = element.substr(at + name.size());
        if (!starts || !rest.starts_with("=\""))
            continue;
        const std::size_t close = rest.find('"', 2);
        if (close == std::string_view::npos)
            return std::nullopt;
        return rest.substr(2, close - 2);
    }
    return std::nullopt;
}

double numberAttribute(std::string_view element, std::string_view name) {
    const auto text = attribute(element, name);
    if (!text)
        return 0.0;
    PathData data(*text);
    return data.number().value_or(0.0);
}

} // namespace

QPainterPath symbolPath(QByteArrayView svg) {
    const std::string_view text(svg.data(), static_cast<std::size_t>(svg.size()));
    QPainterPath path;
    for (std::size_t open = text.find('<'); open != std::string_view::npos;
         open = text.find('<', open + 1)) {
        const std::size_t close = text.find('>', open);
        if (close == std::string_view::npos)
            break;
        const std::string_view element = text.substr(open + 1, close - open - 1);
        const std::string_view tag = element.substr(0, element.find_first_of(" \t\r\n/"));
        const auto number = [element](std::string_view name) {
            return numberAttribute(element, name);
        };
        if (tag == "path") {
            // Each path starts from the origin, not where the one before ended.
            QPainterPath own;
            if (const auto d = attribute(element, "d"))
                addPathData(own, *d);
            path.addPath(own);
        } else if (tag == "circle") {
            path.addEllipse(QPointF(number("cx"), number("cy")), number("r"), number("r"));
        } else if (tag == "rect") {
            const double rx = number("rx");
            const double ry = attribute(element, "ry") ? number("ry") : rx;
            path.addRoundedRect(QRectF(number("x"), number("y"), number("width"), number("height")),
                                rx, ry);
        } else if (tag == "line") {
            path.moveTo(number("x1"), number("y1"));
            path.lineTo(number("x2"), number("y2"));
        }
    }
    return path;
}
