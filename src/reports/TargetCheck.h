#pragma once

#include "reports/LinkPlaces.h"
#include "tools/FolderIndex.h"

#include <QHash>
#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

/// Looks for the places that link files name: which of them are pages, with something in their
/// first line. Each folder is listed once and each page opened once, however many places lead to
/// it. Nothing outside the Docs folder and nothing behind a link below it is looked at.
class TargetCheck final
{
public:
    TargetCheck(FileSystem &files, const QString &docs);

    /// Notes the places of one file, which stays where it is until they have been checked.
    void add(LinkPlaces &places);

    [[nodiscard]] int folderCount() const { return static_cast<int>(m_folders.size()); }
    /// Its path below Docs, for messages.
    [[nodiscard]] QString folder(int number) const;
    /// Tells each place in one folder what was found; not all of them, once `stop` says so.
    /// Different folders may be checked by several threads at once.
    void checkFolder(int number, const std::stop_token &stop = {});

private:
    struct Probe
    {
        LinkPlaces *places;
        quint32 place;
    };
    struct Folder
    {
        QString path; ///< ends in a backslash
        std::vector<Probe> probes;
    };
    static constexpr int nowhere = -1;

    int folderOf(const QString &path, qsizetype nameBegin);
    [[nodiscard]] int folderAt(const QString &spelling);
    [[nodiscard]] std::optional<QString> realFolder(const QString &relative);
    [[nodiscard]] bool isFolder(const QString &relative) const;

    FileSystem &m_files;
    QString m_docs;
    bool m_canBeListed;
    FolderIndex m_index;
    QHash<QString, int> m_spellings; ///< numbers of folders, or `nowhere`, as paths spell them
    QHash<QString, int> m_numbers;   ///< by the real path below Docs
    std::vector<Folder> m_folders;
};
