#pragma once

#include <QByteArray>
#include <QStringView>

#include <string_view>

/// The text of a large derived XML file, written as the bytes it has on the disk: UTF-16 with mark,
/// declaration, CRLF. The caller sees to the markup; it is our checked reader that reads it.
class DerivedXml final
{
public:
    /// `expected`: how many units it is likely to take; more may follow.
    explicit DerivedXml(qsizetype expected = 0);

    void markup(std::string_view ascii);
    void line() { markup("\r\n"); }
    void number(quint64 value);
    /// A text or attribute value; what XML forbids becomes a blank.
    void text(QStringView value);
    /// A word in UTF-8: letters, digits and connectors, none of which XML minds.
    void word(std::string_view utf8);

    /// Room for so many units, to be filled from the place returned; `filledTo` says how far it
    /// was.
    char16_t *room(qsizetype units);
    void filledTo(const char16_t *end);

    [[nodiscard]] QByteArray bytes();

private:
    void append(char16_t unit);

    QByteArray m_bytes;
    qsizetype m_size = 0; ///< units
};

/// Writes the decimal digits of `value` and returns the place behind them; at most 20 units.
char16_t *writeNumber(char16_t *at, quint64 value);
