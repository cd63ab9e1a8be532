// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Dialogs.h"

#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace velmora {

/// Dialogs that answer what was laid down beforehand, and a cancel once that is used up.
class ScriptedDialogs : public clsDialog {
public:
    struct Asked {
        std::string kind;
        std::string title;
        std::string filters;
        std::string start;
        bool operator==(const Asked&) const = default;
    };

    ChosenFile OpenDialog(std::string_view title, std::string_view filters, std::string_view start) override {
        return answer("open", title, filters, start);
    }
    ChosenFile SaveDialog(std::string_view title, std::string_view filters, std::string_view start) override {
        return answer("save", title, filters, start);
    }
    ChosenFile SaveDialog1(std::string_view title, std::string_view filters, std::string_view start,
                           std::string_view extension) override {
        return answer("save" + std::string(extension), title, filters, start);
    }

    std::deque<ChosenFile> answers;
    std::vector<Asked> asked;

private:
    ChosenFile answer(std::string kind, std::string_view title, std::string_view filters,
                      std::string_view start) {
        asked.push_back({std::move(kind), std::string(title), std::string(filters), std::string(start)});
        if (answers.empty())
            return {};
        ChosenFile chosen = answers.front();
        answers.pop_front();
        return chosen;
    }
};

inline std::ostream& operator<<(std::ostream& out, const ScriptedDialogs::Asked& asked) {
    return out << asked.kind << " \"" << asked.title << "\" \"" << asked.filters << "\" in \"" << asked.start
               << '"';
}

} // namespace velmora
