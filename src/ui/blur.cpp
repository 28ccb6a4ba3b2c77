#include "ui/blur.h"

#include <array>
#include <cmath>
#include <vector>

namespace znt {

namespace {

constexpr size_t channels = 4;
constexpr int cellSide = 4;              // pixels of the picture to a pixel of the copy, at most
constexpr double variance = 10.0 * 10.0; // in pixels of the picture
constexpr int unit = 64;                 // of a weight: cells are cut to this part of a pixel

// A pixel of the copy: how much of each of a few pixels of the picture it covers. The weights add
// up to 256 at most, and to nothing where the cell lies outside.
struct Cell
{
    int first = 0;
    std::array<float, cellSide + 1> weights{};
};

constexpr size_t reach = 7; // of the kernel, in cells
using Kernel = std::array<float, 2 * reach + 1>;

// One direction of the picture, the spread included, cut into equal cells.
struct Axis
{
    std::vector<Cell> cells;
    double cellSize = 0;
    Kernel kernel{};
};

Cell cellBetween(qint64 begin, qint64 end, int length)
{
    begin = qMax(begin, qint64(0));
    end = qMin(end, qint64(length) * unit);
    Cell cell{int(qMin(begin / unit, qint64(length) - 1)), {}};
    for (size_t i = 0; begin < end; ++i) {
        const qint64 next = qMin((begin / unit + 1) * unit, end);
        cell.weights[i] = float(next - begin);
        begin = next;
    }
    return cell;
}

// Taking the mean of a cell and drawing the copy enlarged both blur already: the kernel adds what
// is missing to the wanted variance.
Kernel kernelFor(double cellSize)
{
    const double square = cellSize * cellSize;
    const double ofMean = (square - 1) / 12;
    const double ofEnlarging = square * 11 / 64;
    const double missing = (variance - ofMean - ofEnlarging) / square;
    const auto weight = [&](size_t i) {
        const double distance = double(i) - double(reach);
        return std::exp(-distance * distance / (2 * missing));
    };
    Kernel kernel;
    double sum = 0;
    for (size_t i = 0; i < kernel.size(); ++i)
        sum += weight(i);
    for (size_t i = 0; i < kernel.size(); ++i)
        kernel[i] = float(weight(i) / sum);
    return kernel;
}

Axis axisOf(int length)
{
    const int extent = length + 2 * blurSpread;
    const int count = (extent + cellSide - 1) / cellSide;
    Axis axis;
    axis.cellSize = double(extent) / count;
    axis.kernel = kernelFor(axis.cellSize);
    const auto edge = [&](int i) { return qint64(extent) * unit * i / count - blurSpread * unit; };
    for (int i = 0; i < count; ++i)
        axis.cells.push_back(cellBetween(edge(i), edge(i + 1), length));
    return axis;
}

// The alpha of RGB32 is 255; anything else is premultiplied, so that colours fade with their alpha.
QImage asBytes(const QImage &picture)
{
    return picture.format() == QImage::Format_RGB32
        ? picture
        : picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// The rows that a cell covers, added up. This is the pass that touches every pixel: in 16 bits,
// with a fixed number of rows, it is bound by memory alone.
void addRows(const QImage &picture, const Cell &cell, float *__restrict to, size_t size)
{
    std::array<const uchar *, cellSide + 1> rows;
    std::array<quint16, cellSide + 1> weights;
    for (size_t i = 0; i < rows.size(); ++i) {
        rows[i] = picture.constScanLine(qMin(cell.first + int(i), picture.height() - 1));
        weights[i] = quint16(cell.weights[i]);
    }
    for (size_t x = 0; x < size; ++x) {
        quint16 sum = 0;
        for (size_t i = 0; i < rows.size(); ++i)
            sum = quint16(sum + rows[i][x] * weights[i]);
        to[x] = sum;
    }
}

// `sums` goes on for as many pixels as a cell covers.
void takeMeans(const float *sums, const Axis &axis, float scale, float *__restrict to)
{
    for (const Cell &cell : axis.cells) {
        const float *const from = sums + size_t(cell.first) * channels;
        for (size_t c = 0; c < channels; ++c) {
            float mean = 0;
            for (size_t i = 0; i < cell.weights.size(); ++i)
                mean += from[i * channels + c] * cell.weights[i];
            to[c] = mean * scale;
        }
        to += channels;
    }
}

// Neighbours lie `step` values apart; there are `reach` of them before and after each value.
void convolve(
    const float *from, size_t step, const Kernel &kernel, float *__restrict to, size_t size)
{
    for (size_t x = 0; x < size; ++x) {
        float sum = from[x + reach * step] * kernel[reach];
        for (size_t i = 0; i < reach; ++i)
            sum += (from[x + i * step] + from[x + (2 * reach - i) * step]) * kernel[i];
        to[x] = sum;
    }
}

void round(const std::vector<float> &from, uchar *__restrict to)
{
    const size_t size = from.size();
    for (size_t x = 0; x < size; ++x)
        to[x] = uchar(int(from[x] + 0.5f));
}

} // namespace

QImage blurred(const QImage &picture)
{
    if (picture.isNull())
        return {};
    const QImage from = asBytes(picture);
    const Axis across = axisOf(from.width());
    const Axis down = axisOf(from.height());
    const size_t width = across.cells.size() * channels;
    const size_t height = down.cells.size();
    QImage copy(int(across.cells.size()), int(height), QImage::Format_ARGB32_Premultiplied);
    if (from.isNull() || copy.isNull())
        return {};

    // Beyond the ends, as far as the kernel and the last cell read, there is nothing.
    std::vector<float> rows((height + 2 * reach) * width);
    std::vector<float> means(width + 2 * reach * channels);
    const size_t rowSize = size_t(from.width()) * channels;
    std::vector<float> sums(rowSize + cellSide * channels);
    const float scale = float(1 / (across.cellSize * down.cellSize * unit * unit));
    for (size_t y = 0; y < height; ++y) {
        addRows(from, down.cells[y], sums.data(), rowSize);
        takeMeans(sums.data(), across, scale, means.data() + reach * channels);
        convolve(means.data(), channels, across.kernel, &rows[(y + reach) * width], width);
    }

    std::vector<float> row(width);
    for (size_t y = 0; y < height; ++y) {
        convolve(&rows[y * width], width, down.kernel, row.data(), width);
        round(row, copy.scanLine(int(y)));
    }
    return copy;
}

} // namespace znt
