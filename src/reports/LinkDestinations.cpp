#include "reports/LinkDestinations.h"

#include <QHashFunctions>

size_t LinkDestinations::hashOf(QStringView identifier)
{
    return qHash(identifier, QHashSeed::globalSeed());
}

void LinkDestinations::append(QStringView identifier)
{
    m_all.push_back({hashOf(identifier), static_cast<quint32>(m_texts.size()),
                     static_cast<quint32>(identifier.size()), 0});
    m_texts.append(identifier);
}

void LinkDestinations::settle(std::optional<quint32> place)
{
    if (!place)
        m_all.resize(m_settled);
    for (; m_settled < m_all.size(); ++m_settled)
        m_all[m_settled].place = *place;
}

void LinkDestinations::putBehind(LinkDestinations first)
{
    for (const Destination &destination : m_all) {
        first.append(identifier(destination));
        first.settle(destination.place);
    }
    *this = std::move(first);
}

void LinkDestinations::squeeze()
{
    m_texts.squeeze();
    m_all.shrink_to_fit();
}
