#include "tools/navigation/QuickNavIndex.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "resources/Counted.h"
#include "tools/build/PageAnchors.h"

#include <QCoreApplication>
#include <QSet>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView authorFile = ProjectFile::quickNav;

QString tr(const char *text)
{
    return QCoreApplication::translate("QuickNavIndex", text);
}

struct Entry
{
    std::array<QString, 4> place; ///< view, group, topic, category
    QString title, target;
};

/// Goes through the author's quick navigation and gathers what the index holds.
class IndexMaker final
{
public:
    IndexMaker(const BuildInput &input, const ScannedPages &pages, const PageAnchors &anchors)
        : m_input(input)
        , m_pages(pages)
        , m_anchors(anchors)
    {
        for (const QuickNavNode &view : input.quickNav.views)
            takeNode(view, 0);
        countUnreached();
    }

    [[nodiscard]] QByteArray index() const
    {
        static constexpr std::array levels{"View", "Group", "Topic", "Category"};
        pugi::xml_document document;
        pugi::xml_node root = document.append_child("QV_QuickNav_Index");
        for (const Entry &entry : m_entries) {
            pugi::xml_node element = root.append_child("Entry");
            for (size_t level = 0; level < levels.size(); ++level)
                setAttribute(element, levels[level], entry.place[level]);
            appendText(element, "Entry_Title", entry.title);
            appendText(element, "Entry_Target", entry.target);
        }
        return xmlBytes(document);
    }

    [[nodiscard]] ToolReport report() const
    {
        const QString summary =
            tr("%1; %2, %3, %4.")
                .arg(counted(qsizetype(m_entries.size()), tr("1 entry"), tr("%1 entries")),
                     counted(m_dead, tr("1 dead link"), tr("%1 dead links")),
                     counted(m_empty, tr("1 place without links"), tr("%1 places without links")),
                     counted(m_unreached, tr("1 page that no entry leads to"),
                             tr("%1 pages that no entry leads to")));
        return {m_dead + m_empty > 0 ? ToolReport::Outcome::Warnings : ToolReport::Outcome::Good,
                summary, m_findings};
    }

private:
    void takeNode(const QuickNavNode &node, size_t level)
    {
        if (level >= m_place.size())
            return;
        m_place[level] = node.name;
        for (const QuickNavNode &child : node.children)
            takeNode(child, level + 1);
        for (const QuickNavLink &link : node.links)
            takeLink(link);
        if (node.children.isEmpty() && node.links.isEmpty()) {
            ++m_empty;
            find("NAV03"_L1, Severity::Warning, tr("%1 is empty.").arg(placeText(level)),
                 placeText(level));
        }
        m_place[level].clear();
    }

    void takeLink(const QuickNavLink &link)
    {
        const QString file = m_input.pageFile(link.book, link.page);
        const QString spelled = file.isEmpty() ? file : m_pages.listing().spelled(file);
        if (spelled.isEmpty()) {
            ++m_dead;
            find("NAV01"_L1, Severity::Error,
                 file.isEmpty()
                     ? tr("%1: the link \"%2\" leads to page %3 of book %4, which is in no "
                          "book's outline.")
                           .arg(placeText(3), titleOf(link, file), link.page, link.book)
                     : tr("%1: the link \"%2\" leads to %3, which is not there.")
                           .arg(placeText(3), titleOf(link, file), file),
                 link.book + u' ' + link.page);
            return;
        }
        m_reached.insert(file.toCaseFolded());
        takeAnchor(link, spelled);
    }

    void takeAnchor(const QuickNavLink &link, const QString &file)
    {
        const quint32 number = m_pages.listing().find(ProjectListing::listed(file)).file;
        const QString target = link.anchor.isEmpty() ? file : file + u'#' + link.anchor;
        const bool isFound =
            m_anchors.page(number) == nullptr || m_anchors.has(number, link.anchor.toStdString());
        if (!isFound)
            find("NAV02"_L1, Severity::Warning,
                 tr("%1: the link \"%2\" leads to the place #%3, which %4 does not have.")
                     .arg(placeText(3), titleOf(link, file), link.anchor, file),
                 target);
        m_dead += isFound ? 0 : 1;
        m_entries.append({m_place, titleOf(link, file), isFound ? target : file});
    }

    [[nodiscard]] QString titleOf(const QuickNavLink &link, const QString &file) const
    {
        if (!link.title.isEmpty())
            return link.title;
        const QList<PageOwner> owners = m_input.ownersOf(file);
        return owners.isEmpty() ? file : owners.first().title;
    }

    [[nodiscard]] QString placeText(size_t level) const
    {
        QStringList names;
        for (size_t at = 0; at <= level; ++at)
            names.append(m_place[at]);
        return names.join(u" > "_s);
    }

    /// Only where there is a quick navigation at all: a project may do without.
    void countUnreached()
    {
        if (m_input.quickNav.views.isEmpty())
            return;
        for (const BuildBook &book : m_input.books) {
            const QList<BookPage> outline = flattened(book.book.pages);
            qsizetype unreached = 0;
            for (const BookPage &page : outline)
                unreached += m_reached.contains((book.folder + page.file).toCaseFolded()) ? 0 : 1;
            m_unreached += unreached;
            if (unreached > 0)
                m_findings.append({u"NAV04"_s, Severity::Note, book.folder + book.entry.file, 0,
                                   tr("No entry leads to %1 of the %2 pages of %3.")
                                       .arg(QString::number(unreached),
                                            QString::number(outline.size()), book.entry.name),
                                   book.entry.acronym});
        }
    }

    void find(QLatin1StringView code, Severity severity, const QString &text,
              const QString &subject)
    {
        m_findings.append({code, severity, authorFile, 0, text, subject});
    }

    const BuildInput &m_input;
    const ScannedPages &m_pages;
    const PageAnchors &m_anchors;
    std::array<QString, 4> m_place;
    QList<Entry> m_entries;
    QList<Finding> m_findings;
    QSet<QString> m_reached; ///< folded
    int m_dead = 0, m_empty = 0;
    qsizetype m_unreached = 0;
};

/// Without it the index would be empty: the old one is better than that.
void checkAuthorFile(const BuildInput &input)
{
    for (const Finding &problem : input.problems) {
        if (problem.file == authorFile)
            throw QvError(PathFileAccess, {}, problem.text);
    }
}

} // namespace

ToolReport writeQuickNavIndex(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                              const PageAnchors &anchors, const Progress &progress)
{
    progress.step(0, 1);
    checkAuthorFile(input);
    const IndexMaker maker(input, pages, anchors);
    const ToolReport report = maker.report();
    progress.step(1, 1);

    const QString folder = input.folder + u"QuickNav"_s;
    if (!files.folderExists(folder))
        files.makeFolder(folder);
    files.replaceFile(folder + u"\\QuickNav_Log.txt"_s, logFile(tr("Quick navigation"), report),
                      {.throughReadOnly = true});
    files.replaceFile(folder + u"\\QuickNav.xml"_s, maker.index(), {.throughReadOnly = true});
    return report;
}
