#pragma once

#include "platform/FileSystem.h"
#include "startup/HelpFolder.h"

#include <QList>
#include <QString>

struct HelpPage
{
    QString title;
    QString file; ///< relative to the help folder
};

/// The product's own help: a folder of pages, of which "index.html" leads to all.
class HelpPages final
{
public:
    static constexpr QLatin1StringView start = helpStartPage;

    /// `folder` ends in a backslash; "" when the help is not installed.
    HelpPages(FileSystem &files, QString folder);

    [[nodiscard]] const QString &folder() const { return m_folder; }
    /// The start page and those that it links to, in its order; read once. Raises 53 or 75 naming
    /// the page.
    [[nodiscard]] const QList<HelpPage> &pages();
    /// The page of a topic path ("QVT@qv@qvdev_ug@qv@Preview"): the one whose title is the last
    /// piece, without regard to case. The start page when there is none, or the topic is blank.
    [[nodiscard]] QString pageFor(const QString &topic);

private:
    [[nodiscard]] QString textOf(const QString &file) const;

    FileSystem &m_files;
    QString m_folder;
    QList<HelpPage> m_pages;
};
