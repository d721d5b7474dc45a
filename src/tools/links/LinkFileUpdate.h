#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

#include <pugixml.hpp>

/// An entry of a link file: an identifier, and where it is published or asked for, relative to
/// Docs.
struct LinkEntry
{
    QString identifier, path;
};

/// What a project says now.
struct ProjectLinks
{
    QString project; ///< the folder with which its own paths begin, without backslash
    QList<LinkEntry> targets, references;
    /// Pages and folders (relative to Docs, the latter with backslash) that could not be read, so
    /// that what the file has of them stays.
    QStringList unread;
    /// Whether a file (relative to Docs) is there. Entries that came out of a legacy database
    /// stand in no page, and stay while theirs is.
    std::function<bool(const QString &file)> isThere = [](const QString &) { return false; };
};

/// The file with this in place of what it said.
struct LinkFileUpdate
{
    QByteArray bytes; ///< the same for the same links, in whatever order they came
    int gone = 0;     ///< entries that nothing in the project says any more
};

/// `old` is the file as it is, empty when there is none. Entries are sorted by identifier and path;
/// what else an entry that stays holds is kept, and so are other sections.
LinkFileUpdate updatedLinkFile(const pugi::xml_document &old, const ProjectLinks &links);
