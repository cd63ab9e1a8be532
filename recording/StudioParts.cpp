// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/StudioParts.h"

#include "base/DialogNames.h"
#include "base/QtText.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"

#include <QComboBox>
#include <QLabel>

#include <filesystem>

namespace velmora {

QComboBox* addList(QWidget& parent, Desk& desk, const ListRow& row) {
    auto* list = new QComboBox(&parent);
    list->setObjectName(row.name);
    list->setGeometry(row.place);
    if (*row.words) {
        auto* words = new QLabel(row.words, &parent);
        words->setFont(textFont(10));
        words->setForegroundRole(QPalette::PlaceholderText);
        words->setGeometry(row.place.x(), row.place.y() - 17, row.place.width(), 14);
        words->setBuddy(list);
    } else {
        list->setAccessibleName(row.tip);
    }
    desk.tips.SetToolTip(*list, {row.tip, row.text, ""});
    return list;
}

Tip loudnessTip() {
    return {"Loudness",
            "Its highest sample, where 0 dB is full scale, and how loud it is heard. "
            "What others publish has about -14 LUFS",
            ""};
}

QString fileName(const std::string& path) {
    return textOfBytes(std::filesystem::path(path).filename().string());
}

void showText(QLabel& label, const std::string& text) {
    if (const QString shown = toQString(text); label.text() != shown)
        label.setText(shown);
}

} // namespace velmora
