// The blur of a full-screen creative beside OpenCV's on one thread, on the same pixels.
#include "slice.h"

#include "ui/blur.h"

#include <benchmark/benchmark.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

QImage noise()
{
    QImage image(1080, 1920, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = random.generate() | 0xff000000u;
    }
    return image;
}

template <class Work>
double milliseconds(const Work &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// The two take turns, so that whatever else the machine does falls on both.
void blur(benchmark::State &state)
{
    cv::setNumThreads(1);
    QImage image = noise();
    const cv::Mat matrix(
        image.height(), image.width(), CV_8UC4, image.bits(), size_t(image.bytesPerLine()));
    cv::Mat result;
    std::vector<double> ours, theirs;
    for ([[maybe_unused]] auto _ : state) {
        ours.push_back(milliseconds([&] { benchmark::DoNotOptimize(znt::blurred(image)); }));
        theirs.push_back(milliseconds(
            [&] { cv::GaussianBlur(matrix, result, {}, 10, 10, cv::BORDER_CONSTANT); }));
        state.SetIterationTime(ours.back() * 1e-3);
    }
    state.counters["ms"] = median(ours);
    state.counters["ms_opencv"] = median(theirs);
    state.counters["ratio"] = median(ours) / median(theirs);
}
BENCHMARK(blur)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
