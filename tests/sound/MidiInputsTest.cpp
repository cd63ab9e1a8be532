// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/MidiInputs.h"

#include "RealtimeWatch.h"
#include "base/SteadyClock.h"
#include "sound/ShortMessage.h"
#include "tests/support/FakeInputs.h"
#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
struct MidiInputsTest : testing::Test {
    FakeInputs fake;
    RecordingListener listener;
    Guests<MidiListener>::Stay stay = fake.inputs.join(listener);

    std::vector<std::string> take() { return std::exchange(listener.told, {}); }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const auto& source : fake.inputs.sources())
            all.push_back(source.name);
        return all;
    }
};

/// It has a source, until it throws.
class ThrowingBackend : public MidiInputBackend {
public:
    explicit ThrowingBackend(std::atomic<bool>& throws) : throws_(throws) {}
    void run(MidiInputQueue& queue) override {
        queue.add("Keys:Out");
        throws_.wait(false);
        throw std::runtime_error("the system is out of order");
    }

private:
    std::atomic<bool>& throws_;
};

/// It answers to nothing, not even to its end, before it is let go.
class HangingBackend : public MidiInputBackend {
public:
    explicit HangingBackend(std::shared_ptr<std::atomic<bool>> hangs) : hangs_(std::move(hangs)) {}
    void run(MidiInputQueue&) override { hangs_->wait(true); }

private:
    std::shared_ptr<std::atomic<bool>> hangs_;
};

std::vector<std::unique_ptr<MidiInputBackend>> only(std::unique_ptr<MidiInputBackend> backend) {
    std::vector<std::unique_ptr<MidiInputBackend>> backends;
    backends.push_back(std::move(backend));
    return backends;
}
} // namespace

TEST(MidiInputsWithoutGuests, NothingRunsBeforeSomebodyJoins) {
    struct Counting : MidiInputBackend {
        explicit Counting(std::atomic<int>& runs) : runs_(runs) {}
        void run(MidiInputQueue& queue) override {
            ++runs_;
            queue.rest(10);
        }
        std::atomic<int>& runs_;
    };
    std::atomic<int> runs = 0;
    RecordingListener listener;
    MidiInputs inputs(only(std::make_unique<Counting>(runs)));
    inputs.serve();
    EXPECT_EQ(runs, 0);
    const auto stay = inputs.join(listener);
    EXPECT_TRUE(within(2, [&] { return runs == 1; }));
}

TEST_F(MidiInputsTest, ASourceThatComesIsListedAndItsMessagesFollow) {
    const int keys = fake.plug("Keys:Out");
    EXPECT_THAT(take(), ElementsAre("list"));
    ASSERT_EQ(fake.inputs.sources().size(), 1U);
    EXPECT_EQ(fake.inputs.sources()[0].id, keys);
    EXPECT_EQ(fake.inputs.sources()[0].name, "Keys:Out");
    fake.play(keys, noteOn(2, 60, 90), 12.5);
    EXPECT_THAT(listener.words, ElementsAre(noteOn(2, 60, 90)));
    EXPECT_THAT(listener.moments, ElementsAre(12.5));
}

TEST_F(MidiInputsTest, WhatIsPlayedIsToldInItsOrder) {
    const int keys = fake.plug("Keys:Out");
    const int pads = fake.plug("Pads:Out");
    for (int note = 0; note < 100; ++note)
        fake.queue().push(note % 3 == 0 ? pads : keys, noteOn(0, note, 1 + note), note);
    take();
    listener.words.clear();
    listener.moments.clear();
    fake.inputs.serve();
    ASSERT_EQ(listener.words.size(), 100U);
    for (int note = 0; note < 100; ++note) {
        EXPECT_EQ(data1(listener.words[static_cast<std::size_t>(note)]), note);
        EXPECT_EQ(listener.told[static_cast<std::size_t>(note)].front(),
                  std::to_string(note % 3 == 0 ? pads : keys).front());
    }
}

TEST_F(MidiInputsTest, ANoteOnOfVelocityZeroIsANoteOff) {
    const int keys = fake.plug("Keys:Out");
    fake.play(keys, noteOn(3, 60, 0));
    EXPECT_THAT(listener.words, ElementsAre(noteOff(3, 60)));
}

TEST_F(MidiInputsTest, NotesControllersPressureAndBendAreHandedOnAndNothingElse) {
    const int keys = fake.plug("Keys:Out");
    const std::vector<std::uint32_t> handedOn{noteOn(0, 60, 1), pack(0x80, 0, 60, 64), controller(5, 64, 127),
                                              pack(0xD0, 1, 100), pack(0xE0, 1, 0, 64)};
    for (const auto word : handedOn)
        fake.play(keys, word);
    // Key pressure, a program, a clock, and what is no message at all.
    for (const std::uint32_t word : {pack(0xA0, 0, 60, 5), programChange(0, 5), 0xF8U, 0x3C90U << 8U, 0U})
        fake.play(keys, word);
    EXPECT_EQ(listener.words, handedOn);
}

TEST_F(MidiInputsTest, ASourceThatGoesEndsAfterAllThatItHasPlayed) {
    const int keys = fake.plug("Keys:Out");
    take();
    fake.queue().push(keys, noteOn(0, 60, 90), 1);
    fake.queue().remove(keys);
    fake.inputs.serve();
    EXPECT_THAT(take(), ElementsAre("1 5a3c90", "1 ended", "list"));
    EXPECT_THAT(fake.inputs.sources(), IsEmpty());
    fake.play(keys, noteOn(0, 61, 90));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(MidiInputsTest, ASourceThatComesAgainIsAnother) {
    const int first = fake.plug("Keys:Out");
    fake.unplug(first);
    const int second = fake.plug("Keys:Out");
    EXPECT_NE(first, second);
    EXPECT_THAT(names(), ElementsAre("Keys:Out"));
}

TEST_F(MidiInputsTest, ASourceThatWasThereForAMomentOnlyIsNotHeardOf) {
    const int keys = fake.queue().add("Keys:Out");
    fake.queue().remove(keys);
    fake.inputs.serve();
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(take(), testing::Not(testing::Contains("1 ended")));
}

TEST_F(MidiInputsTest, TwoOfOneNameAreToldApartInTheList) {
    fake.plug("Keys:Out");
    fake.plug("Keys:Out");
    EXPECT_THAT(names(), ElementsAre("Keys:Out", "Keys:Out 2"));
}

TEST_F(MidiInputsTest, WhereMessagesAreLostTheNotesOfAllSourcesEnd) {
    const int keys = fake.plug("Keys:Out");
    take();
    for (std::size_t i = 0; i < MidiInputQueue::kLength; ++i)
        fake.queue().push(keys, noteOn(0, 60, 90), 1);
    fake.queue().push(keys, noteOff(0, 60), 2);
    fake.inputs.serve();
    const auto told = take();
    // Note-ons leave room, so the note-off is there, and then all is ended for what was lost.
    ASSERT_EQ(told.size(), MidiInputQueue::kLength - MidiInputQueue::kReserved + 2);
    EXPECT_EQ(told[told.size() - 2], "1 003c80");
    EXPECT_EQ(told.back(), "1 ended");
    EXPECT_THAT(names(), ElementsAre("Keys:Out"));
    fake.inputs.serve();
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(MidiInputsTest, HearingTakesNoMemoryAndNoLock) {
    const int keys = fake.plug("Keys:Out");
    MidiInputQueue& queue = fake.queue();
    const RealtimeWatch watch;
    for (int i = 0; i < 2 * static_cast<int>(MidiInputQueue::kLength); ++i) // the ring fills, too
        queue.push(keys, noteOn(0, i % 128, 90), i);
    queue.lost();
    EXPECT_EQ(watch.memoryCalls(), 0U);
    EXPECT_EQ(watch.locks(), 0U);
}

TEST_F(MidiInputsTest, WhoLeavesIsToldNothingMore) {
    const int keys = fake.plug("Keys:Out");
    take();
    stay.leave();
    fake.play(keys, noteOn(0, 60, 90));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(MidiInputsTest, AThreadThatPlaysIsHeardWholeAndInOrder) {
    const int keys = fake.plug("Keys:Out");
    MidiInputQueue& queue = fake.queue();
    constexpr int kNotes = 5'000;
    std::atomic<int> heard = 0;
    std::thread player([&] {
        for (int i = 0; i < kNotes; ++i) {
            queue.push(keys, pack(0xE0, 0, i % 128, i / 128 % 128), steadySeconds());
            while (i - heard > 1000) // a ring is shorter than all
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    EXPECT_TRUE(within(30, [&] {
        fake.inputs.serve();
        heard = static_cast<int>(listener.words.size());
        return heard >= kNotes;
    }));
    player.join();
    ASSERT_EQ(listener.words.size(), static_cast<std::size_t>(kNotes));
    for (int i = 0; i < kNotes; ++i)
        ASSERT_EQ(listener.words[static_cast<std::size_t>(i)], pack(0xE0, 0, i % 128, i / 128 % 128));
}

TEST(MidiInputsInAnEventLoop, WhatIsPlayedWakesIt) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    std::optional<QCoreApplication> application;
    if (!QCoreApplication::instance())
        application.emplace(argc, argv);
    FakeInputs fake;
    RecordingListener listener;
    const auto stay = fake.inputs.join(listener);
    MidiInputQueue& queue = fake.queue();
    const int keys = queue.add("Keys:Out");
    std::thread player([&] {
        for (int note = 0; note < 5; ++note) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            queue.push(keys, noteOn(0, note, 90), note);
        }
    });
    EXPECT_TRUE(within(5, [&] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return listener.words.size() == 5;
    }));
    player.join();
    EXPECT_THAT(listener.moments, ElementsAre(0, 1, 2, 3, 4));
}

TEST(MidiInputsThatFail, ABackEndThatFailsHasNoSources) {
    std::atomic<bool> throws = false;
    RecordingListener listener;
    MidiInputs inputs(only(std::make_unique<ThrowingBackend>(throws)));
    const auto stay = inputs.join(listener);
    const auto hasSources = [&] {
        inputs.serve();
        return !inputs.sources().empty();
    };
    EXPECT_TRUE(within(2, hasSources));
    throws = true;
    throws.notify_all();
    EXPECT_TRUE(within(2, [&] { return !hasSources(); }));
    EXPECT_THAT(listener.told, ElementsAre("list", "1 ended", "list"));
}

TEST(MidiInputsThatFail, ABackEndThatHangsIsLeftBehind) {
    const auto hangs = std::make_shared<std::atomic<bool>>(true);
    RecordingListener listener;
    std::optional<MidiInputs> inputs;
    inputs.emplace(only(std::make_unique<HangingBackend>(hangs)));
    {
        const auto stay = inputs->join(listener);
        const double begin = steadySeconds();
        inputs->serve();
        EXPECT_LT(steadySeconds() - begin, 0.1 * kPatience);
    }
    const double begin = steadySeconds();
    inputs.reset();
    EXPECT_LT(steadySeconds() - begin, (MidiInputs::kEndSeconds + 0.5) * kPatience);
    *hangs = false;
    hangs->notify_all();
}

TEST(MidiInputBackendsTest, TheTableHasAlsaAndJack) {
    std::vector<std::string_view> names;
    for (const auto& row : midiInputBackendRows())
        names.push_back(row.name);
    EXPECT_THAT(names, ElementsAre("ALSA", "JACK"));
    for (const auto& backend : createMidiInputBackends())
        EXPECT_NE(backend, nullptr);
}
