#include "viewer/ViewerPage.h"

#include "controls/pages/PagePreview.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/PageText.h"
#include "tools/FileBelow.h"
#include "tools/PageReference.h"
#include "tools/html/HtmlScan.h"
#include "viewer/FindInPage.h"
#include "viewer/PictureFit.h"
#include "viewer/PublishedTargets.h"
#include "viewer/ReadableColours.h"
#include "viewer/SearchMarks.h"

#include <QPagedPaintDevice>
#include <QScrollBar>
#include <QToolTip>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto identifierScheme = "qvlink"_L1;
constexpr qint64 largestPage = 32LL * 1024 * 1024;

} // namespace

ViewerPage::ViewerPage(ViewerWorld &world, QWidget *parent)
    : QWidget(parent)
    , m_world(world)
    , m_view(new PagePreview(world.files, u"ENU"_s, this))
    , m_pictures(new PictureFit(m_view))
    , m_finding(new FindInPage(m_view, this))
{
    m_view->setObjectName(u"txtPage"_s);
    m_view->setAccessibleName(tr("Page"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_view, 1);
    layout->addWidget(m_finding);
    connect(m_view, &PagePreview::pageRequested, this, &ViewerPage::follow);
    connect(m_view, &PagePreview::anchorClicked, this, &ViewerPage::followIdentifier);
    connect(m_view, &PagePreview::addressShown, this, &ViewerPage::told);
    connect(m_view, &PagePreview::rereadRequested, this, &ViewerPage::rereadRequested);
}

void ViewerPage::open(const ViewerPlace &place, const QStringList &asked, int scroll)
{
    m_place = place;
    m_title = lastComponent(place.page);
    m_folder.clear();
    const auto cannotBeShown = [&](const QvError &error) {
        m_view->showPage(u"<h2>%1</h2><p>%2</p>"_s.arg(tr("This page cannot be shown"),
                                                       error.description().toHtmlEscaped()),
                         {}, {});
    };
    trap(cannotBeShown, [&] { load(place); });
    m_view->setExtraSelections({});
    if (!asked.isEmpty())
        mark(asked);
    else if (scroll > 0)
        m_view->verticalScrollBar()->setValue(scroll);
    else if (!place.anchor.isEmpty())
        m_view->scrollToAnchor(place.anchor);
}

void ViewerPage::load(const ViewerPlace &place)
{
    const QString folder = folderOf(place);
    const auto bytes = readFileBelow(m_world.files, folder, place.page, largestPage);
    if (!bytes)
        throw QvError(FileNotFound, {}, tr("There is no page %1.").arg(folder + place.page));
    const QString text = decodePage(*bytes, languageOf(place.set)).text;
    if (const QString title = scanHtml(text).title; !title.isEmpty())
        m_title = title;
    m_view->showPage(text, folder, place.page);
    makeReadable(*m_view->document(), palette().color(QPalette::Base));
    m_pictures->fit();
    m_folder = folder;
}

QString ViewerPage::folderOf(const ViewerPlace &place) const
{
    if (!place.set.isEmpty())
        return existingProjectFolder(m_world.files, m_world.session.serverPath, place.set);
    if (m_world.help.folder().isEmpty())
        throw QvError(FileNotFound, {},
                      tr("The help pages are not installed. Install QV Developer again, or set "
                         "QUOVANE_HELP to the folder that holds them."));
    return m_world.help.folder();
}

QString ViewerPage::languageOf(const QString &set) const
{
    const auto known = std::find_if(m_world.sets.cbegin(), m_world.sets.cend(),
                                    [&](const BookSet &one) { return one.name == set; });
    return known == m_world.sets.cend() ? u"ENU"_s : known->language;
}

void ViewerPage::mark(const QStringList &asked)
{
    QTextEdit::ExtraSelection selection;
    selection.format.setBackground(palette().highlight());
    selection.format.setForeground(palette().highlightedText());
    selection.cursor = QTextCursor(m_view->document());
    QList<QTextEdit::ExtraSelection> selections;
    for (const TextPiece &piece :
         searchMarks(m_view->toPlainText(), asked, languageOf(m_place.set))) {
        selection.cursor.setPosition(piece.start);
        selection.cursor.setPosition(piece.start + piece.length, QTextCursor::KeepAnchor);
        selections.append(selection);
    }
    m_view->setExtraSelections(selections);
    if (selections.isEmpty())
        return;
    QTextCursor first = selections.constFirst().cursor;
    first.setPosition(first.selectionStart());
    m_view->setTextCursor(first); // scrolls to it
}

int ViewerPage::scroll() const
{
    return m_view->verticalScrollBar()->value();
}

void ViewerPage::zoom(int steps)
{
    m_view->zoomIn(steps - m_zoom);
    m_zoom = steps;
}

void ViewerPage::print(QPagedPaintDevice &printer) const
{
    m_view->print(&printer);
}

QString ViewerPage::title() const
{
    return m_title;
}

void ViewerPage::follow(const QString &path, const QString &anchor)
{
    if (m_folder.isEmpty()) // a message is shown, which has no links
        return;
    const QString page = path.sliced(m_folder.size());
    if (isPageName(lastComponent(page)))
        Q_EMIT placeRequested({m_place.set, page, anchor});
    else
        Q_EMIT told(tr("%1 is no page and is not opened.").arg(page));
}

// Links between book sets name what they want; the link files say where it is.
void ViewerPage::followIdentifier(const QUrl &url)
{
    if (url.scheme() != identifierScheme || m_place.set.isEmpty())
        return;
    const QString identifier =
        QUrl::fromPercentEncoding(url.toEncoded().sliced(identifierScheme.size() + 1));
    QStringList sets{m_place.set};
    for (const BookSet &set : std::as_const(m_world.sets)) {
        if (set.name != m_place.set)
            sets.append(set.name);
    }
    const auto target =
        publishedTarget(m_world.session, m_world.files, m_world.characters, sets, identifier);
    QToolTip::hideText(); // of the address, which is known now
    if (target)
        Q_EMIT placeRequested(*target);
    else
        Q_EMIT told(tr("No book set publishes the target %1.").arg(identifier));
}
