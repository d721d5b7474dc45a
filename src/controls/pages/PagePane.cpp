#include "controls/pages/PagePane.h"

#include "controls/pages/InsertLinkDialog.h"
#include "controls/pages/PageEditor.h"
#include "controls/pages/PageQuestions.h"
#include "controls/parts/Handler.h"
#include "controls/parts/NoticeBar.h"
#include "controls/session/ProjectPages.h"
#include "controls/tree/ProjectMime.h"
#include "platform/ProgramEnd.h"
#include "resources/Icons.h"
#include "startup/Session.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
bool samePage(const PageRef &a, const PageRef &b)
{
    return identityOf(a.book) == identityOf(b.book) && a.page.id == b.page.id;
}
} // namespace

PagePane::PagePane(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_store(session)
    , m_atEnd(session.program().ending.before([this] { keepUnsaved(); }))
    , m_title(new QLabel(this))
    , m_encoding(new QToolButton(this))
    , m_problem(new QLabel(this))
    , m_save(new QPushButton(icon("save"_L1), tr("&Save"), this))
    , m_revert(new QPushButton(icon("undo"_L1), tr("&Revert"), this))
    , m_keptBar(new NoticeBar(u"recoveryBar"_s, this))
    , m_conflictBar(new NoticeBar(u"conflictBar"_s, this))
    , m_editor(new PageEditor(this))
    , m_recovery(session.program().files, [this]() -> std::optional<QString> {
        return m_page && m_editor->isModified() ? std::optional(m_editor->text()) : std::nullopt;
    })
{
    makeBars();
    layOut();
    connectParts();
    showPage(std::nullopt);
}

PagePane::~PagePane()
{
    m_session.program().ending.forget(m_atEnd);
    if (!m_watched.isEmpty())
        m_session.unwatch(m_watched);
}

// Another author's edit is noticed while this one reads or types.
void PagePane::watchPage()
{
    const QString path = m_page ? m_page->path : QString();
    if (path == m_watched)
        return;
    if (!m_watched.isEmpty())
        m_session.unwatch(m_watched);
    m_watched = path;
    if (!path.isEmpty())
        m_session.watch(path, m_page->stamp);
}

void PagePane::showPage(const std::optional<PageRef> &ref, const QString &whyNone)
{
    if (followsTo(ref) || !leaveUnsaved())
        return;
    m_page.reset();
    m_recovery.begin({}, {});
    m_whyNone = whyNone.isEmpty() ? tr("Choose a page to see its source.") : whyNone;
    if (ref)
        load(*ref);
    else
        showText();
}

bool PagePane::followsTo(const std::optional<PageRef> &ref)
{
    const bool isShown =
        ref && m_page && m_page->project == m_session.projectName() && samePage(*ref, m_page->ref);
    if (!isShown)
        return false;
    const bool hasMoved =
        ref->page.file != m_page->ref.page.file || ref->book.folder != m_page->ref.book.folder;
    handled(m_session.program(), [&] { m_store.follow(*m_page, *ref); });
    if (hasMoved) {
        m_recovery.forget(); // under the name that the page had
        m_recovery.begin(m_session.folder(), m_page->relative);
        m_recovery.textChanged();
        m_editor->setLinksFrom(m_page->relative);
        noticeChanges();
    }
    updateState();
    return true;
}

/// False when the page must stay, because its text could not be kept.
bool PagePane::leaveUnsaved()
{
    if (!m_page || !m_editor->isModified())
        return true;
    if (!wasDone(m_session.program(), [this] { m_recovery.keepNow(m_editor->text()); }))
        return m_page->project != m_session.projectName();
    m_session.program().messages.show(
        {tr("The page you were editing is no longer open:\n%1\n\nYour unsaved text has been "
            "kept and is offered when the page is opened again.")
             .arg(m_session.shownPath(m_page->path))});
    return true;
}

void PagePane::load(const PageRef &ref)
{
    const auto noPage = [this](const QvError &error) { m_whyNone = error.description(); };
    trap(noPage, [&] { m_page = m_store.read(ref); });
    if (m_page)
        m_recovery.begin(m_session.folder(), m_page->relative);
    showText();
}

void PagePane::showText()
{
    m_conflictBar->hide();
    m_editor->clear();
    m_used.clear();
    if (m_page) {
        m_editor->setPage(m_page->content.text);
        m_editor->setReadOnlyReason(m_page->uneditable);
        m_editor->setLocked(m_page->locked);
        m_editor->setLinksFrom(m_page->relative);
    }
    showKept();
    showProblem(m_page ? QString() : m_whyNone);
}

void PagePane::showProblem(const QString &problem)
{
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    m_editor->setVisible(problem.isEmpty());
    updateState();
    Q_EMIT pageShown();
}

QString PagePane::selectedLine() const
{
    return m_editor->selectedLine();
}

QString PagePane::text() const
{
    return m_page ? m_editor->text() : QString();
}

void PagePane::showPlace(qsizetype start, qsizetype length)
{
    m_editor->showPlace(start, length);
}

void PagePane::updateState()
{
    watchPage();
    const bool unsaved = m_page && m_editor->isModified();
    if (m_page)
        m_session.setPageState(m_page->path, {unsaved, m_conflictBar->isVisibleTo(this)});
    m_save->setEnabled(unsaved);
    m_revert->setEnabled(unsaved);
    m_title->setText(m_page ? (unsaved ? u"* "_s : QString()) + m_page->ref.page.title : QString());
    m_title->setToolTip(m_page ? m_session.shownPath(m_page->path) : QString());
    const QString encoding =
        m_page ? QString::fromLatin1(m_page->content.encoding.name) : QString();
    m_encoding->setVisible(m_page.has_value());
    m_encoding->setText(encoding);
    m_encoding->setAccessibleName(tr("Encoding of the page: %1").arg(encoding));
    m_encoding->menu()->setEnabled(m_page && m_page->uneditable.isEmpty()
                                   && encoding != "UTF-8"_L1);
}

void PagePane::insertLink()
{
    if (!m_page || m_editor->isReadOnly())
        return;
    handled(m_session.program(), [this] {
        ProjectPages &pages = m_session.pages();
        auto *dialog = new InsertLinkDialog(pages.isReady() ? pages.latest() : pages.current(),
                                            m_page->relative, m_editor->selectedText(), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::accepted, this,
                [this, dialog] { m_editor->insertText(dialog->link()); });
        dialog->open();
    });
}

void PagePane::insertLinksTo(const DraggedNodes &dropped)
{
    if (!m_page || dropped.projectFolder != m_session.folder())
        return;
    QStringList links;
    for (const DraggedNode &node : dropped.nodes) {
        if (!node.path.isEmpty())
            links.append(linkTo(referenceTo(m_page->relative, node.path), node.title));
    }
    m_editor->insertText(links.join(u'\n'));
}

void PagePane::showKept()
{
    const auto kept = trap([](const QvError &) {}, [this] { return keptText(); });
    m_offered = kept ? kept->place : QString();
    m_keptBar->setVisible(kept.has_value());
    if (!kept)
        return;
    const QString what = tr("Text of this page that was never saved has been kept.");
    m_keptBar->setText(
        kept->mayBeNeeded ? what + u' ' + tr("Another author may still be working on it.") : what);
}

/// The newest that may be offered.
std::optional<KeptText> PagePane::keptText()
{
    if (!m_page)
        return {};
    for (const KeptText &text :
         KeptTexts(m_session.program().files).leftOf(m_session.folder(), m_page->relative)) {
        if (text.place != m_recovery.place())
            return text;
    }
    return {};
}

void PagePane::useKept()
{
    handled(m_session.program(), [this] {
        const QString kept = KeptTexts(m_session.program().files).textIn(m_offered);
        if (m_editor->isModified() && !PageQuestions::replaceByKept(m_session.program().messages))
            return;
        m_editor->replaceAll(kept);
        m_used = m_offered;
        m_keptBar->hide();
        updateState();
        Q_EMIT pageShown();
    });
}

void PagePane::discardKept()
{
    handled(m_session.program(),
            [this] { KeptTexts(m_session.program().files).discard(m_offered); });
    showKept();
}

// Kept text that the author has neither used nor refused stays. Where it cannot be removed it is
// offered once more, which harms nobody.
void PagePane::forgetKept()
{
    m_recovery.forget();
    if (m_used.isEmpty())
        return;
    trap([](const QvError &) {}, [this] { KeptTexts(m_session.program().files).discard(m_used); });
    m_used.clear();
    showKept();
}

// Nobody is asked here, and nobody could help when even this fails.
void PagePane::keepUnsaved()
{
    if (!m_page || !m_editor->isModified())
        return;
    trap([](const QvError &) {}, [this] { m_recovery.keepNow(m_editor->text()); });
}
