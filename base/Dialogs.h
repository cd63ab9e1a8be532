// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One line of a file dialog's list of types.
struct FileFilter {
    std::string label;
    std::string pattern;
    bool operator==(const FileFilter&) const = default;
};

/// Takes a filter text such as "Score Files (*.sng) |*.sng|" apart. Labels keep their blanks; a label without
/// a pattern, and what follows a blank label, is no filter.
[[nodiscard]] std::vector<FileFilter> splitFilters(std::string_view filterText);

/// A file name as it comes from a dialog, without the blanks around it and without a final NUL.
[[nodiscard]] std::string tidyFileName(std::string_view name);
/// The name with @p extension (".sng", in lower case) appended, unless it ends in it in any case.
[[nodiscard]] std::string withExtension(std::string name, std::string_view extension);

struct ChosenFile {
    std::string path;    // blank: cancelled
    int filterIndex = 0; // from 1, in the order of the filter text; 0 if none was chosen
};

/// The plain file dialogs.
class clsDialog {
public:
    virtual ~clsDialog() = default;

    virtual ChosenFile OpenDialog(std::string_view title, std::string_view filterText,
                                  std::string_view startFolder) = 0;
    virtual ChosenFile SaveDialog(std::string_view title, std::string_view filterText,
                                  std::string_view startFolder) = 0;
    /// As `SaveDialog`; a name without an extension gets the caller's.
    virtual ChosenFile SaveDialog1(std::string_view title, std::string_view filterText,
                                   std::string_view startFolder, std::string_view extension) = 0;
};

/// What the full dialogs start with and what the user has changed in them.
struct CDLGProperties {
    std::string title;
    std::string fileName;
    std::string filterText;
    int filterIndex = 1; // from 1
    std::uint32_t flags = 0;
    std::string initialFolder;
    std::string defaultExtension;
    bool errorOnCancel = false;

    std::uint32_t colour = 0; // 0xRRGGBB, as are the custom colours
    std::array<std::uint32_t, 16> customColours{};

    std::string fontName;
    float fontSize = 0; // points
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeThrough = false;

    std::string DeviceName;
    int Copies = 1;
    int Orientation = 1; // 1 portrait, 2 landscape
    int PaperSize = 0;
    int PrintQuality = 0; // dots per inch
};

/// How a full dialog ended.
struct DialogEnd {
    bool accepted = false;
    std::string
        error; // why not: blank after a plain cancel, words after a failure or where a cancel is an error
};

/// Told to the dialog's owner while it is open.
class CDLGEvents {
public:
    virtual ~CDLGEvents() = default;

    virtual void InitDialog() {}
    virtual void DialogClose() {}
    virtual void FileChange(const std::string& /*path*/) {}
    virtual void FolderChange(const std::string& /*folder*/) {}
    virtual void ConfirmOK() {}
    virtual void TypeChange(int /*filterIndex*/) {}
};

/// The full dialogs. Each reads the properties it knows and, if accepted, writes back what was chosen. A
/// cancel leaves a blank file name and everything else as it was.
class CDLG {
public:
    virtual ~CDLG() = default;

    virtual DialogEnd ShowOpen(CDLGProperties& properties, CDLGEvents& owner) = 0;
    virtual DialogEnd ShowSave(CDLGProperties& properties, CDLGEvents& owner) = 0;
    virtual DialogEnd ShowColor(CDLGProperties& properties, CDLGEvents& owner) = 0;
    virtual DialogEnd ShowFont(CDLGProperties& properties, CDLGEvents& owner) = 0;
    virtual DialogEnd ShowPrinter(CDLGProperties& properties, CDLGEvents& owner) = 0;
    virtual DialogEnd ShowHelp(CDLGProperties& properties, CDLGEvents& owner) = 0;
};

} // namespace velmora
