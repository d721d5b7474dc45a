#include "reports/LinkRows.h"

#include <algorithm>

void LinkRows::setIdentifier(QStringView identifier)
{
    m_identifier = keep(identifier);
}

void LinkRows::append(QStringView path)
{
    m_rows.push_back({m_identifier, keep(path)});
    m_good.push_back(false);
}

void LinkRows::squeeze()
{
    m_texts.squeeze();
    m_rows.shrink_to_fit();
}

qsizetype LinkRows::goodCount() const
{
    return std::count(m_good.begin(), m_good.end(), true);
}

LinkRows::Piece LinkRows::keep(QStringView text)
{
    const Piece piece{static_cast<quint32>(m_texts.size()), static_cast<quint32>(text.size())};
    m_texts.append(text);
    return piece;
}
