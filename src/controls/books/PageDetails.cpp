#include "controls/books/PageDetails.h"

#include "controls/books/ContextIdTable.h"
#include "controls/books/EntryList.h"
#include "controls/books/PageActions.h"
#include "controls/books/PageCommands.h"
#include "controls/books/PagePlaces.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/session/ProjectPages.h"
#include "platform/FileSystem.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {
QLabel *shownText(const char *objectName, QWidget *parent)
{
    QLabel *const label = plainLabel({}, parent);
    label->setObjectName(QString::fromLatin1(objectName));
    return label;
}

QHBoxLayout *besideEachOther(QWidget *text, QWidget *button)
{
    auto *row = new QHBoxLayout;
    row->addWidget(text, 1);
    row->addWidget(button);
    return row;
}
} // namespace

PageDetails::PageDetails(ProjectSession &session, PageActions *pages, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_pages(pages)
    , m_title(new CheckedField(u"txtTitle"_s, tr("Title of the page in the book"),
                               &PageRules::titleProblem, {}, this))
    , m_file(shownText("lblPageFile", this))
    , m_encoding(shownText("lblPageEncoding", this))
    , m_lock(shownText("lblLock", this))
    , cmdRename(new QPushButton(tr("&Rename file..."), this))
    , cmdLock(new QPushButton(this))
    , m_contextIds(new ContextIdTable([this] { return others().contextIds; }, this))
    , m_linkIds(new EntryList(
          {u"LinkId"_s, tr("New link id"), tr("Link ids of the page"), tr("A&dd"), tr("Re&move")},
          [this](const QString &text, const QStringList &entries) {
              return linkIdProblem(text, entries);
          },
          this))
{
    layOut();
    connectParts();
    refresh();
}

void PageDetails::layOut()
{
    cmdRename->setObjectName(u"cmdRenameFile"_s);
    cmdLock->setObjectName(u"cmdLock"_s);
    auto *form = new QFormLayout(this);
    form->addRow(tr("Title:"), m_title);
    form->addRow(tr("File:"), besideEachOther(m_file, cmdRename));
    form->addRow(tr("Encoding:"), m_encoding);
    form->addRow(tr("Lock:"), besideEachOther(m_lock, cmdLock));
    form->addRow(tr("Context ids:"), m_contextIds);
    form->addRow(tr("Link ids:"), m_linkIds);
}

void PageDetails::connectParts()
{
    connect(m_title, &CheckedField::editingFinished, this, &PageDetails::commitTitle);
    connect(m_title, &CheckedField::escaped, this, [this] { m_title->setText(m_page->title); });
    connect(cmdRename, &QPushButton::clicked, this,
            [this] { m_pages->askRenameFile(m_book, m_page->id); });
    connect(cmdLock, &QPushButton::clicked, this, [this] {
        const QString path = m_session.folder() + pathOfPage(m_session, m_book, *m_page);
        const bool isLocked = m_session.program().files.status(path).readOnly;
        m_pages->setLocked(m_book, {m_page->id}, !isLocked);
    });
    connect(m_contextIds, &ContextIdTable::changed, this, [this](const QList<ContextId> &ids) {
        const bool isDone = handled(m_session.program(), [&] {
            return PageCommands(m_session).setContextIds(m_book, m_page->id, ids);
        });
        if (isDone)
            Q_EMIT m_pages->changed();
        else
            refresh(); // what was typed is not in the book
    });
    connect(m_linkIds, &EntryList::addRequested, this,
            [this](const QString &id) { setLinkIds(m_page->linkIds + QStringList{id}); });
    connect(m_linkIds, &EntryList::removeRequested, this, [this](const QString &id) {
        QStringList left = m_page->linkIds;
        left.removeOne(id);
        setLinkIds(left);
    });
    connect(&m_session.pages(), &ProjectPages::updated, this, &PageDetails::showFile);
    connect(&m_session, &ProjectSession::filesChanged, this, &PageDetails::showFile);
}

void PageDetails::refresh()
{
    const auto &book = m_session.currentBook();
    const QString before = m_page ? m_page->id : QString();
    m_book = book.value_or(TocBook());
    m_page = book ? pageOfBook(m_session, *book, m_session.currentPage()) : std::nullopt;
    m_others.reset();
    setEnabled(m_page.has_value());
    const BookPage shown = m_page.value_or(BookPage());
    if (!m_title->isEdited() || before != shown.id)
        m_title->setText(shown.title);
    m_contextIds->setIds(shown.contextIds, shown.title);
    m_linkIds->setEntries(shown.linkIds);
    showFile();
}

void PageDetails::showFile()
{
    const QString path = m_page ? pathOfPage(m_session, m_book, *m_page) : QString();
    const IndexedPage *const indexed = m_session.pages().latest().page(path);
    m_file->setText(m_page ? m_page->file : QString());
    m_file->setToolTip(path.isEmpty() ? path : m_session.shownPath(m_session.folder() + path));
    m_encoding->setText(indexed == nullptr ? tr("not read yet")
                                           : QString::fromLatin1(indexed->encoding.name));
    FileStatus status;
    trap([](const QvError &) {},
         [&] {
             if (!path.isEmpty())
                 status = m_session.program().files.status(m_session.folder() + path);
         });
    const bool isThere = status.kind == FileKind::File;
    m_lock->setText(!isThere          ? tr("The file is missing.")
                    : status.readOnly ? tr("The page is locked.")
                                      : tr("The page can be edited."));
    cmdLock->setText(status.readOnly ? tr("Unlo&ck page") : tr("Lo&ck page"));
    cmdLock->setEnabled(isThere);
    cmdRename->setEnabled(isThere);
    cmdLock->setToolTip(isThere ? QString() : m_lock->text());
    cmdRename->setToolTip(cmdLock->toolTip());
}

void PageDetails::commitTitle()
{
    if (!m_page || !m_title->isEdited())
        return;
    const QString title = m_title->text();
    const bool isGood = m_title->problem().isEmpty() && title != m_page->title;
    m_title->setText(m_page->title);
    if (isGood)
        m_pages->rename(m_book, m_page->id, title);
}

void PageDetails::setLinkIds(const QStringList &linkIds)
{
    const bool isDone = handled(m_session.program(), [&] {
        return PageCommands(m_session).setLinkIds(m_book, m_page->id, linkIds);
    });
    if (isDone)
        Q_EMIT m_pages->changed();
}

const PageRules::OtherPages &PageDetails::others()
{
    if (!m_others)
        m_others = PageRules::otherPages(m_session, m_book, m_page ? m_page->id : QString());
    return *m_others;
}

QString PageDetails::linkIdProblem(const QString &linkId, const QStringList &entries)
{
    if (linkId.isEmpty())
        return PageRules::linkIdProblem(linkId, {}); // without looking through the project
    return PageRules::linkIdProblem(linkId, others().linkIds + entries);
}
