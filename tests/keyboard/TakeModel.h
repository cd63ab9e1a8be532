// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Take.h"

#include <cmath>
#include <string>
#include <vector>

namespace velmora {

/// The passes over the lists of a take once more, slowly: lists of texts, an item at a time, each removal at
/// its place.
class TakeModel {
public:
    using List = std::vector<std::string>;

    explicit TakeModel(const Take& take) {
        for (const std::int32_t item : take.List1)
            List1.push_back(std::to_string(item));
        for (const std::int32_t item : take.List3)
            List3.push_back(std::to_string(item));
    }

    List List1;
    List List3;
    List List4;
    List List5;

    void BuildPlayList(double Text12) {
        buildByRuns([=](int run) { return round(run * Text12 * 0.1); });
    }
    void playWithPauses(double Text11) {
        buildByRuns([=](int) { return round(Text11 * 0.1); });
    }
    void playPlain() {
        List4.clear();
        for (int n = 1; n <= count(List3) - 1; ++n)
            List4.push_back(at(List1, n) == "1" ? "-1" : at(List3, n));
    }

    void ConvertRecording(double Text12, int OctaveShift) {
        BuildPlayList(Text12);
        List5.clear();
        if (!List4.empty()) {
            List5.push_back(at(List4, 0));
            List5.push_back(at(List4, 0) == "-1" ? "-1" : continued(at(List4, 0)));
        }
        walkTrace(Text12);
        shorten([](int c) { return static_cast<int>(c * 0.1); }, false);
        shorten([=](int c) { return static_cast<int>(c * Text12 * 0.01); }, true);
        for (std::string& item : List5)
            if (item != "-1")
                item = std::to_string(std::stoi(item) - OctaveShift);
    }

private:
    static int count(const List& list) { return static_cast<int>(list.size()); }
    static std::string& at(List& list, int place) { return list.at(static_cast<std::size_t>(place)); }
    static std::string continued(const std::string& row) { return std::to_string(std::stoi(row) + 1000); }
    static int round(double value) { return static_cast<int>(std::nearbyint(value)); } // halves to even
    static void remove(List& list, int place) { list.erase(list.begin() + place); }

    template<typename Length>
    void buildByRuns(Length lengthOf) {
        List4.clear();
        int run = 0;
        const auto cut = [&] {
            int length = lengthOf(run);
            if (length < 1)
                length = 1;
            for (int j = count(List4) - run + length; j <= count(List4) - 1; ++j)
                at(List4, j) = "-1";
        };
        for (int n = 1; n <= count(List3) - 1; ++n) {
            if (at(List1, n) == "1") {
                if (run > 4)
                    cut();
                run = 0;
                List4.emplace_back("-1");
            } else if (n < count(List3) - 1 && at(List3, n) == at(List3, n + 1)) {
                run = run + 1;
                List4.push_back(at(List3, n));
            } else {
                if (run > 4)
                    cut();
                run = 0;
            }
        }
    }

    void walkTrace(double Text12) {
        int c = 0;
        const int limit = count(List4) - 2;
        for (int i = 2; i <= limit; ++i) {
            if (at(List4, i) == at(List4, i + 1)) {
                if (at(List4, i) == "-1") {
                    List5.emplace_back("-1");
                    continue;
                }
                c = c + 1;
                if (at(List4, i) == at(List4, i - 1)) {
                    List5.push_back(continued(at(List4, i - 1)));
                    continue;
                }
                List5.push_back(at(List4, i));
                int end = count(List4); // where the loop leaves its variable if nothing ends the note
                for (int j = i; j <= count(List4) - 1; ++j) {
                    if (at(List4, j) == "-1") {
                        end = j;
                        break;
                    }
                    if (at(List4, j) != at(List4, i)) {
                        end = j - 1;
                        break;
                    }
                    if (j < count(List4) - 1 && at(List4, j) == at(List4, j + 1))
                        List5.push_back(continued(at(List4, j)));
                }
                i = end;
            } else {
                if (c < 100)
                    List5.emplace_back("-1");
                else
                    thin(c, Text12);
                c = 0;
            }
        }
    }

    void thin(int c, double Text12) {
        const int k = round(c * Text12 * 0.2);
        const int last = count(List5) - 1;
        for (int j = last - c + k < 10 ? last - k : last - c - k; j <= last; ++j) {
            if (j >= 0 && j < count(List5) && std::stoi(at(List5, j)) >= 1000)
                remove(List5, j);
        }
        for (int j = round(count(List5) - 1 - k * 0.25); j <= count(List5) - 1; ++j) {
            if (j >= 0 && std::stoi(at(List5, j)) >= 1000)
                at(List5, j) = "-1";
        }
    }

    template<typename Kept>
    void shorten(Kept keptOf, bool stepsBack) {
        int c = 0;
        const int limit = count(List5);
        for (int i = 0; i <= limit; ++i) {
            if (i >= count(List5) || at(List5, i) != "-1")
                continue;
            const int start = i;
            c = c + 1;
            while (at(List5, i) == "-1" && i < count(List5) - 1) {
                i = i + 1;
                c = c + 1;
            }
            int end = i;
            c = keptOf(c);
            int j = start + c;
            for (; j <= end; ++j) {
                if (at(List5, j) != "-1")
                    continue;
                remove(List5, j);
                end = end - 1;
                if (stepsBack)
                    j = j - 1;
            }
            i = j + 2;
            c = 0;
        }
    }
};

} // namespace velmora
