// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

class QPalette;
class QTextDocument;

namespace velmora {

/// Fills the document with a page of help.
void loadHelpPage(QTextDocument& document, const QString& markdown);
/// Sizes of headings, spacing, and the palette's colours of links and rules; again after each change of the
/// palette or the font.
void styleHelpPage(QTextDocument& document, const QPalette& palette);

} // namespace velmora
