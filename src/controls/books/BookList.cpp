#include "controls/books/BookList.h"

#include "controls/books/BookCommands.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "platform/FileSystem.h"
#include "resources/Icons.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

BookList::BookList(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , txtFilter(new QLineEdit(this))
    , lstBooks(new QListWidget(this))
    , cmdNew(new QPushButton(icon("book-new"_L1), tr("New boo&k..."), this))
    , cmdDelete(new QPushButton(icon("delete"_L1), tr("Delete book..."), this))
{
    layOut();
    connect(txtFilter, &QLineEdit::textChanged, this, &BookList::filter);
    connect(lstBooks, &QListWidget::currentRowChanged, this, &BookList::choose);
    addCommands();
    rebuild();
}

void BookList::addCommands()
{
    const auto askDelete = [this] {
        if (const auto book = m_session.currentBook())
            Q_EMIT deleteRequested(*book);
    };
    connect(cmdNew, &QPushButton::clicked, this, &BookList::newRequested);
    connect(cmdDelete, &QPushButton::clicked, this, askDelete);
    const auto add = [this](const QString &text, QLatin1StringView picture,
                            const QKeySequence &keys, const auto &command) {
        addListAction(lstBooks, text, picture, keys, command);
    };
    add(tr("&New book..."), "book-new"_L1, Qt::Key_Insert, [this] { Q_EMIT newRequested(); });
    add(tr("&Rename"), "edit"_L1, Qt::Key_F2, [this] { Q_EMIT renameRequested(); });
    add(tr("&Delete book..."), "delete"_L1, QKeySequence::Delete, askDelete);
    add(tr("Move &up"), "up"_L1, Qt::ALT | Qt::Key_Up, [this] { move(-1); });
    add(tr("Move d&own"), "down"_L1, Qt::ALT | Qt::Key_Down, [this] { move(1); });
    add(tr("&Filter"), "filter"_L1, QKeySequence::Find, [this] { txtFilter->setFocus(); });
    lstBooks->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void BookList::layOut()
{
    txtFilter->setObjectName(u"txtBookFilter"_s);
    txtFilter->setAccessibleName(tr("Filter of the books"));
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setClearButtonEnabled(true);
    lstBooks->setObjectName(u"lstBooks"_s);
    lstBooks->setAccessibleName(tr("Books of the project"));
    lstBooks->setUniformItemSizes(true);
    lstBooks->setTextElideMode(Qt::ElideMiddle);
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    lstBooks->setIconSize({iconSize, iconSize});
    cmdNew->setObjectName(u"cmdNewBook"_s);
    cmdDelete->setObjectName(u"cmdDeleteBook"_s);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdNew);
    buttons->addWidget(cmdDelete);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(txtFilter);
    layout->addWidget(lstBooks);
    layout->addLayout(buttons);
}

void BookList::rebuild()
{
    const QSignalBlocker quiet(lstBooks);
    lstBooks->clear();
    const QIcon bookIcon = icon("book"_L1);
    for (const TocBook &book : m_session.books()) {
        auto *item =
            new QListWidgetItem(bookIcon, u"%1 (%2)"_s.arg(book.name, book.acronym), lstBooks);
        item->setToolTip(item->text() + u'\n' + book.folder);
    }
    cmdNew->setEnabled(!m_session.projectName().isEmpty());
    filter(txtFilter->text());
    followSession();
}

void BookList::followSession()
{
    const QSignalBlocker quiet(lstBooks);
    lstBooks->setCurrentRow(rowOfCurrent());
    cmdDelete->setEnabled(m_session.currentBook().has_value());
    cmdDelete->setToolTip(cmdDelete->isEnabled() ? QString() : tr("Choose a book of the list."));
}

int BookList::rowOfCurrent() const
{
    const auto &book = m_session.currentBook();
    return book ? static_cast<int>(m_session.books().indexOf(*book)) : -1;
}

void BookList::filter(const QString &text)
{
    for (int row = 0; row < lstBooks->count(); ++row) {
        QListWidgetItem *item = lstBooks->item(row);
        item->setHidden(!item->text().contains(text.trimmed(), Qt::CaseInsensitive));
    }
}

void BookList::choose(int row)
{
    if (row < 0)
        return;
    const TocBook book = m_session.books().at(row);
    // When the page that is open cannot be left, the list goes back to its book.
    if (!m_session.select(book))
        QMetaObject::invokeMethod(this, &BookList::followSession, Qt::QueuedConnection);
}

void BookList::move(int by)
{
    const auto book = m_session.currentBook();
    const int to = rowOfCurrent() + by;
    if (!book || to < 0 || to >= m_session.books().size())
        return;
    if (handled(m_session.program(), [&] { return BookCommands(m_session).move(*book, to); }))
        Q_EMIT changed();
}
