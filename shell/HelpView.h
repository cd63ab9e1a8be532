// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/HelpLibrary.h"

#include <QWidget>

#include <vector>

class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;

namespace velmora {

/// The help pages, to be framed by a window. It opens with the first page shown.
///
// clang-format off
///   control         what the user sees                       what it does
///   txtHelpSearch   field "Search help" at the upper left    lists the pages that have the words; Esc clears it
///   lstHelpPages    the pages, or what the search found      shows the page
///   btnHelpBack     "Back"                                   the page before, where it was left (Alt+Left)
///   btnHelpForward  "Forward"                                the page one came back from (Alt+Right)
///   btnHelpHome     "Home"                                   the first page (Alt+Home)
///   txtHelpPage     the page                                 links lead to other pages, and nowhere else
// clang-format on
class HelpView : public QWidget {
public:
    explicit HelpView(HelpLibrary library, QWidget* parent = nullptr);

    /// Shows the page of that name ("composing-window"), or the first page and false if there is none.
    bool showPage(const QString& name);
    /// The name of the page that is shown; blank where there are no pages.
    [[nodiscard]] QString page() const;

    void goBack();
    void goForward();
    void goHome();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// A page that was visited, and how far down it was left.
    struct Visit {
        QString name;
        int scroll = 0;
    };

    void build();
    void connectControls();
    void connectKeys();
    void listPages();
    void visit(int index);
    void showVisited();
    void showMissing();
    void markShownPage();
    void followLink(const QString& target);
    bool searchKey(int key);

    HelpLibrary library_;
    std::vector<Visit> visits_;
    int visited_ = -1; ///< index of the page that is shown; -1 for none

    QLineEdit* search_;
    QListWidget* list_;
    QPushButton* back_;
    QPushButton* forward_;
    QPushButton* home_;
    QTextBrowser* text_;
};

} // namespace velmora
