// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QTreeWidget>

#include <cstddef>
#include <optional>

namespace velmora {

class CdTracks;
struct Appearance;

/// The tracks of a disc as a report: number, file, format, length.
class CdTrackList : public QTreeWidget {
public:
    /// @param look is read at each painting and must outlive the list
    CdTrackList(const Appearance& look, QWidget* parent);

    /// Shows the tracks, with that one chosen.
    void show(const CdTracks& tracks, std::optional<std::size_t> chosen);
    [[nodiscard]] std::optional<std::size_t> chosen() const;
    /// The track that is written, in bold.
    void setAtWork(std::optional<std::size_t> track);

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;

private:
    class Header;

    const Appearance& look_;
    std::optional<std::size_t> atWork_;
};

} // namespace velmora
