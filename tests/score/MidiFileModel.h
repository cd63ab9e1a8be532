// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"
#include "sound/Chords.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace velmora::test {

/// A second writer of MIDI files: one step after the other, numbers through texts of binary digits, nothing
/// shared with the one under test but the Score.
class MidiFileModel {
public:
    MidiFileModel(Score& score, ChordSteps& steps) : score_(score), steps_(steps) {}

    std::string write() {
        int extra = 0;
        if (score_.TopMelodyHint >= 4 && score_.TopChannel <= score_.TopMelodyHint)
            extra = score_.TopChannel - score_.TopMelodyHint + 1;
        const int last = std::max(12 + extra, 12);
        head(last);
        score_.FindEndOfSong();
        score_.SongEnd = score_.SongEnd + 1;
        for (t_ = 0; t_ <= last; ++t_)
            track();
        for (int c = score_.TopChannel; c <= score_.TopChannel + score_.TopMelodyHint; ++c) {
            for (int p = 0; p <= score_.SongEnd; ++p) {
                for (int k = 0; k < 3; ++k) {
                    score_.NoteCell.set(c + k, p, -1);
                    score_.NoteInstrument.set(c + k, p, 0);
                    score_.Volume.set(c + k, p + 1, 127);
                }
            }
        }
        return bytes_;
    }

private:
    void byte(int value) { bytes_ += static_cast<char>(value); }
    void data(int value) { byte(value < 0 ? 0 : value > 127 ? 127 : value); }

    static std::string numberToBits(long value) {
        std::string bits;
        for (; value > 0; value /= 2)
            bits.insert(bits.begin(), value % 2 ? '1' : '0');
        return bits.empty() ? "0" : bits;
    }

    void delta(int position) {
        std::string bits = numberToBits(12L * (position - lastEvent_));
        while (bits.size() % 7 != 0)
            bits.insert(bits.begin(), '0');
        for (std::size_t at = 0; at < bits.size(); at += 7) {
            const bool end = at + 7 == bits.size();
            byte(std::stoi((end ? "0" : "1") + bits.substr(at, 7), nullptr, 2));
        }
    }

    void head(int last) {
        bytes_ = "MThd";
        for (const int value : {0, 0, 0, 6, 0, 1, 0, last + 2, 0, 48})
            byte(value);
        bytes_ += "MTrk";
        for (const int value : {0, 0, 0, 19, 0, 255, 81, 3})
            byte(value);
        long microseconds = score_.Tempo >= 1 ? 60000000 / score_.Tempo : 0;
        if (microseconds > 16777215)
            microseconds = 16777215;
        byte(static_cast<int>(microseconds / 65536));
        byte(static_cast<int>(microseconds / 256 % 256));
        byte(static_cast<int>(microseconds % 256));
        for (const int value : {0, 255, 88, 4, 4})
            byte(value);
        const int n = score_.NotesPerMeasure;
        byte(n >= 4 && n <= 7 ? 2 : n >= 8 && n <= 15 ? 3 : n >= 16 && n <= 20 ? 4 : 0);
        for (const int value : {24, 8, 0, 255, 47, 0})
            byte(value);
    }

    void track() {
        score_.PlayedCell[t_] = score_.PlayedInstrument[t_] = -1;
        lastEvent_ = 0;
        bytes_ += "MTrk";
        const std::size_t lengthAt = bytes_.size();
        bytes_ += "....";
        if (!score_.ChannelMuted[t_]) {
            for (int p = 0; p <= score_.SongEnd; ++p) {
                if (p < score_.SongEnd && score_.Polyphonics.valueOr(t_ + 1, p + 1, 0) >= 1 &&
                    t_ <= score_.TopMelodyHint)
                    spread(p);
                position(p, p == score_.SongEnd ? -1 : score_.NoteCell.valueOr(t_, p, -1));
            }
        }
        delta(score_.SongEnd);
        for (const int value : {255, 47, 0})
            byte(value);
        std::size_t length = bytes_.size() - lengthAt - 4;
        for (std::size_t i = 4; i-- > 0; length /= 256)
            bytes_[lengthAt + i] = static_cast<char>(length % 256);
    }

    void spread(int p) {
        steps_.SelectChord(score_.Polyphonics.valueOr(t_ + 1, p + 1, 0));
        const int add[3] = {steps_.ChordStep1, steps_.ChordStep2, steps_.ChordStep3};
        for (int k = 0; k < 3; ++k) {
            const int to = t_ + score_.TopChannel + k;
            if (const auto cell = score_.NoteCell.at(t_, p);
                cell && *cell + add[k] <= 32767 && *cell + add[k] >= -32768)
                score_.NoteCell.set(to, p, static_cast<std::int16_t>(*cell + add[k]));
            if (const auto code = score_.NoteInstrument.at(t_, p))
                score_.NoteInstrument.set(to, p, *code);
            if (const auto volume = score_.Volume.at(t_, p + 1))
                score_.Volume.set(to, p + 1, static_cast<std::int16_t>(std::rint(*volume * 0.65)));
        }
    }

    void position(int p, int cell) {
        const auto kind = [](int code) { return code < 0 ? 0 : code < 1000 ? 1 : 2; };
        const int before = kind(score_.PlayedCell[t_]), now = kind(cell);
        const int code = score_.NoteInstrument.valueOr(t_, p, 0);
        if (code != score_.PlayedInstrument[t_] && now == 1) {
            drum_ = code >= 128;
            if (drum_) {
                key_ = code - 93;
            } else {
                delta(p);
                byte(0xC0 + t_);
                data(code);
                lastEvent_ = p;
            }
        }
        if (before != 0 && now != 2) {
            delta(p);
            byte(0x80 + (drum_ ? 9 : t_));
            data(drum_ ? key_ : 127 - score_.PlayedCell[t_] % 1000);
            byte(0);
            lastEvent_ = p;
        }
        if (now == 1) {
            delta(p);
            if (const auto volume = score_.Volume.at(t_, p + 1))
                score_.ChannelVelocity[t_] = *volume;
            byte(0x90 + (drum_ ? 9 : t_));
            data(drum_ ? key_ : 127 - cell);
            data(score_.ChannelVelocity[t_]);
            lastEvent_ = p;
            score_.PlayedInstrument[t_] = static_cast<std::int16_t>(code);
        }
        score_.PlayedCell[t_] = static_cast<std::int16_t>(cell);
    }

    Score& score_;
    ChordSteps& steps_;
    std::string bytes_;
    int t_ = 0;
    int lastEvent_ = 0;
    bool drum_ = false;
    int key_ = 0;
};

} // namespace velmora::test
