#pragma once

#include "reports/LinkEntries.h"

#include <QHash>
#include <QString>

class FileSystem;

/// Where the addresses of a report lead on this machine, for its form as a web page.
class LocalLinks final
{
public:
    /// `anchored`: the addresses are those of published targets, which hold anchors.
    LocalLinks(FileSystem &files, const LinkEntries &links, bool anchored);

    /// A file URL; "" for an address outside Docs, or for a name that can be no file here.
    [[nodiscard]] QString urlOf(const QString &address);

private:
    [[nodiscard]] QString urlOfPage(const QString &page) const;

    FileSystem &m_files;
    const QString m_docs;
    const bool m_anchored;
    QHash<QString, QString> m_urls; ///< by page: many links lead to one
};
