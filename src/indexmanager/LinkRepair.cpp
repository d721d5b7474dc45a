#include "indexmanager/LinkRepair.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/changes/StagedFiles.h"
#include "tools/build/BuildLock.h"
#include "tools/build/ScannedPages.h"
#include "tools/links/LinkIdentifiers.h"
#include "tools/rename/RenameSurvey.h"

#include <QCoreApplication>
#include <QSet>

#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("LinkRepair", text);
}

/// Where the pages of one set lie now, and what they publish.
class PagesOfSet final
{
public:
    PagesOfSet(Program &program, const QString &set, const Progress &progress)
    {
        Session session = program.session;
        const BuildInput input =
            readBuildInput(session, program.files, set, languageOf(program, set), progress);
        const ScannedPages pages = ScannedPages::read(program.files, input, {}, progress);
        for (const PublishedTarget &target : publishedTargets(input, pages)) {
            if (target.isThere)
                m_published[target.identifier].insert(target.place());
        }
        for (const ProjectListing::File &file : pages.listing().files())
            takeFile(ProjectListing::shown(file.path));
    }

    [[nodiscard]] bool isThere(const QString &page) const
    {
        return m_files.contains(page.toCaseFolded());
    }

    /// Nothing when there is no such place, or more than one.
    [[nodiscard]] std::optional<QString> publisher(const QString &identifier) const
    {
        return onlyOne(m_published.value(identifier));
    }
    [[nodiscard]] std::optional<QString> named(const QString &fileName) const
    {
        return onlyOne(m_names.value(fileName.toCaseFolded()));
    }

private:
    static std::optional<QString> onlyOne(const QSet<QString> &places)
    {
        return places.size() == 1 ? std::optional(*places.cbegin()) : std::nullopt;
    }

    void takeFile(const QString &path)
    {
        m_files.insert(path.toCaseFolded());
        if (isPageName(path))
            m_names[lastComponent(path).toCaseFolded()].insert(path);
    }

    QSet<QString> m_files; ///< folded
    QHash<QString, QSet<QString>> m_published, m_names;
};

class Search final
{
public:
    Search(const SetLinks &links, const PagesOfSet &pages)
        : m_links(links)
        , m_pages(pages)
    {
        for (qsizetype row = 0; row < links.targets.size(); ++row)
            m_known.insert(key(links.targets.identifier(row), links.targets.path(row)));
    }

    QList<MovedTarget> run()
    {
        for (qsizetype row = 0; row < m_links.targets.size(); ++row) {
            if (!m_links.targets.isGood(row))
                take(m_links.targets.identifier(row), m_links.targets.path(row));
        }
        return std::move(m_found);
    }

private:
    static QString key(QStringView identifier, QStringView path)
    {
        return identifier.toString() + u'\n' + path.toString().replace(u'/', u'\\').toCaseFolded();
    }

    void take(QStringView identifier, QStringView stored)
    {
        const StoredPlace place = storedPlace(stored);
        const bool isOwn = place.set.compare(m_links.set, Qt::CaseInsensitive) == 0;
        if (!isOwn || place.page.isEmpty() || m_pages.isThere(place.page)
            || m_pages.isThere(place.place())) // the whole may be a file's name
            return;
        MovedTarget moved{m_links.set, identifier.toString(), stored.toString(), {}};
        if (const auto publisher = m_pages.publisher(moved.identifier)) {
            note(moved, *publisher, MovedTarget::Because::Published);
        } else if (const auto page = m_pages.named(lastComponent(place.page))) {
            const StoredPlace now{place.set, *page, place.anchor};
            note(moved, now.place(), MovedTarget::Because::SameName);
        }
    }

    /// One that the file has already would stand there twice.
    void note(MovedTarget moved, const QString &place, MovedTarget::Because because)
    {
        moved.after = m_links.set + u'\\' + place;
        moved.because = because;
        const QString now = key(moved.identifier, moved.after);
        if (m_known.contains(now))
            return;
        m_known.insert(now);
        m_found.append(moved);
    }

    const SetLinks &m_links;
    const PagesOfSet &m_pages;
    QSet<QString> m_known;
    QList<MovedTarget> m_found;
};

bool hasBadTargets(const SetLinks &links)
{
    return links.targets.goodCount() < links.targets.size();
}

/// The paths of published targets as a listing reads them: with the identifier read last. Of two
/// entries that say the same, the first.
class StoredPaths final
{
public:
    explicit StoredPaths(const pugi::xml_document &links)
    {
        QString identifier;
        for (const pugi::xpath_node &found : links.select_nodes("LINKS/IBD/ID/*")) {
            const pugi::xml_node value = found.node();
            const std::string_view name = value.name();
            if (name == "LinkID")
                identifier = linkIdentifier(textOf(value));
            else if (const auto key = std::pair(identifier, textOf(value).trimmed());
                     name == "LinkIDSourceFile" && !m_nodes.contains(key))
                m_nodes.insert(key, value);
        }
    }

    [[nodiscard]] pugi::xml_node of(const MovedTarget &moved) const
    {
        return m_nodes.value({moved.identifier, moved.before});
    }

private:
    QHash<std::pair<QString, QString>, pugi::xml_node> m_nodes;
};

/// Puts the new place into the first entry that says the old one.
void repair(const StoredPaths &paths, const MovedTarget &moved, const QString &path)
{
    const pugi::xml_node stored = paths.of(moved);
    if (!stored)
        throw QvError(PathFileAccess, {},
                      tr("%1 no longer says that %2 is published in %3. Nothing was changed; read "
                         "the link files again.")
                          .arg(path, moved.identifier, moved.before));
    setText(stored, moved.after);
}

/// Pages that moved again since they were looked for would be lost a second time.
void requireStillMoved(FileSystem &files, const QString &folder, const MovedTarget &moved)
{
    const auto isThere = [&](const QString &stored) {
        const StoredPlace place = storedPlace(stored);
        const auto page = insideOf(folder, place.page);
        const auto whole = insideOf(folder, place.place());
        return (page && files.fileExists(*page)) || (whole && files.fileExists(*whole));
    };
    if (isThere(moved.before) || !isThere(moved.after))
        throw QvError(PathFileAccess, {},
                      tr("The page that publishes %1 moved again: it is not in %2, or back in %3. "
                         "Nothing was changed in this set; find the moved pages again.")
                          .arg(moved.identifier, moved.after, moved.before));
}

} // namespace

QList<MovedTarget> findMovedTargets(Program &program, const IdentifierIndex &index,
                                    QStringList &problems, const Progress &progress)
{
    QList<MovedTarget> found;
    const auto count = static_cast<int>(index.sets().size());
    int number = 0;
    for (const SetLinks &links : index.sets()) {
        progress.step(number, count, links.set);
        const Progress piece = progress.piece(number++, count, links.set);
        if (!hasBadTargets(links))
            continue;
        trap([&](const QvError &error) { problems.append(error.description()); },
             [&] {
                 const PagesOfSet pages(program, links.set, piece);
                 found += Search(links, pages).run();
             });
    }
    return found;
}

void repairTargets(Program &program, const QString &set, const QList<MovedTarget> &moved)
{
    FileSystem &files = program.files;
    const QString folder = existingProjectFolder(files, program.session.serverPath, set);
    const auto lock = lockBuild(files, folder);
    StagedFiles staged(files, folder);
    const QString path = folder + ProjectFile::links;
    pugi::xml_document links = loadXml(staged, path, "LINKS");
    const StoredPaths paths(links);
    for (const MovedTarget &one : moved) {
        requireStillMoved(files, folder, one);
        repair(paths, one, path);
    }
    saveXml(staged, path, links);
    FileChanges changes = staged.changes();
    changes.name = tr("Repair link identifiers");
    applyChanges(files, folder, changes);
}
