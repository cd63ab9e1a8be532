// SPDX-License-Identifier: GPL-2.0-or-later
// What the window sends for a hand's presses is what the companion lists for the same script.
#include "SynthFixture.h"
#include "keyboard/KeyboardControls.h"

#include <QCheckBox>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryFile>

#include <array>
#include <cstdlib>
#include <random>
#include <sstream>

namespace velmora {
namespace {

/// A message with its moment, rounded as the companion writes it; a reset is all ones.
struct Line {
    long microseconds;
    std::uint32_t word;
    bool operator==(const Line&) const = default;
    auto operator<=>(const Line&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Line& line) {
    return out << line.microseconds << " us " << std::hex << line.word << std::dec;
}

std::vector<Line> performed(const std::string& script) {
    QTemporaryFile file;
    file.open();
    file.write(QByteArray::fromStdString(script));
    file.close();
    QProcess companion;
    companion.start(VELMORA_CLI, {"perform", file.fileName()});
    if (!companion.waitForFinished() || companion.exitCode() != 0)
        ADD_FAILURE() << companion.readAllStandardError().toStdString();
    std::vector<Line> lines;
    for (const QByteArray& text : companion.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> words = text.split(' ');
        if (words.size() != 2)
            continue;
        const std::uint32_t word = words[1] == "reset" ? RecordingPort::kReset : words[1].toUInt(nullptr, 16);
        lines.push_back({std::lround(words[0].toDouble() * 1e6), word});
    }
    return lines;
}

/// A press of a hand: how a script says it, and what it does in the window.
struct Press {
    std::string words;
    std::function<void()> act;
};

class PerformedTest : public SynthFixture {
protected:
    Press downOf(const HandKey& key) {
        return {std::string("down ") + nameOf(key), [this, &key] { down(key); }};
    }
    Press upOf(const HandKey& key) {
        return {std::string("up ") + nameOf(key), [this, &key] { up(key); }};
    }
    Press ticked(const char* event, const char* name) {
        return {event, [this, name] { click(control(name)); }};
    }
    Press rightClicked(const KeyboardSliderRow& row) {
        return {"right-click " + std::string(row.name), [this, &row] {
                    QWidget& bar = control(std::string(row.control));
                    QTest::mouseClick(&bar, Qt::RightButton);
                }};
    }
    Press button(const char* event, int index) {
        return {event, [this, index] { click(SynthFixture::button(index)); }};
    }

    void play(double seconds, const Press& press) {
        script_ << seconds << ' ' << press.words << '\n';
        // What was due at a moment comes behind what the hand does then.
        while (const auto due = window().keyboard().nextDue()) {
            if (*due >= seconds - 1e-9)
                break;
            loop.serveUntil(*due);
            window().runDue();
        }
        loop.serveUntil(seconds);
        press.act();
    }
    void expectTheSame() {
        for (auto due = window().keyboard().nextDue(); due && *due <= loop.now() + 1e-9;
             due = window().keyboard().nextDue())
            window().runDue();
        while (window().keyboard().isStrumming()) {
            loop.serveUntil(*window().keyboard().nextDue());
            window().runDue();
        }
        window().unload();
        std::vector<Line> sent;
        for (const auto& one : port.sent)
            sent.push_back({std::lround(one.moment * 1e6), one.word});
        const std::vector<Line> listed = performed(script_.str());
        const auto [one, other] = std::ranges::mismatch(sent, listed);
        EXPECT_TRUE(one == sent.end() && other == listed.end())
            << "from " << testing::PrintToString(std::vector(one, std::min(one + 3, sent.end())))
            << " where the companion lists "
            << testing::PrintToString(std::vector(other, std::min(other + 3, listed.end()))) << " in\n"
            << script_.str();
    }

private:
    static const char* nameOf(const HandKey& key) { return key.key == Qt::Key_Space ? "space" : key.text; }

    std::ostringstream script_;
};

TEST_F(PerformedTest, PressesOfAllKindsSendTheSame) {
    window().open();
    window().resize(1192, 396);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    const std::array keys{kZ, kX, kQ, kSpaceKey};
    std::array<bool, 4> down{};
    std::mt19937 random(5); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    const auto any = [&](std::size_t count) { return random() % count; };
    double now = 0;
    bool strums = false;
    bool holds = false;
    bool beats = false;
    for (int i = 0; i < 400; ++i) {
        now += 0.001 * static_cast<double>(any(60));
        const std::size_t which = any(keys.size());
        switch (any(9)) {
        case 0:
            play(now, ticked("single", "Check10"));
            break;
        case 1:
            play(now, ticked("polynotes-space", "Check2"));
            break;
        case 2:
            strums = !strums;
            play(now, ticked(strums ? "strum on" : "strum off", "Chkstrum"));
            break;
        case 3:
            holds = !holds;
            play(now, ticked(holds ? "hold on" : "hold off", "ChkSustain"));
            break;
        case 4:
            beats = !beats;
            play(now, ticked(beats ? "metronome on" : "metronome off", "chkRunning"));
            break;
        case 5:
            play(now, rightClicked(keyboardSliders()[any(kKeyboardSliders - 1)]));
            break;
        default:
            play(now, down[which] ? upOf(keys[which]) : downOf(keys[which]));
            down[which] = !down[which];
            break;
        }
    }
    expectTheSame();
}

} // namespace
} // namespace velmora
