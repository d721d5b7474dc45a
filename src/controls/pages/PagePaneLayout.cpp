// How the parts of the pane stand together, and what they tell each other.

#include "controls/pages/PageEditor.h"
#include "controls/pages/PagePane.h"
#include "controls/parts/NoticeBar.h"
#include "controls/session/ProjectPages.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

QWidget *PagePane::head()
{
    m_title->setObjectName(u"lblPage"_s);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_encoding->setObjectName(u"cmdEncoding"_s);
    m_encoding->setToolTip(tr("The page is saved in the encoding it has."));
    m_encoding->setPopupMode(QToolButton::InstantPopup);
    m_encoding->setMenu(new QMenu(m_encoding));
    m_encoding->setFocusPolicy(Qt::TabFocus);
    auto *convert = m_encoding->menu()->addAction(tr("&Convert to UTF-8..."));
    convert->setObjectName(u"actConvertToUtf8"_s);
    connect(convert, &QAction::triggered, this, &PagePane::convertToUtf8);
    m_save->setObjectName(u"cmdSave"_s);
    m_save->setToolTip(tr("Save the page (Ctrl+S)"));
    m_revert->setObjectName(u"cmdRevert"_s);
    m_revert->setToolTip(tr("Go back to the page as it was saved last"));

    auto *head = new QWidget(this);
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins({});
    row->addWidget(m_title, 1);
    row->addWidget(m_encoding);
    row->addWidget(m_save);
    row->addWidget(m_revert);
    return head;
}

void PagePane::makeBars()
{
    connect(m_keptBar->addButton(u"cmdUseRecovered"_s, tr("Use the &kept text")),
            &QPushButton::clicked, this, &PagePane::useKept);
    connect(m_keptBar->addButton(u"cmdDiscardRecovered"_s, tr("&Discard it")),
            &QPushButton::clicked, this, &PagePane::discardKept);
    m_conflictBar->setText(
        tr("Another author changed or removed this page while you were editing it."));
    connect(m_conflictBar->addButton(u"cmdReload"_s, tr("Re&load and drop mine")),
            &QPushButton::clicked, this, &PagePane::revert);
    connect(m_conflictBar->addButton(u"cmdKeepMine"_s, tr("Keep &mine")), &QPushButton::clicked,
            this, &PagePane::keepMine);
    connect(m_conflictBar->addButton(u"cmdCompare"_s, tr("Com&pare...")), &QPushButton::clicked,
            this, &PagePane::compare);
}

void PagePane::layOut()
{
    m_problem->setObjectName(u"lblPageProblem"_s);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(head());
    layout->addWidget(m_keptBar);
    layout->addWidget(m_conflictBar);
    layout->addWidget(m_problem, 1);
    layout->addWidget(m_editor, 1);
}

void PagePane::connectParts()
{
    connect(m_save, &QPushButton::clicked, this, &PagePane::save);
    connect(m_revert, &QPushButton::clicked, this, &PagePane::askRevert);
    connect(m_editor, &PageEditor::modificationChanged, this, &PagePane::updateState);
    connect(m_editor, &PageEditor::modificationChanged, this, [this](bool modified) {
        if (!modified)
            m_recovery.forget(); // undone to what the file holds, too
    });
    connect(m_editor, &PageEditor::textChanged, &m_recovery, &RecoveryKeeper::textChanged);
    connect(m_editor, &PageEditor::unlockRequested, this, &PagePane::unlock);
    connect(m_editor, &PageEditor::insertLinkRequested, this, &PagePane::insertLink);
    connect(m_editor, &PageEditor::nodesDropped, this, &PagePane::insertLinksTo);
    m_editor->offerLinks([this]() -> const PageIndex * {
        return m_session.pages().isReady() ? &m_session.pages().latest() : nullptr;
    });
    connect(&m_session, &ProjectSession::filesChanged, this, &PagePane::noticeFiles);
    auto *reread = new QShortcut(Qt::Key_F5, this, this, &PagePane::noticeChanges);
    reread->setContext(Qt::WidgetWithChildrenShortcut);
    m_session.setLeaveGuard(this, [this] { return save(); });
}
