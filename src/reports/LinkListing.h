#pragma once

#include "platform/Progress.h"
#include "reports/LinkDestinations.h"
#include "reports/LinkEntries.h"
#include "reports/LinkIdFile.h"
#include "reports/LinkPlaces.h"

#include <QString>
#include <QStringList>

#include <vector>

/// What the link file of one set says; nothing when there is none, or none that can be read.
struct SetLinks
{
    QString set;              ///< name of its folder below Docs
    QString problem = {};     ///< why the file could not be read; "" when it could or is not there
    LinkRows targets = {};    ///< good: the page is there, with something in its first line
    LinkRows references = {}; ///< good: the first target of the identifier is
};

/// How many threads of this machine a listing may take.
int listingThreads();

/// One run through the link files of some projects, on several threads: reads each file once, then
/// looks for the targets folder by folder. A file that cannot be read counts as empty. The file
/// system is asked by several threads at once.
class LinkListing final
{
public:
    LinkListing(FileSystem &files, const XmlCharacters &characters, QString serverPath,
                const QStringList &projects, int threads);

    [[nodiscard]] LinkEntries targets(const Progress &progress);
    [[nodiscard]] LinkEntries references(const Progress &progress);
    /// Both, set by set. Throws Unwinding when Stop was pressed.
    [[nodiscard]] std::vector<SetLinks> everything(const Progress &progress);
    /// Whether the first destination of the identifier is good.
    [[nodiscard]] bool leadsToPage(const QString &identifier);

private:
    struct LinkFile
    {
        SetLinks links;
        std::vector<quint32> rowPlaces = {}; ///< of published targets
        LinkPlaces places = {};
        LinkDestinations destinations = {}; ///< for references
    };
    using Read = void (LinkListing::*)(LinkFile &file, const std::stop_token &stop) const;

    void readTargets(LinkFile &file, const std::stop_token &stop) const;
    void readReferences(LinkFile &file, const std::stop_token &stop) const;
    void readDestinations(LinkFile &file, const std::stop_token &stop) const;
    void readBoth(LinkFile &file, const std::stop_token &stop) const;
    void read(LinkFile &file, const LinkVisitors &visitors, const std::stop_token &stop) const;
    [[nodiscard]] LinkFile &file(int number) { return m_linkFiles[static_cast<size_t>(number)]; }
    [[nodiscard]] int fileCount() const { return static_cast<int>(m_linkFiles.size()); }

    void readAndCheck(Read readFile, const Progress &progress);
    void judgeTargets();
    void resolve(const Progress &progress);
    [[nodiscard]] bool isPage(const QString &path) const;
    [[nodiscard]] LinkEntries joined(LinkRows SetLinks::*rows);

    FileSystem &m_files;
    const XmlCharacters &m_characters;
    QString m_serverPath;
    int m_threads;
    std::vector<LinkFile> m_linkFiles; ///< in the order of projects
};
