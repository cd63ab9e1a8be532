// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Text.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/ScoreOptions.h"
#include "cli/Words.h"
#include "studio/DiscImage.h"
#include "studio/cAudio.h"

#include <QCommandLineParser>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kNoBurner = "No CD Burner Hardware was found on your computer";

std::vector<CdDrive> burners(cAudio& audio) {
    std::vector<CdDrive> drives = audio.drives();
    std::erase_if(drives, [](const CdDrive& drive) { return drive.isImage; });
    if (drives.empty())
        throw Failure(kNoBurner);
    return drives;
}

int list() {
    cAudio audio;
    for (const CdDrive& drive : burners(audio)) {
        std::string line = drive.name + ":";
        for (const std::string& speed : drive.speedTexts())
            line += (speed == drive.speedTexts().front() ? " " : ", ") + speed;
        std::puts(line.c_str());
    }
    return 0;
}

/// What becomes of the work when the user presses Ctrl-C: it is told to end, whatever it does then.
class CancelWatch {
public:
    CancelWatch()
        : thread_([this](const std::stop_token& end) {
            while (!end.stop_requested()) {
                if (interrupted())
                    cancel_.request_stop();
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        }) {}
    [[nodiscard]] std::stop_token token() const { return cancel_.get_token(); }

private:
    std::stop_source cancel_;
    std::jthread thread_;
};

CdTracks tracksOf(const std::vector<fs::path>& files) {
    if (files.size() > kMostTracks)
        throw Failure(std::string(kTooManyTracks));
    CdTracks tracks;
    std::string refused;
    for (const fs::path& file : files) {
        if (const std::string problem = tracks.add(file); !problem.empty())
            refused += (refused.empty() ? "" : "\nvelmora-cli: ") + problem;
    }
    if (!refused.empty())
        throw Failure(refused);
    return tracks;
}

void print(const CdTracks& tracks) {
    int number = 0;
    for (const CdTrack& track : tracks.list())
        std::printf("%02d %s %s\n", ++number, discTime(track.sectors).c_str(), track.file.filename().c_str());
    std::printf("Total %s\n", discTime(tracks.sectors()).c_str());
    std::fflush(stdout);
}

void burnImage(const CdTracks& tracks, const fs::path& cue) {
    const CancelWatch cancel;
    ProgressBar bar(cue.filename().string());
    const SectorOutcome outcome = writeImage(
        tracks, cue, [&bar](std::size_t /*track*/, double /*share*/, double total) { bar.show(total); },
        cancel.token());
    if (outcome.end == SectorOutcome::End::Cancelled)
        throw Failure("Writing \"" + cue.string() + "\" was cancelled; what was there before still is.");
    if (outcome.end != SectorOutcome::End::Done)
        throw Failure(outcome.error);
}

/// One bar for each thing that the drive does.
class BurnBars : public BurnEvents {
public:
    void CacheProgress(double /*track*/, double total) override { show("Caching", total); }
    void WriteProgress(double /*track*/, double total) override { show("Writing", total); }
    void Comparing(double share) override { show("Comparing", share); }

private:
    void show(const char* what, double share) {
        if (what_ != what) {
            bar_.reset();
            bar_.emplace(what);
            what_ = what;
        }
        bar_->show(share);
    }
    std::string what_;
    std::optional<ProgressBar> bar_;
};

const CdDrive& driveOf(const std::vector<CdDrive>& drives, const std::string& name) {
    const auto isIt = [&name](const CdDrive& drive) { return drive.name == name || drive.address == name; };
    const auto found = std::ranges::find_if(drives, isIt);
    if (found != drives.end())
        return *found;
    std::string known;
    for (const CdDrive& drive : drives)
        known += (known.empty() ? "\"" : ", \"") + drive.name + "\"";
    throw Failure("There is no burner \"" + name + "\"; there is " + known + ".");
}

/// The row of `speedTexts` that is meant by "max", a factor ("16" or "16x") or the row's own text.
std::size_t speedRow(const CdDrive& drive, const std::string& asked) {
    const std::string text = toLower(asked);
    if (text == "max" || text == "max.")
        return 0;
    const std::string digits = text.ends_with('x') ? text.substr(0, text.size() - 1) : text;
    const std::vector<std::string> rows = drive.speedTexts();
    for (std::size_t row = 1; row < rows.size(); ++row)
        if (rows[row].ends_with("(" + digits + "x)") || toLower(rows[row]) == text)
            return row;
    std::string known;
    for (const std::string& row : rows)
        known += (known.empty() ? "" : ", ") + row;
    throw Failure(drive.name + " doesn't write at speed " + asked + "; it has " + known + ".");
}

void burnTo(const std::string& device, const QString& speed, const CdTracks& tracks) {
    cAudio audio;
    const std::vector<CdDrive> drives = burners(audio);
    const CdDrive& drive = driveOf(drives, device);
    const std::size_t row = speedRow(drive, toBytes(speed));
    if (!audio.setSpeed(drive, row))
        throw Failure(drive.name + ": Could not set writing speed.");
    BurnOutcome outcome;
    {
        const CancelWatch cancel;
        BurnBars bars;
        outcome = audio.burn(drive, tracks, {}, bars, cancel.token());
    }
    if (outcome.cancelled)
        throw Failure("Burning was cancelled." + (outcome.detail.empty() ? "" : " " + outcome.detail));
    if (outcome.code != BurnCode::Finished)
        throw Failure(std::string(burnText(outcome.code)) + " " + outcome.detail);
}

void checkWords(const QCommandLineParser& parser, const std::vector<fs::path>& files) {
    const bool image = parser.isSet("image");
    const bool device = parser.isSet("device");
    if (parser.isSet("list")) {
        if (!files.empty() || image || device || parser.isSet("speed") || parser.isSet("dry-run"))
            throw UsageError("--list stands alone");
        return;
    }
    if (files.empty())
        throw UsageError("takes at least one sound file");
    if (image && device)
        throw UsageError("writes to --image or to --device, not to both");
    if (!image && !device && !parser.isSet("dry-run"))
        throw UsageError("--image or --device is wanted");
    if (parser.isSet("speed") && !device)
        throw UsageError("--speed is for --device");
    if (image && toLower(fs::path(toBytes(parser.value("image"))).extension().string()) != ".cue")
        throw UsageError("--image takes a name that ends in .cue");
    const std::string speed = toLower(toBytes(parser.value("speed")));
    if (parser.isSet("speed") && speed != "max" && speed != "max." &&
        (speed.empty() || speed.front() < '1' || speed.front() > '9'))
        throw UsageError("--speed takes \"max\" or a factor such as 16");
}

int run(const QCommandLineParser& parser) {
    const auto files = fileArguments(parser);
    checkWords(parser, files);
    catchInterrupts();
    if (parser.isSet("list"))
        return list();
    const CdTracks tracks = tracksOf(files);
    print(tracks);
    const std::int64_t sectors = tracks.sectors();
    if (sectors > kLongestDisc)
        throw Failure("The tracks are " + discTime(sectors - kLongestDisc) + " too long for any disc.");
    if (sectors > kDiscOf80Minutes) {
        const std::string tooLong =
            "The tracks are " + discTime(sectors - kDiscOf80Minutes) + " too long for a disc of 80 minutes.";
        if (parser.isSet("device"))
            throw Failure(tooLong);
        std::fprintf(stderr, "velmora-cli: %s\n", tooLong.c_str());
    }
    if (parser.isSet("dry-run"))
        return 0;
    if (parser.isSet("image"))
        burnImage(tracks, toBytes(parser.value("image")));
    else
        burnTo(toBytes(parser.value("device")), parser.isSet("speed") ? parser.value("speed") : "max",
               tracks);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {"image", "Writes the disc as an image: this CUE file, and a BIN file beside it.", "out.cue"},
        {"device", "Burns in the drive of that name, as --list shows it.", "name"},
        {"speed", "Writing speed: max (default) or a factor of the list, such as 16.", "x"},
        {"dry-run", "Tells the tracks and their lengths, and writes nothing."},
        {"list", "Lists the burners and their speeds."},
    });
}

} // namespace

const Command kBurn{"burn", " FILE... (--image OUT.cue | --device NAME) | --list",
                    "Writes sound files as the tracks of an audio CD, or of an image of one.", addOptions,
                    run};

} // namespace velmora::cli
