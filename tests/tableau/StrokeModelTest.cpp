// SPDX-License-Identifier: GPL-2.0-or-later
// Random strokes against a second, slow account of what they do to the cells.
#include "tests/support/Walks.h"
#include "tests/tableau/GestureFixture.h"

#include <gmock/gmock.h>

#include <array>
#include <random>

using namespace velmora;

namespace {

constexpr int kNumNotes = 120;
constexpr int kChannels = 16;
using Row = std::array<std::int16_t, kNumNotes + 1>;
using Layer = std::array<Row, kChannels>;

/// The cells as the rules of the grid describe them, in plain arrays.
struct Model {
    Layer cell{}, instrument{}, chord{}, modulation{}, pan{}, reverb{}, chorus{};

    Model() {
        for (Row& row : cell)
            row.fill(-1);
        for (Row& row : pan)
            row.fill(64);
    }
    static bool inside(int position) { return position >= 0 && position <= kNumNotes; }
    static void put(Layer& layer, int channel, int position, int value) {
        if (inside(position))
            layer[static_cast<std::size_t>(channel)][static_cast<std::size_t>(position)] =
                static_cast<std::int16_t>(value);
    }
    static int get(const Layer& layer, int channel, int position) {
        return inside(position) ? layer[static_cast<std::size_t>(channel)][static_cast<std::size_t>(position)]
                                : -1;
    }

    void draw(int channel, int row, int first, int last, int code) {
        const bool cut = get(cell, channel, last + 1) >= 1000;
        for (int position = first; position <= last; ++position) {
            put(cell, channel, position, position == first ? row : 1000 + row);
            put(instrument, channel, position, code);
        }
        if (cut)
            put(cell, channel, last + 1, get(cell, channel, last + 1) - 1000);
    }

    /// For each position where its note begins, found from the left.
    std::array<int, kNumNotes + 1> heads(int channel) const {
        std::array<int, kNumNotes + 1> list{};
        int head = -1;
        for (int position = 0; position <= kNumNotes; ++position) {
            if (get(cell, channel, position) < 1000)
                head = position;
            list[static_cast<std::size_t>(position)] = head;
        }
        return list;
    }

    void reset(int channel, int position) {
        put(chord, channel + 1, position, 0);
        put(modulation, channel, position + 1, 0);
        put(pan, channel, position + 1, 64);
        put(reverb, channel, position + 1, 0);
        put(chorus, channel, position + 1, 0);
    }

    void rightPress(int channel, int position, const ViewState& view, int combo3) {
        const bool melody = channel < 8;
        const bool note = get(cell, channel, position) >= 1;
        const bool hasChord = melody && inside(position) && get(chord, channel + 1, position) > 0;
        if (!note && !hasChord)
            return;
        const auto found = heads(channel);
        const int head = found[static_cast<std::size_t>(position)];
        const bool chords = view.RightClickMode == RightClick::Polyphonic;
        for (int at = 0; at <= kNumNotes; ++at) {
            const bool ofNote = found[static_cast<std::size_t>(at)] == head;
            const bool walked = ofNote && at <= position && at != head;
            if (chords) {
                if (melody && (at == head || at == position))
                    put(chord, channel + 1, at, combo3);
            } else if (view.NoteEffectsOn) {
                if (walked && melody)
                    reset(channel, at);
            } else if (ofNote) {
                put(cell, channel, at, -1);
                put(instrument, channel, at, 0);
                if (melody)
                    reset(channel, at);
            }
        }
        if (view.NoteEffectsOn)
            applyEffects(channel, head);
    }

    /// Instrument and chord of the selectors as they are at first, for the head, be it a note or not, and the
    /// rests behind it.
    void applyEffects(int channel, int head) {
        for (int at = head; at == head || get(cell, channel, at) >= 1000; ++at) {
            put(instrument, channel, at, EffectSelectors().NoteInstrumentPick);
            if (channel < 8)
                put(chord, channel + 1, at, EffectSelectors().Combo3);
        }
    }
};

struct StrokeModelTest : GestureFixture, testing::WithParamInterface<unsigned> {
    StrokeModelTest() { store("NumNotes", std::to_string(kNumNotes)); }

    std::mt19937 random{GetParam()};
    Model model;

    int pick(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
    bool oneIn(int times) { return pick(1, times) == 1; }

    void fillEffects();
    void shuffleView();
    void stroke();
    void expectSame();

private:
    struct Hand {
        Box box;
        MouseButton button;
        int pressX;
        int y;
        std::vector<int> moves; ///< x of the drag
        int releaseX;
    };
    Hand anyHand();
    void perform(const Hand& hand);
    void follow(const Hand& hand);
};

/// Effects everywhere, so that each reset shows.
void StrokeModelTest::fillEffects() {
    const std::array<std::pair<ChannelGrid*, Layer*>, 5> layers{{
        {&score().Polyphonics, &model.chord},
        {&score().Modulation_Change, &model.modulation},
        {&score().Pan_Change, &model.pan},
        {&score().Reverb_Change, &model.reverb},
        {&score().Chorus_Change, &model.chorus},
    }};
    for (const auto& [grid, layer] : layers) {
        for (int channel = 0; channel < kChannels; ++channel) {
            for (int position = 0; position <= kNumNotes; ++position) {
                const int value = grid == &score().Polyphonics ? (oneIn(6) ? pick(0, 7) : 0) : pick(0, 127);
                grid->set(channel, position, static_cast<std::int16_t>(value));
                Model::put(*layer, channel, position, value);
            }
        }
    }
}

void StrokeModelTest::shuffleView() {
    view().ViewColumns = pick(8, 40);
    view().ViewFirstColumn = pick(-2, kNumNotes - 5);
    view().ViewTopRow = oneIn(5) ? 0 : pick(0, 60);
    view().Line_Height = pick(6, 14);
    view().Notationstyle = static_cast<std::int16_t>(pick(0, 1));
    view().NoteEffectsOn = oneIn(6);
    view().Check4 = oneIn(12);
    view().MouseMode = oneIn(10) ? static_cast<Mouse>(pick(1, 2)) : Mouse::Draw;
    constexpr std::array kRightModes{RightClick::Erase,      RightClick::Erase, RightClick::Erase,
                                     RightClick::Polyphonic, RightClick::Menu,  RightClick::Tips};
    view().RightClickMode = kRightModes[static_cast<std::size_t>(pick(0, 5))];
    screen().pixels = view().ViewColumns * 12 + pick(12, 40);
    workspace().setup.Combo3 = pick(0, 6);
    workspace().play.Playing = oneIn(25);
    if (oneIn(3)) {
        constexpr std::array kUsed{0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12};
        workspace().selectChannel(kUsed[static_cast<std::size_t>(pick(0, 11))]);
    }
    const auto channel = static_cast<std::size_t>(score().ActiveChannel);
    score().ChannelMuted[channel] = oneIn(10);
    score().ChannelInstrument[channel] =
        static_cast<std::int16_t>(channel < 8 ? pick(0, 127) : pick(128, 174));
}

StrokeModelTest::Hand StrokeModelTest::anyHand() {
    Hand hand;
    hand.box = oneIn(3) ? Box::Beatbox : Box::MusicBox;
    hand.button = oneIn(3) ? MouseButton::Right : MouseButton::Left;
    hand.pressX = pick(0, screen().pixels - 1);
    hand.y = pick(0, 59) * 6;
    int x = hand.pressX;
    for (int steps = pick(0, 6); steps > 0; --steps)
        hand.moves.push_back(x = std::clamp(x + pick(-40, 60), -30, screen().pixels + 30));
    hand.releaseX = oneIn(4) ? pick(-30, screen().pixels + 30) : x;
    return hand;
}

void StrokeModelTest::perform(const Hand& hand) {
    const bool melody = hand.box == Box::MusicBox;
    const auto down = melody ? &TableauInput::MusicBox_MouseDown : &TableauInput::Beatbox_MouseDown;
    const auto move = melody ? &TableauInput::MusicBox_MouseMove : &TableauInput::Beatbox_MouseMove;
    const auto up = melody ? &TableauInput::MusicBox_MouseUp : &TableauInput::Beatbox_MouseUp;
    (input().*down)(hand.button, 0, hand.pressX, hand.y);
    for (const int x : hand.moves)
        (input().*move)(hand.button, 0, x, hand.y);
    (input().*up)(hand.button, 0, hand.releaseX, hand.y);
}

/// What the rules say about the same hand; the view is as it was at the press.
void StrokeModelTest::follow(const Hand& hand) {
    const ViewState& now = view();
    const bool left = hand.button == MouseButton::Left;
    const bool melody = hand.box == Box::MusicBox;
    if (now.Check4 || now.MouseMode != Mouse::Draw || workspace().play.Playing)
        return;
    if (!left && (now.RightClickMode == RightClick::Tips || now.RightClickMode == RightClick::Menu))
        return;
    int channel = score().ActiveChannel;
    if (melody != (channel < 8))
        channel = melody ? input().LastMelodyChannel : input().LastDrumChannel;

    std::vector<int> places{hand.pressX};
    int end = hand.releaseX;
    for (const int x : hand.moves) {
        if (x > screen().pixels - 24) {
            end = x;
            break;
        }
        places.push_back(x);
    }
    if (!left) {
        for (const int x : places)
            if (x >= 0)
                model.rightPress(channel, now.ViewFirstColumn + x / 12, now, workspace().setup.Combo3);
        return;
    }
    const int row = now.ViewTopRow + hand.y / (melody ? now.Line_Height : 12);
    if (melody && row > 127)
        return;
    const int from = hand.pressX / 12;
    const int to = std::max(std::min(end < 0 ? -1 : end / 12, now.ViewColumns), from);
    const bool switched = score().ActiveChannel != channel;
    const int code = !melody && switched ? workspace().instruments.PercussionInstrument
                                         : score().ChannelInstrument[channel];
    model.draw(channel, row, now.ViewFirstColumn + from, now.ViewFirstColumn + to, code);
}

void StrokeModelTest::stroke() {
    const Hand hand = anyHand();
    follow(hand);
    perform(hand);
}

void StrokeModelTest::expectSame() {
    const std::array<std::tuple<const char*, const ChannelGrid*, const Layer*>, 7> layers{{
        {"NoteCell", &score().NoteCell, &model.cell},
        {"NoteInstrument", &score().NoteInstrument, &model.instrument},
        {"Polyphonics", &score().Polyphonics, &model.chord},
        {"Modulation_Change", &score().Modulation_Change, &model.modulation},
        {"Pan_Change", &score().Pan_Change, &model.pan},
        {"Reverb_Change", &score().Reverb_Change, &model.reverb},
        {"Chorus_Change", &score().Chorus_Change, &model.chorus},
    }};
    for (const auto& [name, grid, layer] : layers) {
        for (int channel = 0; channel < kChannels; ++channel) {
            const auto cells = grid->row(channel);
            const Row& expected = (*layer)[static_cast<std::size_t>(channel)];
            if (!std::equal(cells.data(), cells.data() + cells.size(), expected.data()))
                ADD_FAILURE() << name << " of channel " << channel;
        }
    }
}

} // namespace

TEST_P(StrokeModelTest, ThousandsOfStrokesLeaveTheCellsThatTheRulesSay) {
    fillEffects();
    const ChannelGrid volume = score().Volume;
    screen().quiet = true;
    for (int number = 0; number < stepsOfWalk(1000); ++number) {
        shuffleView();
        stroke();
        expectSame();
        EXPECT_THAT(soundingAfter(port().words()), testing::IsEmpty()) << "a note is left on";
        if (HasFailure())
            FAIL() << "after stroke " << number << " of seed " << GetParam();
        port().sent.clear();
    }
    EXPECT_EQ(score().Volume, volume);
    EXPECT_GE(score().usedChannels().size(), 8U) << "the strokes met something";
}

INSTANTIATE_TEST_SUITE_P(Seeds, StrokeModelTest, testing::Range(1U, 11U));
