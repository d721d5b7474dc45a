#include "tools/PageIndexReader.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/TextLines.h"
#include "tools/html/HtmlScan.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString titleOf(const HtmlFacts &facts, const QString &path)
{
    if (!facts.title.isEmpty())
        return facts.title;
    return facts.firstHeading.isEmpty() ? lastComponent(path) : facts.firstHeading;
}

/// Fills the links of one page from what was found in its text.
class LinkReader final
{
public:
    LinkReader(LinkPlaces &places, const QString &text, IndexedPage &page)
        : m_places(places)
        , m_text(text)
        , m_page(page)
    {
        m_page.linkFolder = parentFolder(m_page.path);
    }

    void takeBase(const PageReference &base)
    {
        const LinkPlaces::Place &place = placeOf(base);
        const QString path = place.target.path;
        if (place.path) {
            m_page.base = linkAt(base, place, {});
            m_page.base->target = *place.path;
            m_page.linkFolder = baseFolder(path, *place.path);
        } else if (place.target.place != PageTarget::Place::SamePage) {
            m_leadsOut = true;
        }
    }

    void take(const QList<PageReference> &references, const QStringList &texts)
    {
        for (qsizetype i = 0; i < references.size(); ++i)
            take(references[i], texts.value(i));
        putInOrder(m_page.links);
        putInOrder(m_page.outside);
    }

private:
    const LinkPlaces::Place &placeOf(const PageReference &reference)
    {
        return m_places.of(m_page.linkFolder,
                           QStringView(m_text).sliced(reference.start, reference.length));
    }

    static IndexedLink linkAt(const PageReference &reference, const LinkPlaces::Place &place,
                              const QString &text)
    {
        return {.kind = reference.kind,
                .target = {},
                .anchor = place.target.anchor,
                .start = reference.start,
                .length = reference.length,
                .written = place.written,
                .text = text};
    }

    void take(const PageReference &reference, const QString &text)
    {
        const LinkPlaces::Place &place = placeOf(reference);
        IndexedLink link = linkAt(reference, place, text);
        if (place.target.place == PageTarget::Place::SamePage) {
            if (!link.anchor.isEmpty())
                takeOwn(std::move(link));
            return;
        }
        const bool inProject = place.path && !m_leadsOut;
        if (inProject)
            link.target = *place.path;
        (inProject ? m_page.links : m_page.outside).append(std::move(link));
    }

    /// As browsers do, an anchor alone belongs to what <base> means.
    void takeOwn(IndexedLink link)
    {
        link.target = m_page.base ? m_page.base->target : m_page.path;
        (m_leadsOut ? m_page.outside : m_page.links).append(std::move(link));
    }

    void putInOrder(QList<IndexedLink> &links) const
    {
        const auto byPlace = [](const IndexedLink &a, const IndexedLink &b) {
            return a.start < b.start;
        };
        if (!std::is_sorted(links.cbegin(), links.cend(), byPlace))
            std::stable_sort(links.begin(), links.end(), byPlace);
        TextLines lines(m_text);
        for (IndexedLink &link : links) {
            lines.goTo(link.start);
            link.line = lines.number();
        }
    }

    LinkPlaces &m_places;
    const QString &m_text;
    IndexedPage &m_page;
    bool m_leadsOut = false; ///< <base> means another place than the project
};

} // namespace

std::optional<QString> targetInProject(const QString &project, const QString &folder,
                                       const QString &path)
{
    const auto whole = joined(project + u'\\' + folder, path);
    if (!whole)
        return {};
    const QString top = whole->section(u'\\', 0, 0);
    const QString marker = u"**"_s + project + u"**"_s;
    if (top.compare(project, Qt::CaseInsensitive) != 0
        && top.compare(marker, Qt::CaseInsensitive) != 0)
        return {};
    return whole->size() > top.size() ? whole->sliced(top.size() + 1) : u""_s; // not a null one
}

QString baseFolder(const QString &path, const QString &to)
{
    const bool isFolder = path.endsWith(u'/') || to.isEmpty() || path.endsWith(".."_L1);
    return isFolder && !to.isEmpty() ? to + u'\\' : parentFolder(to);
}

bool isStyleSheetName(QStringView fileName)
{
    return fileName.endsWith(u".css", Qt::CaseInsensitive);
}

namespace {

IndexedPage indexedPage(const QString &path, const QByteArray &bytes, const QString &language,
                        LinkPlaces &places)
{
    IndexedPage page;
    page.path = path;
    page.isStyleSheet = isStyleSheetName(path);
    const PageText text = decodePage(bytes, language);
    page.encoding = text.encoding;
    page.damaged = text.damaged;
    LinkReader reader(places, text.text, page);
    if (page.isStyleSheet) {
        page.title = lastComponent(path);
        reader.take(scanCss(text.text), {});
        return page;
    }
    const HtmlFacts facts = scanHtml(text.text, HtmlDetail::All);
    page.hasBase = facts.hasBase;
    page.title = titleOf(facts, path);
    page.headings = facts.headings;
    page.anchors = facts.anchors;
    if (facts.base.length > 0)
        reader.takeBase(facts.base);
    reader.take(facts.references, facts.texts);
    return page;
}

} // namespace

IndexedPage readIndexedPage(FileSystem &files, const QString &projectFolder, const QString &path,
                            const QString &language, LinkPlaces &places)
{
    IndexedPage page;
    const auto unreadable = [&](const QvError &error) {
        page.path = path;
        page.title = lastComponent(path);
        page.problem = error.description();
    };
    trap(unreadable,
         [&] { page = indexedPage(path, files.readFile(projectFolder + path), language, places); });
    return page;
}
