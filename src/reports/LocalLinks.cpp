#include "reports/LocalLinks.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "reports/ReportText.h"

#include <QUrl>

namespace {

QString fragmentOf(const LinkedPage &page)
{
    if (page.anchor.isEmpty())
        return {};
    return u'#' + QString::fromLatin1(QUrl::toPercentEncoding(page.anchor, "!$&'()*+,;=:@/?%"));
}

} // namespace

LocalLinks::LocalLinks(FileSystem &files, const LinkEntries &links, bool anchored)
    : m_files(files)
    , m_docs(links.docs())
    , m_anchored(anchored)
{
}

QString LocalLinks::urlOf(const QString &address)
{
    const auto page = pageOf(address, m_docs, m_anchored);
    if (!page)
        return {};
    if (!m_urls.contains(page->path))
        m_urls.insert(page->path, urlOfPage(page->path));
    const QString url = m_urls.value(page->path);
    return url.isEmpty() ? url : url + fragmentOf(*page);
}

QString LocalLinks::urlOfPage(const QString &page) const
{
    return trap([](const QvError &) {}, // it is listed all the same
                [&] {
                    const QUrl url = QUrl::fromLocalFile(m_files.nativePath(page));
                    return url.toString(QUrl::FullyEncoded);
                });
}
