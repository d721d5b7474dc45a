#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <array>

/// Finds a text of ASCII characters; without regard to case several times faster than a general
/// matcher, which looks every character up.
class AsciiNeedle final
{
public:
    AsciiNeedle() = default; ///< not valid
    /// Not valid when the text is empty or holds other characters.
    AsciiNeedle(QStringView text, bool matchCase);

    [[nodiscard]] bool isValid() const { return !m_needle.isEmpty(); }
    /// As it is searched for: in small letters unless their case matters.
    [[nodiscard]] const QByteArray &text() const { return m_needle; }

    /// Where it begins in bytes that write ASCII as it is; -1 when it is not there.
    [[nodiscard]] qsizetype indexIn(QByteArrayView bytes, qsizetype from = 0) const;
    /// The same in text; when case does not count, "\u017F" is an s and "\u212A" a k.
    [[nodiscard]] qsizetype indexIn(QStringView text, qsizetype from = 0) const;

private:
    /// The first characters of the needle, compared with many places of a text at a time.
    struct Beginning
    {
        std::array<char16_t, 3> units{};
        std::array<char16_t, 3> bits{}; ///< set before comparing: letter case, or all for any
    };

    void makeBeginning();
    template <typename Unit>
    [[nodiscard]] qsizetype passOver(const Unit *all, qsizetype size, qsizetype from) const;
    template <typename Unit, typename CodeAt>
    [[nodiscard]] qsizetype findFar(const Unit *all, qsizetype size, qsizetype from,
                                    CodeAt codeAt) const;
    template <typename CodeAt>
    [[nodiscard]] qsizetype find(qsizetype size, qsizetype from, CodeAt codeAt) const;

    QByteArray m_needle;
    Beginning m_beginning;
    bool m_folds = false;
    std::array<uchar, 256> m_small{};
    std::array<qsizetype, 256> m_skip{}; ///< how far to go on with this byte under the last one
};
