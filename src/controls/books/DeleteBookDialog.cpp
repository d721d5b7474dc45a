#include "controls/books/DeleteBookDialog.h"

#include "controls/books/BookCommands.h"
#include "controls/books/WhatGoes.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

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
    addPages(layout);

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

void DeleteBookDialog::addPages(QVBoxLayout *layout)
{
    QList<BookPage> pages;
    QString unreadable;
    trap([&](const QvError &error) { unreadable = error.description(); },
         [&] { pages = flattened(m_session.book(m_book).pages); });
    if (unreadable.isEmpty())
        addWhatGoes(layout, m_session, m_book, pages);
    else
        layout->addWidget(plainLabel(unreadable, this));
}

void DeleteBookDialog::accept()
{
    const auto remove = [this] {
        BookCommands(m_session).remove(m_book, m_alsoFiles->isChecked());
    };
    if (wasDone(m_session.program(), remove))
        QDialog::accept();
}
