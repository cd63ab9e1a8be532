// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/RecoveryOffer.h"

#include "base/QtText.h"
#include "composition/RecoveryFile.h"
#include "shell/MessageBox.h"
#include "tableau/form1.h"

#include <QFileInfo>
#include <QLocale>

namespace velmora {

namespace {
QString nameOf(const std::filesystem::path& file) {
    return '"' + toQString(file.filename().string()) + '"';
}

QString question(const LeftScore& left, const std::filesystem::path& named) {
    const QString what = left.currentFile.empty() ? QStringLiteral("A score that was never saved")
                                                  : "The score " + nameOf(left.currentFile);
    const QDateTime when = QFileInfo(toQString(left.file.string())).lastModified();
    QString text = "Velmora was not ended properly. " + what + " can be brought back as it was on " +
                   QLocale::c().toString(when, "d MMMM yyyy 'at' HH:mm") + ".\n\nDo you want it back? ";
    if (!named.empty() && named != left.currentFile)
        text += "With Yes, " + nameOf(named) + " is not opened now. ";
    return text + "No removes it for good; Esc asks again at the next start.";
}
} // namespace

bool offerRecovery(frmskins& skins, form1& window, RecoveryFile& recovery,
                   const std::filesystem::path& named) {
    for (const LeftScore& left : recovery.left()) {
        switch (askYesNo(skins, &window, question(left, named))) {
        case Answer::Yes:
            recovery.adopt(left);
            window.bringBack(left);
            return true;
        case Answer::No:
            recovery.drop(left);
            break;
        case Answer::None:
            return false;
        }
    }
    return false;
}

} // namespace velmora
