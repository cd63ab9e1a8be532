// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryOffer.h"

#include "base/QtText.h"

#include <QFileInfo>
#include <QLocale>

namespace velmora {

namespace {
std::string nameOf(const std::filesystem::path& file) {
    return '"' + file.filename().string() + '"';
}

std::string question(const LeftScore& left, const std::filesystem::path& named) {
    const std::string what =
        left.currentFile.empty() ? "A score that was never saved" : "The score " + nameOf(left.currentFile);
    const QDateTime when = QFileInfo(toQString(left.file.string())).lastModified();
    std::string text = "Velmora was not ended properly. " + what + " can be brought back as it was on " +
                       QLocale::c().toString(when, "d MMMM yyyy 'at' HH:mm").toStdString() +
                       ".\n\nDo you want it back? ";
    if (!named.empty() && named != left.currentFile)
        text += "With Yes, " + nameOf(named) + " is not opened now. ";
    return text + "No removes it for good; Esc asks again at the next start.";
}
} // namespace

std::optional<LeftScore>
offerRecovery(RecoveryFile& recovery, const std::filesystem::path& named,
              const std::function<RecoveryAnswer(const std::string& question)>& ask) {
    for (const LeftScore& left : recovery.left()) {
        switch (ask(question(left, named))) {
        case RecoveryAnswer::BringBack:
            recovery.adopt(left);
            return left;
        case RecoveryAnswer::Drop:
            recovery.drop(left);
            break;
        case RecoveryAnswer::Later:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace velmora
