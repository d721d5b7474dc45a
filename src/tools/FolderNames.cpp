#include "tools/FolderNames.h"

#include <algorithm>

FolderNames::FolderNames(QList<FolderEntry> entries)
    : m_entries(std::move(entries))
{
    for (qsizetype entry = 0; entry < m_entries.size(); ++entry)
        m_folded.push_back({m_entries.at(entry).name.toCaseFolded(), entry});
    std::sort(m_folded.begin(), m_folded.end(),
              [](const Folded &one, const Folded &other) { return one.name < other.name; });
}

const FolderEntry *FolderNames::find(QStringView name) const
{
    const auto comesBefore = [](const auto &entry, QStringView wanted) {
        return entry.name < wanted;
    };
    const auto exact = std::lower_bound(m_entries.begin(), m_entries.end(), name, comesBefore);
    if (exact != m_entries.end() && exact->name == name)
        return &*exact;

    const QString folded = name.toString().toCaseFolded();
    const auto first = std::lower_bound(m_folded.begin(), m_folded.end(), folded, comesBefore);
    const auto fits = [&](auto at) { return at != m_folded.end() && at->name == folded; };
    if (!fits(first) || fits(first + 1))
        return nullptr;
    return &m_entries.at(first->entry);
}
