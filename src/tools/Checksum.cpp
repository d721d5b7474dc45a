#include "tools/Checksum.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>

namespace {

// Odd numbers whose bits look random: digits of the golden ratio and of the root of two.
constexpr quint64 spread = 0x9E3779B97F4A7C15U;
constexpr quint64 stir = 0x6A09E667F3BCC909U;
constexpr size_t wordSize = 8;
constexpr size_t lanes = 4; // worked on at once, as they do not wait for each other

quint64 mixed(quint64 sum, quint64 word)
{
    return std::rotl((sum ^ word) * spread, 29) + stir;
}

quint64 wordAt(const char *at)
{
    return qFromLittleEndian<quint64>(at);
}

} // namespace

quint64 checksum(std::string_view bytes)
{
    std::array<quint64, lanes> sums{1, 2, 3, 4};
    const char *at = bytes.data();
    size_t left = bytes.size();
    for (; left >= lanes * wordSize; left -= lanes * wordSize) {
        for (quint64 &sum : sums) {
            sum = mixed(sum, wordAt(at));
            at += wordSize;
        }
    }
    quint64 whole = bytes.size();
    for (const quint64 sum : sums)
        whole = mixed(whole, sum);
    for (; left > 0; left -= std::min(left, wordSize)) {
        std::array<char, wordSize> last{};
        const size_t length = std::min(left, wordSize);
        std::copy(at, at + length, last.begin());
        whole = mixed(whole, wordAt(last.data()));
        at += length;
    }
    whole ^= whole >> 32U;
    whole *= spread;
    return whole ^ (whole >> 29U);
}

QByteArray checksumText(QByteArrayView bytes)
{
    constexpr int digits = 16;
    const quint64 sum = checksum(std::string_view(bytes.data(), static_cast<size_t>(bytes.size())));
    return QByteArray::number(sum, 16).rightJustified(digits, '0');
}
