#include "controls/books/DeleteBookDialog.h"

#include "controls/books/BookCommands.h"
#include "controls/parts/Handler.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
QLabel *plainLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}
} // namespace

DeleteBookDialog::DeleteBookDialog(ProjectSession &session, const TocBook &book, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_book(book)
    , m_entryOnly(
          new QRadioButton(tr("Take the book &out of the project and keep its files"), this))
    , m_alsoFiles(new QRadioButton(tr("Delete the book and all &files in its folder"), this))
{
    setWindowTitle(tr("Delete book"));
    setObjectName(u"DeleteBookDialog"_s);
    layOut();
}

void DeleteBookDialog::layOut()
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(
        plainLabel(tr("Delete the book \"%1\" (%2)?").arg(m_book.name, m_book.acronym), this));
    layout->addWidget(pageList());

    m_entryOnly->setObjectName(u"optEntryOnly"_s);
    m_alsoFiles->setObjectName(u"optAlsoFiles"_s);
    m_entryOnly->setChecked(true);
    layout->addWidget(m_entryOnly);
    layout->addWidget(m_alsoFiles);
    const QString kept = BookCommands(m_session).folderKeptBecause(m_book);
    m_alsoFiles->setEnabled(kept.isEmpty());
    layout->addWidget(plainLabel(
        kept.isEmpty() ? m_session.shownPath(m_session.folder() + m_book.folder) : kept, this));

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *remove = buttons->addButton(tr("&Delete book"), QDialogButtonBox::AcceptRole);
    remove->setObjectName(u"cmdDelete"_s);
    remove->setAutoDefault(false);
    buttons->addButton(QDialogButtonBox::Cancel)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &DeleteBookDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &DeleteBookDialog::reject);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
}

QWidget *DeleteBookDialog::pageList()
{
    QList<BookPage> pages;
    QString unreadable;
    trap([&](const QvError &error) { unreadable = error.description(); },
         [&] { pages = flattened(m_session.book(m_book).pages); });
    if (!unreadable.isEmpty())
        return plainLabel(unreadable, this);
    if (pages.isEmpty())
        return plainLabel(tr("It has no pages."), this);

    auto *list = new QListWidget(this);
    list->setObjectName(u"lstPages"_s);
    list->setAccessibleName(tr("Pages of the book"));
    list->setUniformItemSizes(true);
    for (const BookPage &page : std::as_const(pages))
        list->addItem(page.title.isEmpty() ? page.file : u"%1 (%2)"_s.arg(page.title, page.file));
    return list;
}

void DeleteBookDialog::accept()
{
    const bool deleted = handled(m_session.program(), [this] {
        BookCommands(m_session).remove(m_book, m_alsoFiles->isChecked());
        return true;
    });
    if (deleted)
        QDialog::accept();
}
