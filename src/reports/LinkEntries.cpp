#include "reports/LinkEntries.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto separator = "@@@"_L1;

} // namespace

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

LinkEntries::LinkEntries(QString docs)
    : m_docs(std::move(docs))
{
}

void LinkEntries::append(LinkRows rows)
{
    if (rows.size() == 0)
        return;
    m_ends.push_back(count() + rows.size());
    m_goodCount += rows.goodCount();
    m_files.append(std::move(rows));
}

qsizetype LinkEntries::count() const
{
    return m_ends.empty() ? 0 : m_ends.back();
}

QString LinkEntries::at(qsizetype index) const
{
    if (index >= count())
        return {};
    return status(index) + separator + identifier(index) + separator + address(index);
}

bool LinkEntries::isGood(qsizetype index) const
{
    const Place at = place(index);
    return at.rows.isGood(at.row);
}

QString LinkEntries::status(qsizetype index) const
{
    return isGood(index) ? u"OK"_s : u"BAD"_s;
}

QString LinkEntries::identifier(qsizetype index) const
{
    return identifierView(index).toString();
}

QString LinkEntries::address(qsizetype index) const
{
    return QString(m_docs).append(storedPath(index));
}

QStringView LinkEntries::identifierView(qsizetype index) const
{
    const Place at = place(index);
    return at.rows.identifier(at.row);
}

QStringView LinkEntries::storedPath(qsizetype index) const
{
    const Place at = place(index);
    return at.rows.path(at.row);
}

LinkEntries::Place LinkEntries::place(qsizetype index) const
{
    Q_ASSERT(index >= 0 && index < count());
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), index);
    const qsizetype file = end - m_ends.begin();
    const qsizetype begin = file == 0 ? 0 : *(end - 1);
    return {m_files.at(file), index - begin};
}
