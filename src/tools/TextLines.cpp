#include "tools/TextLines.h"

#include <algorithm>

TextLines::TextLines(QStringView text)
    : m_text(text)
{
    findEnd(0);
}

void TextLines::goTo(qsizetype place)
{
    if (place <= m_end || m_end == m_text.size())
        return;
    const char16_t *const all = m_text.utf16();
    m_number += static_cast<int>(std::count(all + m_end, all + place, u'\n'));
    m_begin = m_text.first(place).lastIndexOf(u'\n') + 1;
    findEnd(place);
}

void TextLines::findEnd(qsizetype from)
{
    const qsizetype found = m_text.indexOf(u'\n', from);
    m_end = found < 0 ? m_text.size() : found;
}
