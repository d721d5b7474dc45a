#pragma once

#include "projectfiles/TableOfContents.h"

#include <QByteArray>
#include <QString>

/// What the files of a project say once it has another name. Bytes in, bytes out: the same rule
/// serves the files on the disk and what can be undone, and done twice it changes nothing more.
class RenamedContent final
{
public:
    /// `language` (ENU, DEU, ...) says how pages without a declared charset are read; `header` is
    /// how the new name is split for the table of contents.
    RenamedContent(QString oldName, QString newName, QString language, PlatformAndVariation header);

    /// The file at `path`, relative to the project folder, under the new name: keys in the table of
    /// contents and in books, markers in pages (in the page's own encoding), folders in the link
    /// file. All else as it is. Raises 75 naming a file that is not what it should be, and 5 naming
    /// a page whose encoding lacks a character of the new name.
    [[nodiscard]] QByteArray of(const QString &path, const QByteArray &bytes) const;

    /// True for pages: files whose path holds ".htm".
    static bool isPage(const QString &path);
    /// Whether a page holds the marker of the old name.
    [[nodiscard]] bool hasMarker(const QByteArray &bytes) const;
    /// A link file under the new name, and how many of its paths change.
    [[nodiscard]] QByteArray links(const QString &path, const QByteArray &bytes,
                                   int *changed = nullptr) const;

private:
    [[nodiscard]] QByteArray toc(const QString &path, const QByteArray &bytes) const;
    [[nodiscard]] QByteArray book(const QString &path, const QByteArray &bytes) const;
    [[nodiscard]] QByteArray page(const QString &path, const QByteArray &bytes) const;

    QString m_old, m_new, m_language;
    PlatformAndVariation m_header;
};
