#pragma once

#include <QStringView>

/// The lines of a text, gone through from place to place; they end in "\n".
class TextLines final
{
public:
    explicit TextLines(QStringView text);

    /// Goes on to the line that holds this place, or ends in it; never back.
    void goTo(qsizetype place);

    [[nodiscard]] int number() const { return m_number; } ///< from 1
    [[nodiscard]] qsizetype begin() const { return m_begin; }
    [[nodiscard]] qsizetype end() const { return m_end; } ///< without "\n"

private:
    void findEnd(qsizetype from);

    QStringView m_text;
    int m_number = 1;
    qsizetype m_begin = 0, m_end = 0;
};
