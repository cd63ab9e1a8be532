// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// What a Standard MIDI File without running status says, read a byte at a time. Throws where it is none.
class MidiReader {
public:
    struct Event {
        int track; ///< from 0
        std::int64_t tick;
        int status; ///< 0xFF for a meta event
        int type;   ///< of a meta event
        std::string data;
    };

    explicit MidiReader(std::string_view bytes) : bytes_(bytes) {
        expect("MThd");
        if (number(4) != 6)
            throw std::runtime_error("a header of another length");
        format = static_cast<int>(number(2));
        tracks = static_cast<int>(number(2));
        division = static_cast<int>(number(2));
        for (int track = 0; track < tracks; ++track)
            readTrack(track);
        if (!bytes_.empty())
            throw std::runtime_error("something behind the last track");
    }

    int format;
    int tracks;
    int division;
    std::vector<Event> events;

    [[nodiscard]] std::vector<Event> metas(int type) const {
        std::vector<Event> list;
        for (const Event& one : events)
            if (one.status == 0xFF && one.type == type)
                list.push_back(one);
        return list;
    }
    /// Messages of channels.
    [[nodiscard]] std::vector<Event> messages() const {
        std::vector<Event> list;
        for (const Event& one : events)
            if (one.status != 0xFF)
                list.push_back(one);
        return list;
    }
    /// The moment of a tick by the tempi of the file.
    [[nodiscard]] double seconds(std::int64_t tick) const {
        double passed = 0;
        double perTick = 0.5 / division;
        std::int64_t since = 0;
        for (const auto& [at, microseconds] : tempi_) {
            if (at > tick)
                break;
            passed += static_cast<double>(at - since) * perTick;
            since = at;
            perTick = static_cast<double>(microseconds) / 1e6 / division;
        }
        return passed + static_cast<double>(tick - since) * perTick;
    }
    [[nodiscard]] static std::int64_t big(std::string_view data) {
        std::int64_t value = 0;
        for (const char one : data)
            value = value << 8 | static_cast<unsigned char>(one);
        return value;
    }

private:
    std::string_view take(std::size_t count) {
        if (bytes_.size() < count)
            throw std::runtime_error("the file ends too soon");
        const std::string_view taken = bytes_.substr(0, count);
        bytes_.remove_prefix(count);
        return taken;
    }
    void expect(std::string_view words) {
        if (take(words.size()) != words)
            throw std::runtime_error("no " + std::string(words));
    }
    std::int64_t number(std::size_t count) { return big(take(count)); }
    std::int64_t quantity() {
        std::int64_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const auto byte = number(1);
            value = value << 7 | (byte & 0x7F);
            if ((byte & 0x80) == 0)
                return value;
        }
        throw std::runtime_error("a quantity of more than four bytes");
    }
    void readTrack(int track) {
        expect("MTrk");
        const auto length = static_cast<std::size_t>(number(4));
        if (length > bytes_.size())
            throw std::runtime_error("a track that is longer than the file");
        const std::size_t rest = bytes_.size() - length;
        std::int64_t tick = 0;
        bool ended = false;
        while (bytes_.size() > rest) {
            if (ended)
                throw std::runtime_error("something behind the end of a track");
            tick += quantity();
            const int status = static_cast<int>(number(1));
            if (status < 0x80)
                throw std::runtime_error("no status");
            if (status == 0xFF) {
                const int type = static_cast<int>(number(1));
                events.push_back(
                    {track, tick, status, type, std::string(take(static_cast<std::size_t>(quantity())))});
                ended = type == 0x2F;
                if (type == 0x51)
                    tempi_.emplace_back(tick, big(events.back().data));
            } else {
                const bool one = (status & 0xF0) == 0xC0 || (status & 0xF0) == 0xD0;
                events.push_back({track, tick, status, 0, std::string(take(one ? 1 : 2))});
            }
        }
        if (!ended || bytes_.size() != rest)
            throw std::runtime_error("a track without its end");
    }

    std::string_view bytes_;
    std::vector<std::pair<std::int64_t, std::int64_t>> tempi_; ///< tick, microseconds a quarter
};

} // namespace velmora
