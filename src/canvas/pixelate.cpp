#include "canvas/pixelate.h"

#include "canvas/rowloops.h"

#include <QImage>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <vector>

// Memory is the limit here, so each row of blocks is read from it once and written once; what lies between
// works on a few rows that stay in the cache, in loops over consecutive bytes that are vector code.
namespace {

constexpr int ColorBytes = 3;
constexpr int AlphaByte = 3;

/// The alpha byte of a pixel as it lies in memory, whatever the byte order.
const quint32 AlphaMask = qToLittleEndian(0xff000000u);

/// As many bytes as this can be summed in 16 bits.
constexpr int MostBytesInSum = 0xffff / 0xff;
/// Averages are spread over this many pixels at a time; what is too much the next block overwrites.
constexpr int SpreadWidth = 4;

/// The smallest blocks that are offered, of which a picture has the most.
constexpr int SquareSide = 4;
/// Divides by the pixels of a square,
constexpr int SquareShift = 4;
/// after which a byte is left in each lane of 16 bits, and above it what the next lane has lost.
constexpr quint64 AverageMask = 0x00ff00ff00ff00ff;

void storePixel(uchar *to, quint32 pixel) {
    std::memcpy(to, &pixel, sizeof pixel);
}

/// Divides sums of bytes by how many they are: a multiplication each, since a division takes longer than all
/// else that is done for a block.
class CountDivider {
public:
    void setCount(quint32 count) {
        if (count == m_count)
            return;
        m_count = count;
        m_factor = (quint64(1) << Shift) / count + 1;
    }
    uchar average(quint32 sum) const {
        // The factor is too large by less than one, which tells only in sums of more bytes than this.
        if (m_count > MostExact)
            return static_cast<uchar>(sum / m_count);
        return static_cast<uchar>(sum * m_factor >> Shift);
    }

private:
    static constexpr int Shift = 40;
    static constexpr quint32 MostExact = 0xffff;
    quint32 m_count = 0;
    quint64 m_factor = 0;
};

/// The rows of blocks of one region, one after the other. `Bpp` is the number of bytes from pixel to pixel.
template <int Bpp> class BlockRows {
public:
    BlockRows(int width, int block, const RowLoops &loops)
        : m_loops(loops), m_width(width), m_block(block), m_columns((width - 1) / block + 1),
          m_rowsAtOnce(std::max(1, MostBytesInSum / block)), m_columnsAtOnce(MostBytesInSum / m_rowsAtOnce),
          m_masked(Bpp == 4 ? Bpp * width : 0), m_sums(Bpp * width + Lanes - Bpp), m_totals(m_columns),
          m_colors(Bpp * (width + SpreadWidth - 1)) {}

    /// Averages the blocks of `rows` rows from `first` on.
    void average(uchar *first, int stride, int rows) {
        if (Bpp == 4 && m_block == SquareSide && rows == SquareSide) {
            sumRows(first, stride, rows);
            spreadSquares();
        } else {
            std::fill(m_totals.begin(), m_totals.end(), Totals());
            for (int done = 0; done < rows; done += m_rowsAtOnce)
                addRows(first + qptrdiff(done) * stride, stride, std::min(m_rowsAtOnce, rows - done));
            for (int column = 0; column < m_columns; ++column)
                spreadColor(column, rows, m_totals[column]);
        }
        for (int y = 0; y < rows; ++y)
            writeRow(first + qptrdiff(y) * stride);
    }

private:
    /// Four sums of 16 bits in one number are added in one go.
    static constexpr int Lanes = sizeof(quint64) / sizeof(quint16);

    /// Sums of the bytes of a block; in place of alpha the number of pixels.
    struct Totals {
        quint32 bytes[Lanes] = {};
    };

    static quint64 loadSums(const quint16 *from) {
        constexpr quint16 Counted[Lanes] = {0xffff, 0xffff, 0xffff, Bpp == 4 ? 0xffff : 0};
        quint64 sums, mask;
        std::memcpy(&sums, from, sizeof sums);
        std::memcpy(&mask, Counted, sizeof mask);
        return sums & mask;
    }

    /// Sums the bytes of that many rows, column by column of pixels.
    void sumRows(const uchar *first, int stride, int rows) {
        std::fill(m_sums.begin(), m_sums.end(), 0);
        for (int y = 0; y < rows; ++y) {
            const uchar *row = first + qptrdiff(y) * stride;
            if (Bpp == 4) {
                m_loops.maskTransparent(row, m_width, m_masked.data());
                row = m_masked.data();
            }
            m_loops.addBytes(row, Bpp * m_width, m_sums.data());
        }
    }

    void addRows(const uchar *first, int stride, int rows) {
        sumRows(first, stride, rows);
        const quint16 *sums = m_sums.data();
        for (int column = 0; column < m_columns; ++column) {
            const int width = widthOf(column);
            for (int done = 0; done < width; done += m_columnsAtOnce)
                sums = addColumns(sums, std::min(m_columnsAtOnce, width - done), &m_totals[column]);
        }
    }

    /// Adds the sums of that many columns of pixels to a block; gives back where the next ones stand.
    static const quint16 *addColumns(const quint16 *sums, int count, Totals *totals) {
        quint64 packed = 0;
        for (; count > 0; --count, sums += Bpp)
            packed += loadSums(sums);
        quint16 unpacked[Lanes];
        std::memcpy(unpacked, &packed, sizeof packed);
        for (int i = 0; i < Lanes; ++i)
            totals->bytes[i] += unpacked[i];
        return sums;
    }

    void spreadColor(int column, int rows, const Totals &totals) {
        const int width = widthOf(column);
        const quint32 *sums = totals.bytes;
        const quint32 count = Bpp == 4 ? sums[AlphaByte] : quint32(width) * quint32(rows);
        uchar colors[Bpp * SpreadWidth] = {};
        if (count > 0) {
            m_divider.setCount(count);
            for (int i = 0; i < ColorBytes; ++i)
                colors[i] = m_divider.average(sums[i]);
        }
        for (int x = 1; x < SpreadWidth; ++x)
            std::memcpy(colors + x * Bpp, colors, Bpp);
        uchar *to = &m_colors[Bpp * column * m_block];
        for (int x = 0; x < width; x += SpreadWidth)
            std::memcpy(to + Bpp * x, colors, sizeof colors);
    }

    /// The averages of one row of squares. All sums of a square fit one number, and where every pixel counts
    /// one shift divides them all.
    void spreadSquares() {
        const quint16 *sums = m_sums.data();
        for (int column = 0; column < m_columns; ++column) {
            const int width = widthOf(column);
            quint64 packed = 0;
            for (int x = 0; x < width; ++x, sums += Bpp)
                packed += loadSums(sums);
            quint16 lanes[Lanes];
            std::memcpy(lanes, &packed, sizeof packed);
            if (lanes[AlphaByte] == SquareSide * SquareSide) {
                const quint32 color = packBytes(packed >> SquareShift & AverageMask) & ~AlphaMask;
                uchar *to = &m_colors[Bpp * column * SquareSide];
                for (int x = 0; x < SquareSide; ++x)
                    storePixel(to + Bpp * x, color);
            } else {
                spreadColor(column, SquareSide, {{lanes[0], lanes[1], lanes[2], lanes[3]}});
            }
        }
    }

    /// The low byte of each of the four lanes, in their order in memory.
    static quint32 packBytes(quint64 lanes) {
        const quint64 pairs = (lanes | lanes >> 8) & 0x0000ffff0000ffffu;
        return static_cast<quint32>(pairs | pairs >> 16);
    }

    void writeRow(uchar *row) const {
        if (Bpp == 4)
            m_loops.mergeColors(m_colors.data(), m_width, row);
        else
            std::memcpy(row, m_colors.data(), Bpp * m_width);
    }

    int widthOf(int column) const { return std::min(m_block, m_width - column * m_block); }

    const RowLoops &m_loops;
    const int m_width;
    const int m_block;
    const int m_columns;
    const int m_rowsAtOnce;    ///< so many that the sums of a block's bytes stay within 16 bits
    const int m_columnsAtOnce; ///< likewise
    CountDivider m_divider;
    std::vector<uchar> m_masked;
    std::vector<quint16> m_sums; ///< of the bytes of each column of pixels
    std::vector<Totals> m_totals;
    std::vector<uchar> m_colors; ///< a row of averages
};

template <int Bpp>
void pixelateRows(uchar *bits, int stride, const QRect &area, int block, const RowLoops &loops) {
    BlockRows<Bpp> rows(area.width(), std::min(block, area.width()), loops);
    for (int y = area.top(); y <= area.bottom(); y += std::min(block, area.height()))
        rows.average(bits + qptrdiff(y) * stride + Bpp * area.left(), stride,
                     std::min(block, area.bottom() + 1 - y));
}

} // namespace

void pixelate(QImage &image, const QRect &region, int block) {
    pixelate(image, region, block, RowLoops::best());
}

void pixelate(QImage &image, const QRect &region, int block, const RowLoops &loops) {
    const QRect area = region & image.rect();
    if (area.isEmpty() || block < 1 || (image.depth() != 24 && image.depth() != 32))
        return;
    const int stride = image.bytesPerLine();
    uchar *bits = image.bits();
    if (!bits)
        return;
    // Rows are padded to four bytes, so those of a 24-bit image of up to three pixels count as 32-bit ones.
    if (stride / image.width() == 4)
        pixelateRows<4>(bits, stride, area, block, loops);
    else if (stride / image.width() == 3)
        pixelateRows<3>(bits, stride, area, block, loops);
}
