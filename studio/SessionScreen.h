// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace velmora {

/// What the Recording Studio's rooms ask of who shows them; every request may be left unanswered.
class SessionScreen {
public:
    virtual ~SessionScreen() = default;

    /// The `SessionState` has changed.
    virtual void sessionChanged() {}
    /// A text of the message box, as it comes.
    virtual void said(const std::string& /*text*/) {}
    /// For what can't be overlooked: a message box.
    virtual void tell(const std::string& /*title*/, const std::string& /*text*/) {}
    /// Yes or no, with the question icon.
    virtual bool ask(const std::string& /*question*/) { return false; }
    /// A file to open or to save to; blank if the user cancels.
    virtual std::filesystem::path askOpen(const std::string& /*title*/, const std::string& /*filter*/) {
        return {};
    }
    virtual std::filesystem::path askSave(const std::string& /*title*/, const std::string& /*filter*/,
                                          const std::string& /*proposed*/) {
        return {};
    }
    /// The keyboard's window is wanted.
    virtual void showKeyboard() {}
    /// A score is to be opened in the composing window.
    virtual void openScore(const std::filesystem::path& /*file*/) {}
};

} // namespace velmora
