#include "tools/build/TargetTable.h"

quint32 TargetTable::number(std::string_view path)
{
    const std::lock_guard guard(m_guard);
    if (const auto known = m_numbers.find(path); known != m_numbers.end())
        return known->second;
    const auto number = static_cast<quint32>(m_numbers.size());
    m_numbers.emplace(path, number);
    return number;
}

std::vector<std::string> TargetTable::take()
{
    std::vector<std::string> paths(m_numbers.size());
    while (!m_numbers.empty()) {
        auto node = m_numbers.extract(m_numbers.begin());
        paths[node.mapped()] = std::move(node.key());
    }
    return paths;
}
