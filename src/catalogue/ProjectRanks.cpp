#include "catalogue/CatalogueFile.h"
#include "catalogue/CatalogueLock.h"
#include "catalogue/ProjectCatalogue.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

using Ranks = QHash<QString, QString>;

class CatalogueRanking final : public ProjectRanking
{
public:
    CatalogueRanking(Session &session, FileSystem &files)
        : m_session(session)
        , m_files(files)
    {
    }

    void UpdateProjectRank(const QString &name, const QString &rank) override
    {
        store({{name.trimmed(), rank}});
    }
    void UpdateProjectRanks(const QStringList &items) override;

private:
    void store(const Ranks &ranks);

    Session &m_session;
    FileSystem &m_files;
};

// A name may hold "#" itself; empty entries are none.
void CatalogueRanking::UpdateProjectRanks(const QStringList &items)
{
    Ranks ranks;
    for (const QString &item : items) {
        const qsizetype mark = item.lastIndexOf(u'#');
        if (mark >= 0) {
            ranks.insert(item.first(mark).trimmed(), item.sliced(mark + 1));
        } else if (!item.isEmpty()) {
            store(ranks); // what stands before it counts
            throw QvError(InvalidCall, {}, u"This entry has no rank: "_s + item);
        }
    }
    store(ranks);
}

void CatalogueRanking::store(const Ranks &ranks)
{
    if (ranks.isEmpty())
        return;

    const QString path = cataloguePath(m_session.serverPath);
    if (!m_files.exists(path))
        throw QvError(FileNotFound, {}, u"File not found: "_s + path);
    const CatalogueLock lock(m_files, path);
    const pugi::xml_document catalogue = loadCatalogue(m_files, path);
    for (const pugi::xpath_node &entry : allNames(catalogue)) {
        const auto rank = ranks.constFind(textOf(entry.node()).trimmed());
        if (rank != ranks.constEnd())
            setAttribute(entry.node(), "Rank", *rank);
    }
    saveXml(m_files, path, catalogue);
}

} // namespace

std::unique_ptr<ProjectRanking> makeProjectRanking(Session &session, FileSystem &files)
{
    return std::make_unique<CatalogueRanking>(session, files);
}
