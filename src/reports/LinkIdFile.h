#pragma once

#include "components/XmlCharacters.h"
#include "platform/FileSystem.h"

#include <QString>
#include <QStringView>

#include <stop_token>

/// Told what the entries of one section of a link-ID file hold, in document order. The texts are
/// trimmed and valid only during the call.
class LinkVisitor
{
public:
    virtual ~LinkVisitor() = default;
    virtual void identifier(QStringView text) = 0; ///< as it is shown and compared
    virtual void path(QStringView stored) = 0;
    virtual void entryEnds() {}
};

/// What a link-ID file says about identifiers in its published targets as a whole.
class SectionVisitor
{
public:
    virtual ~SectionVisitor() = default;
    /// A section with a path of its own holds an entry whose whole text is `entryText`.
    virtual void sectionTarget(const QString &entryText, QStringView stored) = 0;
};

/// Who reads which part of a link-ID file; those that are null are not told anything.
struct LinkVisitors
{
    LinkVisitor *targets = nullptr;     ///< LINKS/IBD/ID: LinkID and LinkIDSourceFile
    LinkVisitor *references = nullptr;  ///< LINKS/IBS/USER: LinkID and FilePath
    SectionVisitor *sections = nullptr; ///< called after the others
};

/// Reads the link-ID file of a project, once and without a tree. Raises as `loadXml` does when it
/// is missing, or not well formed to its end: what the visitors were told then counts for nothing.
/// Stops early, with `Unwinding{Stopped}`, when `stop` says so.
void readLinkIdFile(FileSystem &files, const XmlCharacters &characters, const QString &path,
                    const LinkVisitors &visitors, const std::stop_token &stop);
