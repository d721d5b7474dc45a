#include "controls/books/BookList.h"

#include "controls/parts/Handler.h"
#include "platform/FileSystem.h"
#include "resources/Icons.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

BookList::BookList(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , txtFilter(new QLineEdit(this))
    , lstBooks(new QListWidget(this))
    , cmdNew(new QPushButton(icon("book-new"_L1), tr("&New book..."), this))
    , cmdDelete(new QPushButton(icon("delete"_L1), tr("&Delete book..."), this))
{
    layOut();
    connect(txtFilter, &QLineEdit::textChanged, this, &BookList::filter);
    connect(lstBooks, &QListWidget::currentRowChanged, this, &BookList::choose);
    connect(cmdNew, &QPushButton::clicked, this, &BookList::newRequested);
    const auto askDelete = [this] {
        if (const auto book = m_session.currentBook())
            Q_EMIT deleteRequested(*book);
    };
    connect(cmdDelete, &QPushButton::clicked, this, askDelete);
    const auto onKey = [this](const QKeySequence &keys, const auto &action) {
        connect(new QShortcut(keys, lstBooks, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, action);
    };
    onKey(QKeySequence::Delete, askDelete);
    onKey(Qt::Key_Insert, [this] { Q_EMIT newRequested(); });
    onKey(QKeySequence::Find, [this] { txtFilter->setFocus(); });
    rebuild();
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
        item->setToolTip(book.folder);
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
