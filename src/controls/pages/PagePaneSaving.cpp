// Saving the page of a PagePane, and what to do when somebody else wrote it meanwhile.
#include "controls/pages/PagePane.h"

#include "controls/pages/CompareDialog.h"
#include "controls/pages/PageEditor.h"
#include "controls/pages/PageQuestions.h"
#include "controls/parts/Handler.h"
#include "controls/parts/NoticeBar.h"
#include "startup/Session.h"
#include "tools/PageCharset.h"

#include <algorithm>

using namespace Qt::StringLiterals;

bool PagePane::save()
{
    if (!m_page || !m_editor->isModified())
        return true;
    const bool saved = handled(m_session.program(), [this] { return settleConflict() && write(); });
    if (!saved)
        showLock();
    return saved;
}

// A page that was locked while it was edited offers to unlock it.
void PagePane::showLock()
{
    trap([](const QvError &) {},
         [this] {
             if (m_page)
                 m_editor->setLocked(m_store.isLocked(*m_page));
         });
}

bool PagePane::write()
{
    if (!m_editor->isModified())
        return true; // the author took the other author's text
    const QString text = m_editor->text();
    if (const QString reason = m_store.reasonAgainstEncoding(*m_page, text); !reason.isEmpty())
        return saveAsUtf8(reason);
    m_store.write(*m_page, text);
    m_editor->setModified(false);
    showSaved();
    return true;
}

void PagePane::showSaved()
{
    forgetKept();
    m_conflictBar->hide();
    m_editor->setLocked(false);
    updateState();
    Q_EMIT m_session.filesChanged({m_page->relative});
    Q_EMIT saved(m_page->ref.page.file);
}

bool PagePane::saveAsUtf8(const QString &reason)
{
    if (!PageQuestions::saveAsUtf8(m_session.program().messages, reason))
        return false;
    m_editor->replaceAll(m_store.writeAsUtf8(*m_page, m_editor->text()));
    m_editor->setModified(false);
    showSaved();
    return true;
}

void PagePane::convertToUtf8()
{
    if (!m_page || !save())
        return;
    handled(m_session.program(), [this] {
        const PageText now = inUtf8(m_page->content.text);
        const QString was = QString::fromLatin1(m_page->content.encoding.name);
        if (!PageQuestions::convertToUtf8(m_session.program().messages, was, !now.encoding.mark))
            return;
        m_session.perform(tr("Convert %1 to UTF-8").arg(m_page->ref.page.file),
                          [&](StagedFiles &files) {
                              files.replaceFile(m_page->path, encodePage(now.text, now.encoding));
                          });
        Q_EMIT m_session.done(tr("%1 is kept in UTF-8 now.").arg(m_page->ref.page.file));
    });
}

// The page as this author began with it must still be the one on disk, or the author decides.
bool PagePane::settleConflict()
{
    if (!m_store.changedOnDisk(*m_page))
        return true;
    using enum PageQuestions::Conflict;
    switch (PageQuestions::saveOverOther(m_session.program().messages,
                                         m_session.shownPath(m_page->path))) {
    case Reload:
        revert();
        return true;
    case KeepMine:
        m_store.acceptDisk(*m_page);
        return true;
    case Stay:
        m_conflictBar->show();
    }
    return false;
}

void PagePane::askRevert()
{
    if (PageQuestions::dropChanges(m_session.program().messages, m_page->ref.page.title))
        revert();
}

void PagePane::revert()
{
    forgetKept();
    reload();
}

// The author goes on where he was.
void PagePane::reload()
{
    const PageRef ref = m_page->ref;
    const PageEditor::View view = m_editor->view();
    m_editor->setModified(false);
    m_page.reset();
    load(ref);
    m_editor->setView(view);
}

bool PagePane::mayLeave()
{
    if (!m_page || !m_editor->isModified())
        return true;
    using enum PageQuestions::Leave;
    switch (PageQuestions::leave(m_session.program().messages, m_page->ref.page.title)) {
    case Save:
        return save();
    case Discard:
        forgetKept();
        return true;
    case Stay:
        break;
    }
    return false;
}

void PagePane::noticeFiles(const QStringList &paths)
{
    const bool isMine =
        m_page && std::any_of(paths.cbegin(), paths.cend(), [this](const QString &path) {
            return carriedOver(m_page->relative, path, path).has_value();
        });
    if (isMine)
        noticeChanges();
}

void PagePane::noticeChanges()
{
    bool changed = false;
    // A file that cannot be read now is spoken of when the page is saved.
    trap([](const QvError &) {}, [&] { changed = m_page && m_store.changedOnDisk(*m_page); });
    if (changed && !m_editor->isModified())
        reload();
    else
        m_conflictBar->setVisible(changed);
    showLock();
}

void PagePane::keepMine()
{
    handled(m_session.program(), [this] {
        OpenPage seen = *m_page;
        m_store.acceptDisk(seen);
        keepMineOver(seen);
    });
}

void PagePane::keepMineOver(const OpenPage &seen)
{
    m_page->bytes = seen.bytes;
    m_page->gone = seen.gone;
    m_editor->setModified(true); // even where it was undone to what was read
    noticeChanges();
    m_editor->setFocus();
}

// The author decides about what he sees: what somebody writes meanwhile is asked about again.
void PagePane::compare()
{
    handled(m_session.program(), [this] {
        OpenPage seen = *m_page;
        m_store.acceptDisk(seen);
        auto *dialog = new CompareDialog(m_page->ref.page.title, m_store.textRead(seen),
                                         m_editor->text(), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::finished, this, [this, seen](int answer) {
            if (answer == QDialog::Accepted)
                revert();
            else if (answer == CompareDialog::Kept)
                keepMineOver(seen);
        });
        dialog->open();
    });
}

void PagePane::unlock()
{
    Program &program = m_session.program();
    if (!PageQuestions::unlock(program.messages, m_session.shownPath(m_page->path)))
        return;
    handled(program, [this] {
        m_store.unlock(*m_page);
        m_editor->setLocked(false);
        Q_EMIT m_session.filesChanged({m_page->relative});
    });
}
