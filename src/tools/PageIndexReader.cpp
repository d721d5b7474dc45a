#include "tools/PageIndexReader.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/HtmlScan.h"

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
    LinkReader(const QString &project, const QString &text, IndexedPage &page)
        : m_project(project)
        , m_text(text)
        , m_page(page)
    {
        m_page.linkFolder = parentFolder(m_page.path);
    }

    void takeBase(const PageReference &base)
    {
        IndexedLink link = linkAt(base, {});
        const PageTarget target = targetOf(link.written);
        const auto to = target.place == PageTarget::Place::Relative
                            ? targetInProject(m_project, m_page.linkFolder, target.path)
                            : std::nullopt;
        if (to) {
            const bool isFolder =
                target.path.endsWith(u'/') || to->isEmpty() || target.path.endsWith(".."_L1);
            link.target = *to;
            m_page.linkFolder = isFolder && !to->isEmpty() ? *to + u'\\'
                                : isFolder                 ? QString()
                                                           : parentFolder(*to);
            m_page.base = link;
        } else if (target.place != PageTarget::Place::SamePage) {
            m_leadsOut = true;
        }
    }

    void take(const QList<PageReference> &references, const QStringList &texts)
    {
        for (qsizetype i = 0; i < references.size(); ++i)
            take(linkAt(references[i], texts.value(i)));
        const auto byPlace = [](const IndexedLink &a, const IndexedLink &b) {
            return a.start < b.start;
        };
        std::stable_sort(m_page.links.begin(), m_page.links.end(), byPlace);
        countLines(m_page.links);
        countLines(m_page.outside);
    }

private:
    IndexedLink linkAt(const PageReference &reference, const QString &text) const
    {
        return {.kind = reference.kind,
                .target = {},
                .anchor = {},
                .start = reference.start,
                .length = reference.length,
                .written = m_text.sliced(reference.start, reference.length),
                .text = text};
    }

    void take(IndexedLink link)
    {
        const PageTarget target = targetOf(link.written);
        link.anchor = target.anchor;
        if (target.place == PageTarget::Place::SamePage) {
            if (!target.anchor.isEmpty())
                takeOwn(link);
            return;
        }
        const auto to = target.place == PageTarget::Place::Relative && !m_leadsOut
                            ? targetInProject(m_project, m_page.linkFolder, target.path)
                            : std::nullopt;
        link.target = to.value_or(QString());
        (to ? m_page.links : m_page.outside).append(link);
    }

    /// As browsers do, an anchor alone belongs to what <base> means.
    void takeOwn(IndexedLink link)
    {
        link.target = m_page.base ? m_page.base->target : m_page.path;
        (m_leadsOut ? m_page.outside : m_page.links).append(link);
    }

    void countLines(QList<IndexedLink> &links) const
    {
        int line = 1;
        qsizetype at = 0;
        for (IndexedLink &link : links) {
            if (link.start > at)
                line +=
                    static_cast<int>(QStringView(m_text).sliced(at, link.start - at).count(u'\n'));
            at = std::max(at, link.start);
            link.line = line;
        }
    }

    const QString &m_project;
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

bool isStyleSheetName(QStringView fileName)
{
    return fileName.endsWith(u".css", Qt::CaseInsensitive);
}

IndexedPage indexedPage(const QString &project, const QString &path, const QByteArray &bytes,
                        const QString &language)
{
    IndexedPage page;
    page.path = path;
    page.isStyleSheet = isStyleSheetName(path);
    const PageText text = decodePage(bytes, language);
    page.encoding = text.encoding;
    page.damaged = text.damaged;
    LinkReader reader(project, text.text, page);
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

IndexedPage readIndexedPage(FileSystem &files, const QString &projectFolder, const QString &path,
                            const QString &language)
{
    IndexedPage page;
    const auto unreadable = [&](const QvError &error) {
        page.path = path;
        page.title = lastComponent(path);
        page.problem = error.description();
    };
    trap(unreadable, [&] {
        const QString project = lastComponent(withoutBackslash(projectFolder));
        page = indexedPage(project, path, files.readFile(projectFolder + path), language);
    });
    return page;
}
