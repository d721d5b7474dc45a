#include "tools/TextLines.h"

TextLines::TextLines(QStringView text)
    : m_text(text)
{
    findEnd();
}

void TextLines::goTo(qsizetype place)
{
    while (place > m_end && m_end < m_text.size()) {
        m_begin = m_end + 1;
        ++m_number;
        findEnd();
    }
}

void TextLines::findEnd()
{
    const qsizetype found = m_text.indexOf(u'\n', m_begin);
    m_end = found < 0 ? m_text.size() : found;
}
