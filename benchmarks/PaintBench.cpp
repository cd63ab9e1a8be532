// SPDX-License-Identifier: GPL-2.0-or-later
// Painting 24 pages of notation of five staves: one as pixels, all as PNG, SVG and PDF. Libraries and fonts
// are loaded by the first of each.
#include "notation/Engraver.h"
#include "notation/ModScore.h"
#include "notation/PageFiles.h"
#include "notation/TextMeasure.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <numeric>
#include <vector>

using namespace velmora;
using namespace velmora::notation;

namespace {

constexpr int kPages = 24;

EngravedScore pagesOf(bool classic) {
    constexpr int kSteps = 600 * 16;
    Score score(kSteps);
    for (int channel = 0; channel < 5; ++channel)
        for (int position = channel; position < kSteps;) {
            const int length = 1 + (position * 7 + channel * 3) % 4;
            const int row = 48 + (position * 5 + channel * 11) % 30;
            for (int i = 0; i < length && position + i < kSteps; ++i)
                score.NoteCell.set(channel, position + i,
                                   static_cast<std::int16_t>(i == 0 ? row : row + 1000));
            position += length + (position % 5 == 0 ? 2 : 0);
        }
    score.FindEndOfSong();
    ScoreSetup setup;
    setup.classicPage = classic;
    setup.joinNotes = 4;
    PlainTextMeasure measure;
    return WriteScore(readScore(score, {}, setup), setup, measure, [](int pages) { return pages < kPages; });
}

void paint(benchmark::State& state, bool classic) {
    const EngravedScore score = pagesOf(classic);
    const int width = static_cast<int>(score.width), height = static_cast<int>(score.height);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (auto _ : state)
        paintPixels(score, score.pages.at(0), 1, 0, 0, width, height, pixels.data());
}

void png(benchmark::State& state, bool classic) {
    const EngravedScore score = pagesOf(classic);
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const EngravedPage& page : score.pages)
            bytes += pngOf(score, page, 1).size();
    }
    state.counters["pages"] = static_cast<double>(score.pages.size());
    state.counters["bytes"] = static_cast<double>(bytes);
}

void svg(benchmark::State& state, bool classic) {
    const EngravedScore score = pagesOf(classic);
    for (auto _ : state)
        for (const EngravedPage& page : score.pages)
            benchmark::DoNotOptimize(svgOf(score, page));
}

void pdf(benchmark::State& state, bool classic) {
    const EngravedScore score = pagesOf(classic);
    std::vector<int> order(score.pages.size());
    std::iota(order.begin(), order.end(), 0);
    std::size_t bytes = 0;
    for (auto _ : state)
        bytes = pdfOf(score, order, ownPaper(score), "Title")->size();
    state.counters["pages"] = static_cast<double>(score.pages.size());
    state.counters["bytes"] = static_cast<double>(bytes);
}

} // namespace

BENCHMARK_CAPTURE(paint, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(paint, clean, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(png, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(png, clean, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(svg, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(svg, clean, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pdf, classic, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pdf, clean, false)->Unit(benchmark::kMillisecond);
