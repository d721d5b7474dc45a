#include "controls/pages/PagePreview.h"

#include "controls/pages/MissingPictures.h"
#include "controls/pages/PreviewDocument.h"
#include "platform/Paths.h"
#include "tools/html/HtmlScan.h"

#include <QCursor>
#include <QKeyEvent>
#include <QToolTip>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

// Laying out more than this would hold up the window.
constexpr qsizetype longestPage = 250'000;

/// The style sheets of a page, named in the one way that the document takes.
QString styleLinks(const QString &html)
{
    QString links;
    for (const PageReference &reference : scanHtml(html).references) {
        if (reference.kind == PageReference::Kind::Style)
            links += u"<link type=\"text/css\" href=\"%1\">"_s.arg(
                html.sliced(reference.start, reference.length).replace(u'"', "&quot;"_L1));
    }
    return links;
}

} // namespace

PagePreview::PagePreview(FileSystem &files, const QString &language, QWidget *parent)
    : QTextBrowser(parent)
    , m_page(new PreviewDocument(files, language, this))
{
    setObjectName(u"txtPreview"_s);
    setAccessibleName(tr("Preview of the page"));
    setOpenLinks(false);
    setDocument(m_page);
    connect(this, &QTextBrowser::anchorClicked, this, &PagePreview::follow);
    connect(this, &QTextBrowser::highlighted, this, &PagePreview::pointAt);
}

void PagePreview::showPage(const QString &html, const QString &projectFolder,
                           const QString &relativePage)
{
    m_projectFolder = withBackslash(projectFolder);
    m_relativePage = relativePage;
    m_page->startPage(m_projectFolder, relativePage);
    QString shown = u"<head>"_s + styleLinks(html) + u"</head>"_s;
    if (html.size() > longestPage)
        shown += u"<p><b>%1</b></p>"_s.arg(tr("This page is long; only its beginning is shown."));
    setHtml(shown + html.first(qMin(longestPage, html.size())));
    showMissingPictures(*m_page);
    moveCursor(QTextCursor::Start);
}

void PagePreview::showNothing()
{
    m_page->startPage({}, {});
}

void PagePreview::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F5)
        Q_EMIT rereadRequested();
    else
        QTextBrowser::keyPressEvent(event);
}

// Nothing makes the preview read a page by itself.
void PagePreview::doSetSource(const QUrl &, QTextDocument::ResourceType) {}

void PagePreview::follow(const QUrl &url)
{
    const PageTarget target = targetOf(url.toString(QUrl::FullyEncoded));
    const auto file = m_page->fileInProject(url);
    if (target.place == PageTarget::Place::SamePage) {
        scrollToAnchor(target.anchor);
    } else if (file) {
        Q_EMIT pageRequested(m_projectFolder + *file, target.anchor);
    } else {
        QToolTip::showText(QCursor::pos(), url.toDisplayString().toHtmlEscaped(), this);
        Q_EMIT addressShown(url.toDisplayString());
    }
}

void PagePreview::pointAt(const QUrl &url)
{
    const bool outside = !url.isEmpty() && !m_page->fileInProject(url);
    Q_EMIT addressShown(outside ? url.toDisplayString() : QString());
}
