#include "controls/pages/PagePane.h"

#include "controls/parts/Handler.h"
#include "controls/pages/PageEditor.h"
#include "platform/ProgramEnd.h"
#include "resources/Icons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

PagePane::PagePane(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_store(session)
    , m_atEnd(session.program().ending.before([this] { keepUnsaved(); }))
    , m_title(new QLabel(this))
    , m_encoding(new QLabel(this))
    , m_problem(new QLabel(this))
    , m_save(new QPushButton(icon("save"_L1), tr("&Save"), this))
    , m_revert(new QPushButton(icon("undo"_L1), tr("&Revert"), this))
    , m_recovery(recoveryBar())
    , m_editor(new PageEditor(this))
{
    layOut();
    connect(m_save, &QPushButton::clicked, this, &PagePane::save);
    connect(m_revert, &QPushButton::clicked, this, &PagePane::askRevert);
    connect(m_editor, &PageEditor::modificationChanged, this, &PagePane::updateState);
    connect(m_editor, &PageEditor::unlockRequested, this, &PagePane::unlock);
    showCurrent();
}

PagePane::~PagePane()
{
    m_session.program().ending.forget(m_atEnd);
}

void PagePane::layOut()
{
    m_title->setObjectName(u"lblPage"_s);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_encoding->setObjectName(u"lblEncoding"_s);
    m_encoding->setToolTip(tr("The page is saved in the encoding it has."));
    m_problem->setObjectName(u"lblPageProblem"_s);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    m_save->setObjectName(u"cmdSave"_s);
    m_save->setToolTip(tr("Save the page (Ctrl+S)"));
    m_revert->setObjectName(u"cmdRevert"_s);
    m_revert->setToolTip(tr("Go back to the page as it was saved last"));

    auto *bar = new QHBoxLayout;
    bar->addWidget(m_title, 1);
    bar->addWidget(m_encoding);
    bar->addWidget(m_save);
    bar->addWidget(m_revert);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_recovery);
    layout->addWidget(m_problem, 1);
    layout->addWidget(m_editor, 1);
}

QWidget *PagePane::recoveryBar()
{
    auto *bar = new QWidget(this);
    bar->setObjectName(u"recoveryBar"_s);
    auto *text = new QLabel(tr("Text of this page that was never saved has been kept."), bar);
    text->setWordWrap(true);
    auto *use = new QPushButton(tr("&Use the kept text"), bar);
    use->setObjectName(u"cmdUseRecovered"_s);
    auto *discard = new QPushButton(tr("&Discard it"), bar);
    discard->setObjectName(u"cmdDiscardRecovered"_s);
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins({});
    layout->addWidget(text, 1);
    layout->addWidget(use);
    layout->addWidget(discard);
    connect(use, &QPushButton::clicked, this, &PagePane::useRecovered);
    connect(discard, &QPushButton::clicked, this, &PagePane::discardRecovered);
    return bar;
}

void PagePane::showCurrent()
{
    const bool unsaved = m_page && m_editor->isModified();
    const bool kept = unsaved && rescueUnsaved();
    if (unsaved && !kept && m_page->project == m_session.projectName())
        return;
    const QString left = m_page ? m_session.shownPath(m_page->path) : QString();
    m_page.reset();
    load();
    if (kept)
        m_session.program().messages.show(
            {tr("The page you were editing is no longer open:\n%1\n\nYour unsaved text has been "
                "kept and is offered when the page is opened again.")
                 .arg(left)});
}

bool PagePane::rescueUnsaved()
{
    return handled(m_session.program(), [this] {
        m_store.keepForRecovery(*m_page, m_editor->text());
        return true;
    });
}

void PagePane::load()
{
    const auto &book = m_session.currentBook();
    const QString id = m_session.currentPage();
    m_editor->clear();
    m_recovery->hide();
    if (!book || id.isEmpty()) {
        show(tr("Choose a page of a book to see its source."));
        return;
    }
    const auto showProblem = [this](const QvError &error) { show(error.description()); };
    trap(showProblem, [&] {
        for (const BookPage &page : flattened(m_session.book(*book).pages)) {
            if (page.id == id)
                m_page = m_store.read(*book, page);
        }
        if (!m_page)
            throw QvError(FileNotFound, {}, tr("The book has no such page any more."));
        m_editor->setPage(m_page->content.text);
        m_editor->setReadOnlyReason(m_page->uneditable);
        m_editor->setLocked(m_page->locked);
        m_recovery->setVisible(m_store.recovered(*m_page).has_value());
        show({});
    });
}

void PagePane::show(const QString &problem)
{
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    m_editor->setVisible(problem.isEmpty());
    updateState();
    Q_EMIT pageShown();
}

QString PagePane::text() const
{
    return m_page ? m_editor->text() : QString();
}

void PagePane::updateState()
{
    const bool unsaved = m_page && m_editor->isModified();
    m_save->setEnabled(unsaved);
    m_revert->setEnabled(unsaved);
    m_title->setText(m_page ? (unsaved ? u"* "_s : QString()) + m_page->page.title : QString());
    m_title->setToolTip(m_page ? m_session.shownPath(m_page->path) : QString());
    m_encoding->setText(m_page ? QString::fromLatin1(m_page->content.encoding.name) : QString());
}

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
    forgetRecovered();
    m_editor->setLocked(false);
    updateState();
    Q_EMIT saved(m_page->page.file);
}

bool PagePane::saveAsUtf8(const QString &reason)
{
    const int answer = m_session.program().messages.choose(
        {tr("%1\n\nThe page can be saved as UTF-8, which has every character. Its declared "
            "character set is changed with it.")
             .arg(reason),
         {tr("&Save as UTF-8"), tr("Cancel")}});
    if (answer != 0)
        return false;
    m_editor->setPage(m_store.writeAsUtf8(*m_page, m_editor->text()));
    showSaved();
    return true;
}

// The page as this author began with it must still be the one on disk, or the author decides.
bool PagePane::settleConflict()
{
    if (!m_store.changedOnDisk(*m_page))
        return true;
    const int answer = m_session.program().messages.choose(
        {tr("Another author changed or removed this page since you opened it:\n%1")
             .arg(m_session.shownPath(m_page->path)),
         {tr("&Reload it and drop my changes"), tr("&Keep mine"), tr("Cancel")},
         2});
    if (answer == 0)
        revert();
    if (answer == 1)
        m_store.acceptDisk(*m_page);
    return answer != 2;
}

void PagePane::askRevert()
{
    const int answer = m_session.program().messages.choose(
        {tr("Drop the changes of the page \"%1\" that are not saved?").arg(m_page->page.title),
         {tr("&Drop them"), tr("Cancel")}});
    if (answer == 0)
        revert();
}

void PagePane::revert()
{
    forgetRecovered();
    reload();
}

void PagePane::reload()
{
    m_editor->setModified(false);
    m_page.reset();
    load();
}

bool PagePane::mayLeave()
{
    if (!m_page || !m_editor->isModified())
        return true;
    const int answer = m_session.program().messages.choose(
        {tr("The page \"%1\" has changes that are not saved.").arg(m_page->page.title),
         {tr("&Save"), tr("&Discard"), tr("Cancel")}});
    if (answer == 0)
        return save();
    if (answer == 1)
        forgetRecovered();
    return answer != 2;
}

void PagePane::noticeChanges()
{
    bool changed = false;
    // A file that cannot be read now is spoken of when the page is saved.
    trap([](const QvError &) {}, [&] { changed = m_page && m_store.changedOnDisk(*m_page); });
    if (!changed)
        return;
    if (!m_editor->isModified()) {
        reload();
        return;
    }
    const int answer = m_session.program().messages.choose(
        {tr("Another author changed or removed the page you are editing:\n%1")
             .arg(m_session.shownPath(m_page->path)),
         {tr("&Reload it and drop my changes"), tr("&Keep mine")},
         1});
    if (answer == 0)
        revert();
    else
        m_store.acceptDisk(*m_page);
}

void PagePane::unlock()
{
    const int answer = m_session.program().messages.choose(
        {tr("This page is locked against changes:\n%1\n\nUnlock it for editing?")
             .arg(m_session.shownPath(m_page->path)),
         {tr("&Unlock page"), tr("Cancel")}});
    if (answer != 0)
        return;
    handled(m_session.program(), [this] {
        m_store.unlock(*m_page);
        m_editor->setLocked(false);
    });
}

void PagePane::useRecovered()
{
    handled(m_session.program(), [this] {
        const auto kept = m_store.recovered(*m_page);
        if (!kept || !mayReplaceText())
            return;
        m_editor->setPage(*kept);
        m_editor->setModified(true);
        m_recovery->hide();
        updateState();
        Q_EMIT pageShown();
    });
}

void PagePane::discardRecovered()
{
    handled(m_session.program(), [this] {
        m_store.forgetRecovered(*m_page);
        m_recovery->hide();
    });
}

bool PagePane::mayReplaceText()
{
    return !m_editor->isModified()
           || m_session.program().messages.choose(
                  {tr("The kept text takes the place of what you have typed since."),
                   {tr("&Use the kept text"), tr("Cancel")},
                   1})
                  == 0;
}

// Kept text that the author has neither used nor refused stays. Where it cannot be removed it is
// offered once more, which harms nobody.
void PagePane::forgetRecovered()
{
    if (m_recovery->isHidden())
        trap([](const QvError &) {}, [this] { m_store.forgetRecovered(*m_page); });
}

// Nobody is asked here, and nobody could help when even this fails.
void PagePane::keepUnsaved()
{
    if (!m_page || !m_editor->isModified())
        return;
    trap([](const QvError &) {}, [this] { m_store.keepForRecovery(*m_page, m_editor->text()); });
}
