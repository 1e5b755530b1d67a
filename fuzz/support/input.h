#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// Takes values one after the other from what a fuzzer gives. Behind the end everything reads as zero, so
/// that every input is a valid one.
class Input {
public:
    Input(const std::uint8_t *data, std::size_t size) : m_place(data), m_end(data + size) {}

    bool atEnd() const { return m_place == m_end; }
    int byte() { return atEnd() ? 0 : *m_place++; }
    bool flag() { return byte() & 1; }
    /// The low byte first.
    int word() {
        const int low = byte();
        return low | byte() << 8;
    }
    /// From `least` to `most`, which lie less than 65536 apart.
    int number(int least, int most) { return least + word() % (most - least + 1); }
    QByteArray bytes(int count) {
        const auto taken = std::min<std::ptrdiff_t>(count, m_end - m_place);
        const QByteArray result(reinterpret_cast<const char *>(m_place), static_cast<int>(taken));
        m_place += taken;
        return result;
    }
    QByteArray rest() { return bytes(static_cast<int>(m_end - m_place)); }
    /// Up to the next byte of that value, which is taken and left out, or to the end.
    QByteArray until(std::uint8_t mark) {
        const std::uint8_t *found = std::find(m_place, m_end, mark);
        const QByteArray result = bytes(static_cast<int>(found - m_place));
        byte();
        return result;
    }

private:
    const std::uint8_t *m_place;
    const std::uint8_t *m_end;
};
