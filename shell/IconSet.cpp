// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/IconSet.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace velmora {

namespace {

enum Part : char { None, Line, Solid, AccentLine, AccentSolid, RecordSolid };

/// One path of an icon, in the notation of SVG's path data.
struct Shape {
    Part part = None;
    const char* path = "";
};

struct Icon {
    std::string_view name;
    std::array<Shape, 4> shapes;
};

/// On a grid of 16 by 16, lines on quarter points. Sorted by name.
constexpr auto kIcons = std::to_array<Icon>({
    {"accidental", {{{Line, "M5.75 2.25v11.5M10.25 1.5v11.5M3.25 6.25l9.5-1.5M3.25 11l9.5-1.5"}}}},
    {"add", {{{Line, "M8 2.75v10.5M2.75 8h10.5"}}}},
    {"back", {{{Line, "M13.25 8h-10.5M7 3.5l-4.5 4.5 4.5 4.5"}}}},
    {"ballline",
     {{{Line, "M2 4.25h12M2 11.75h12"},
       {AccentSolid, "M4.5 7.1h9.5v1.8h-9.5z"},
       {AccentSolid, "M4.5 8m-2.4 0a2.4 2.4 0 1 0 4.8 0a2.4 2.4 0 1 0 -4.8 0z"}}}},
    {"blank", {{{Line, "M3.25 1.75h6l3.5 3.5v9h-9.5zM9 2v3.5h3.5"}}}},
    {"chevron", {{{Line, "M3.5 10.25l4.5-4.5 4.5 4.5"}}}},
    {"clear", {{{Line, "M3.25 1.75h6l3.5 3.5v9h-9.5z"}, {AccentLine, "M6 7.75l4 4M10 7.75l-4 4"}}}},
    {"close", {{{Line, "M3.5 3.5l9 9M12.5 3.5l-9 9"}}}},
    {"copy", {{{Line, "M5.75 5.75h8.5v8.5h-8.5z"}, {Line, "M10.25 3.75v-2h-8.5v8.5h2"}}}},
    {"cut",
     {{{Line, "M4 12m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {Line, "M12 12m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {Line, "M5.25 10.25l5.5-8.5M10.75 10.25l-5.5-8.5"}}}},
    {"disc",
     {{{Line, "M8 8m-6.25 0a6.25 6.25 0 1 0 12.5 0a6.25 6.25 0 1 0 -12.5 0z"},
       {Line, "M8 4.5a3.5 3.5 0 0 1 3.5 3.5M8 11.5a3.5 3.5 0 0 1-3.5-3.5"},
       {AccentSolid, "M8 8m-1.1 0a1.1 1.1 0 1 0 2.2 0a1.1 1.1 0 1 0 -2.2 0z"}}}},
    {"done", {{{AccentLine, "M2.5 8.5l3.5 3.75 7.5-8.5"}}}},
    {"down", {{{Line, "M8 2.75v10.5M3.5 9l4.5 4.5 4.5-4.5"}}}},
    {"drive", {{{Line, "M1.75 5.25h12.5v6h-12.5z"}, {AccentLine, "M10.5 8.25h1.25"}, {Line, "M4 8.25h3"}}}},
    {"duplicate",
     {{{Solid, "M1.5 9.5h3.25v4h-3.25z"},
       {AccentSolid, "M6.4 9.5h3.25v4h-3.25zM11.25 9.5h3.25v4h-3.25z"},
       {Line, "M3 6.5c1.5-4 8-4 10 0M13.25 3v3.75h-3.5"}}}},
    {"edit", {{{AccentLine, "M2.5 13.5l.85-3.35 7.4-7.4 2.5 2.5-7.4 7.4z"}, {Line, "M9.25 4.25l2.5 2.5"}}}},
    {"editor", {{{Line, "M1.75 13.75h12.5"}, {AccentLine, "M4 10.75l.75-2.75 5.75-5.75 2 2-5.75 5.75z"}}}},
    {"effects",
     {{{Line, "M5 12m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {Line, "M7 12v-10c0 2.5 3 2.5 3 5"},
       {AccentLine, "M13 9.5v4M11 11.5h4"}}}},
    {"encode",
     {{{Line, "M1.75 8h1.5l1.5-4 2 8 1.5-5.5 1 1.5h1"}, {AccentLine, "M11.25 8h3.25M12.75 6l2 2-2 2"}}}},
    {"folder", {{{Line, "M1.75 12.75v-9.5h4.5l1.5 2h6.5v7.5z"}}}},
    {"forward", {{{Line, "M2.75 8h10.5M9 3.5l4.5 4.5-4.5 4.5"}}}},
    {"glyphs",
     {{{Solid, "M4.5 12m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {Line, "M6.4 12v-9.5M11.9 10.5v-9.5"},
       {Solid, "M10 10.5m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {Line, "M6.4 2.75l5.5-1.5"}}}},
    {"help",
     {{{Line, "M8 8m-6.25 0a6.25 6.25 0 1 0 12.5 0a6.25 6.25 0 1 0 -12.5 0z"},
       {Line, "M6 6.25a2 2 0 1 1 2.9 1.8c-.6.35-.9.65-.9 1.35"},
       {Solid, "M8 11.6m-0.55 0a0.55 0.55 0 1 0 1.1 0a0.55 0.55 0 1 0 -1.1 0z"}}}},
    {"home",
     {{{Line, "M1.75 8l6.25-5.75 6.25 5.75"},
       {Line, "M3.75 7.25v6.5h8.5v-6.5"},
       {AccentLine, "M8 13.5v-3.25"}}}},
    {"insert",
     {{{Line, "M4.5 3.25h-2.25v11h11.5v-11h-2.25M5.25 1.75h5.5v3h-5.5z"},
       {AccentLine, "M8 6.75v5M5.75 9.5l2.25 2.25 2.25-2.25"}}}},
    {"keyboard",
     {{{Line, "M1.75 2.75h12.5v10.5h-12.5zM6 13v-4M10 13v-4"},
       {Solid, "M4.9 3h2.2v5.75h-2.2zM8.9 3h2.2v5.75h-2.2z"}}}},
    {"line",
     {{{Line, "M1.75 4.5h3.5M1.75 8h2M1.75 11.5h3.5M10.75 4.5h3.5M12.25 8h2M10.75 11.5h3.5"},
       {AccentLine, "M8 1.5v13"}}}},
    {"log",
     {{{Line, "M3.25 1.75h9.5v12.5h-9.5z"}, {AccentLine, "M5.75 5.25h4.5M5.75 8h4.5M5.75 10.75h2.5"}}}},
    {"loop",
     {{{Line, "M2.75 7.5a5.25 5.25 0 0 1 9.5-2.5M13.25 8.5a5.25 5.25 0 0 1-9.5 2.5"},
       {Line, "M12.75 1.75v3.5h-3.5M3.25 14.25v-3.5h3.5"}}}},
    {"maker",
     {{{AccentSolid, "M1.75 9.75h3v4h-3z"},
       {Line, "M7 13.5v-4h2.5v4zM11.75 13.5v-4h2.5v4z"},
       {Line, "M2 6.25h11M10.5 3.5l2.75 2.75-2.75 2.75"}}}},
    {"midi",
     {{{Line, "M3.25 1.75h6l3.5 3.5v9h-9.5z"},
       {AccentLine, "M5.5 7.75h5v4.25h-5z"},
       {AccentSolid, "M7.25 7.75h1.5v2.75h-1.5z"}}}},
    {"mixer",
     {{{Line, "M3.5 2v12M8 2v12M12.5 2v12"},
       {AccentSolid, "M1.75 9h3.5v2.5h-3.5zM6.25 4h3.5v2.5h-3.5zM10.75 7h3.5v2.5h-3.5z"}}}},
    {"mode",
     {{{Line, "M1.75 5v-3.25h3.25M11 1.75h3.25v3.25M1.75 11v3.25h3.25"},
       {AccentLine, "M6.25 13.75l.75-2.75 5.5-5.5 2 2-5.5 5.5z"}}}},
    {"more",
     {{{Solid, "M3 8m-1.5 0a1.5 1.5 0 1 0 3 0a1.5 1.5 0 1 0 -3 0zM8 8m-1.5 0a1.5 1.5 0 1 0 3 0a1.5 1.5 0 1 0 "
               "-3 0zM13 8m-1.5 0a1.5 1.5 0 1 0 3 0a1.5 1.5 0 1 0 -3 0z"}}}},
    {"music",
     {{{Line, "M8 8m-6.25 0a6.25 6.25 0 1 0 12.5 0a6.25 6.25 0 1 0 -12.5 0z"},
       {AccentSolid, "M6.75 10.25m-1.6 0a1.6 1.6 0 1 0 3.2 0a1.6 1.6 0 1 0 -3.2 0z"},
       {AccentLine, "M8 10v-5.5l2 1.5"}}}},
    {"newfolder", {{{Line, "M1.75 12.75v-9.5h4.5l1.5 2h6.5v7.5z"}, {AccentLine, "M8 7v4M6 9h4"}}}},
    {"nosound",
     {{{Line, "M1.75 6h2.5l3.5-3.25v10.5l-3.5-3.25h-2.5z"}, {AccentLine, "M10.75 6l3.75 4M14.5 6l-3.75 4"}}}},
    {"open", {{{Line, "M1.75 12.75v-9.5h4.5l1.5 2h5.5v2"}, {Line, "M1.75 12.75l2.25-5.5h10.5l-2.25 5.5z"}}}},
    {"overwrite",
     {{{Line, "M4.5 3.25h-2.25v11h11.5v-11h-2.25M5.25 1.75h5.5v3h-5.5z"}, {AccentSolid, "M5 7.75h6v4h-6z"}}}},
    {"pause", {{{Solid, "M4 3h2.75v10h-2.75zM9.25 3h2.75v10h-2.75z"}}}},
    {"percussion",
     {{{Line, "M2.25 6.5v5c0 1.25 2.5 2.25 5.75 2.25s5.75-1 5.75-2.25v-5"},
       {Line, "M2.25 6.5a5.75 2.25 0 1 0 11.5 0a5.75 2.25 0 1 0-11.5 0z"},
       {AccentLine, "M11 1.5l-3 4.5"}}}},
    {"play", {{{AccentSolid, "M4.5 2.5l9 5.5-9 5.5z"}}}},
    {"print",
     {{{Line, "M4.25 5.5v-3.75h7.5v3.75M4.25 11.25h-2.5v-5.75h12.5v5.75h-2.5"},
       {AccentLine, "M4.25 9.25h7.5v5h-7.5z"}}}},
    {"record", {{{RecordSolid, "M8 8m-5 0a5 5 0 1 0 10 0a5 5 0 1 0 -10 0z"}}}},
    {"redo", {{{Line, "M13.25 6.25h-7a3.75 3.75 0 0 0 0 7.5h3.5M10 2.75l3.5 3.5-3.5 3.5"}}}},
    {"remove", {{{Solid, "M3 7h10v2h-10z"}}}},
    {"reset", {{{Line, "M3.25 6a5.25 5.25 0 1 1-.4 3.5M3 2.5v3.75h3.75"}}}},
    {"rewind", {{{Line, "M3 3v10"}, {Solid, "M13 3l-7.5 5 7.5 5z"}}}},
    {"rewrite",
     {{{Line, "M1.75 4h12.5M1.75 7h12.5"},
       {AccentLine, "M3.5 11a4.5 2.75 0 1 0 3-2M6.75 7.75l-.75 1.5 1.5 1"}}}},
    {"save",
     {{{Line, "M2.25 2.25h9l2.5 2.5v9h-11.5z"},
       {Line, "M5.25 2.5v3.25h4.5v-3.25"},
       {AccentLine, "M4.75 13.5v-4.25h6.5v4.25"}}}},
    {"score",
     {{{Line, "M3.25 1.75h6l3.5 3.5v9h-9.5z"},
       {AccentSolid, "M7 11.5m-1.6 0a1.6 1.6 0 1 0 3.2 0a1.6 1.6 0 1 0 -3.2 0z"},
       {AccentLine, "M8.25 11.25v-5l1.75 1.5"}}}},
    {"segment",
     {{{Line, "M4 2.25h-2v11.5h2M12 2.25h2v11.5h-2"}, {AccentSolid, "M5.75 4.5l5.75 3.5-5.75 3.5z"}}}},
    {"setup",
     {{{Line, "M2 4.25h6.5M12.5 4.25h1.5M2 11.75h1.5M7.5 11.75h6.5"},
       {AccentLine, "M10.5 4.25m-1.9 0a1.9 1.9 0 1 0 3.8 0a1.9 1.9 0 1 0 -3.8 0z"},
       {AccentLine, "M5.5 11.75m-1.9 0a1.9 1.9 0 1 0 3.8 0a1.9 1.9 0 1 0 -3.8 0z"}}}},
    {"songwriter",
     {{{Line, "M1.75 3.5h12.5M1.75 6.5h12.5M1.75 9.5h12.5M1.75 12.5h12.5"},
       {AccentSolid, "M6.4 11.1m-2.1 0a2.1 2.1 0 1 0 4.2 0a2.1 2.1 0 1 0 -4.2 0z"},
       {AccentLine, "M8.3 11v-8.75"}}}},
    {"sound", {{{Line, "M3.25 1.75h6l3.5 3.5v9h-9.5z"}, {AccentLine, "M5.75 8.5v2M8 6.75v5.5M10.25 8v3"}}}},
    {"spaces",
     {{{Line, "M2 2.5v11M14 2.5v11"},
       {AccentLine, "M5 8h6M7 5.75l-2.25 2.25 2.25 2.25M9 5.75l2.25 2.25-2.25 2.25"}}}},
    {"static",
     {{{Line, "M1.75 6h2.25l3.25-3v10l-3.25-3h-2.25z"},
       {AccentLine, "M10 5.75a3.25 3.25 0 0 1 0 4.5M12 3.75a6 6 0 0 1 0 8.5"}}}},
    {"stop", {{{Solid, "M3.5 3.5h9v9h-9z"}}}},
    {"strip", {{{Line, "M1.75 3.25h12.5v9.5h-12.5zM1.75 6.5h12.5"}, {AccentLine, "M4.25 9.5h2M8 9.5h3.75"}}}},
    {"studio",
     {{{Line, "M8 8m-6.1 0a6.1 6.1 0 1 0 12.2 0a6.1 6.1 0 1 0 -12.2 0z"},
       {RecordSolid, "M8 8m-3 0a3 3 0 1 0 6 0a3 3 0 1 0 -6 0z"}}}},
    {"tutorial",
     {{{Line, "M8 4v10M8 4c-1.5-1.5-4-1.75-6.25-1.75v9.75c2.25 0 4.75.5 6.25 2M8 4c1.5-1.5 4-1.75 "
              "6.25-1.75v9.75c-2.25 0-4.75.5-6.25 2"}}}},
    {"undo", {{{Line, "M2.75 6.25h7a3.75 3.75 0 0 1 0 7.5h-3.5M6 2.75l-3.5 3.5 3.5 3.5"}}}},
    {"unfold", {{{Line, "M3.5 5.75l4.5 4.5 4.5-4.5"}}}},
    {"up", {{{Line, "M8 13.25v-10.5M3.5 7l4.5-4.5 4.5 4.5"}}}},
    {"write",
     {{{Line, "M1.75 4h12.5M1.75 7h6M1.75 10h5"},
       {AccentLine, "M7.75 13.5l.6-2.4 4.6-4.6 1.8 1.8-4.6 4.6z"}}}},
});
static_assert(kIcons.size() == 65);
static_assert(std::ranges::is_sorted(kIcons, {}, &Icon::name));

QByteArray paintOf(Part part, const IconColours& colours) {
    const auto line = [](const QColor& colour) {
        return "fill=\"none\" stroke=\"" + colour.name().toLatin1() + '"';
    };
    const auto solid = [](const QColor& colour) { return "fill=\"" + colour.name().toLatin1() + '"'; };
    switch (part) {
    case Line:
        return line(colours.ink);
    case Solid:
        return solid(colours.ink);
    case AccentLine:
        return line(colours.accent);
    case AccentSolid:
        return solid(colours.accent);
    default:
        return solid(colours.record);
    }
}

/// The icon as a document of its own.
QByteArray documentOf(const Icon& icon, const IconColours& colours) {
    QByteArray text =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 16 16\"><g stroke-width=\"1.5\" "
        "stroke-linecap=\"round\" stroke-linejoin=\"round\">";
    for (const Shape& shape : icon.shapes)
        if (shape.part != None)
            text += "<path d=\"" + QByteArray(shape.path) + "\" " + paintOf(shape.part, colours) + "/>";
    return text + "</g></svg>";
}

const Icon* find(std::string_view name) {
    const auto* const found = std::ranges::lower_bound(kIcons, name, {}, &Icon::name);
    return found != kIcons.end() && found->name == name ? &*found : nullptr;
}

} // namespace

std::vector<std::string_view> iconNames() {
    std::vector<std::string_view> names;
    std::ranges::transform(kIcons, std::back_inserter(names), &Icon::name);
    return names;
}

QPixmap iconPixmap(std::string_view name, const IconColours& colours, int size, qreal scale) {
    const Icon* icon = find(name);
    if (!icon)
        return {};
    const QString key = QStringLiteral("icon/%1/%2/%3/%4/%5/%6")
                            .arg(QLatin1String(name.data(), static_cast<int>(name.size())),
                                 colours.ink.name(), colours.accent.name(), colours.record.name())
                            .arg(size)
                            .arg(scale);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap(QSizeF(size * scale, size * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(documentOf(*icon, colours)).render(&painter, QRectF(0, 0, size, size));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

void paintIcon(QPainter& painter, QPointF topLeft, std::string_view name, const IconColours& colours,
               int size) {
    // Where the pixels of the picture fall between those of the device, it would be blurred.
    const qreal scale = painter.device()->devicePixelRatio();
    const QPointF aligned(std::round(topLeft.x() * scale) / scale, std::round(topLeft.y() * scale) / scale);
    painter.drawPixmap(aligned, iconPixmap(name, colours, size, scale));
}

} // namespace velmora
