// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace velmora {

/// Those who are told of something for as long as they stay. They come and go at any time, also while they
/// are being told: who has left is not called again, and who comes in is called from the next time on.
/// Telling allocates nothing.
template<typename T>
class Guests {
public:
    Guests() = default;
    Guests(const Guests&) = delete;
    Guests& operator=(const Guests&) = delete;

    /// A guest stays until this goes, or is emptied. It goes before the guest, and before the `Guests`.
    class [[nodiscard]] Stay {
    public:
        Stay() = default;
        Stay(Stay&& other) noexcept
            : guests_(std::exchange(other.guests_, nullptr))
            , guest_(std::exchange(other.guest_, nullptr)) {}
        Stay& operator=(Stay&& other) noexcept {
            std::swap(guests_, other.guests_);
            std::swap(guest_, other.guest_);
            other.leave();
            return *this;
        }
        ~Stay() { leave(); }

        void leave() {
            if (guests_)
                std::exchange(guests_, nullptr)->remove(guest_);
        }

    private:
        friend class Guests;
        Stay(Guests& guests, T& guest) : guests_(&guests), guest_(&guest) {}

        Guests* guests_ = nullptr;
        T* guest_ = nullptr;
    };

    Stay join(T& guest) {
        list_.push_back(&guest);
        return Stay(*this, guest);
    }

    /// Calls a member function, or anything else that takes a guest, for each of them in the order in which
    /// they came.
    template<typename Call, typename... Values>
    void tell(const Call& call, const Values&... values) {
        const Telling telling(*this);
        const std::size_t count = list_.size();
        for (std::size_t i = 0; i < count; ++i)
            if (T* guest = list_[i])
                std::invoke(call, *guest, values...);
    }

private:
    /// While anyone is being told, places keep their numbers.
    class Telling {
    public:
        explicit Telling(Guests& guests) : guests_(guests) { ++guests_.tellings_; }
        ~Telling() {
            if (--guests_.tellings_ == 0)
                std::erase(guests_.list_, nullptr);
        }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

    private:
        Guests& guests_;
    };

    void remove(T* guest) {
        const auto place = std::ranges::find(list_, guest);
        if (tellings_ > 0)
            *place = nullptr;
        else
            list_.erase(place);
    }

    std::vector<T*> list_; ///< null for who left while someone was being told
    int tellings_ = 0;     ///< under way, one within another
};

} // namespace velmora
