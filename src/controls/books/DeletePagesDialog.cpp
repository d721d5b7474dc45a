#include "controls/books/DeletePagesDialog.h"

#include "controls/books/OutlineEdit.h"
#include "controls/books/WhatGoes.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

DeletePagesDialog::DeletePagesDialog(ProjectSession &session, const TocBook &book,
                                     const QStringList &pages, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_alsoFiles(new QRadioButton(tr("Delete the pages and their &files"), this))
    , m_entryOnly(new QRadioButton(tr("Take the pages &out of the book and keep the files"), this))
{
    setObjectName(u"DeletePagesDialog"_s);
    QList<BookPage> outline = session.book(book).pages;
    const QList<BookPage> gone =
        flattened(OutlineEdit::take(outline, QSet<QString>(pages.cbegin(), pages.cend())));
    setWindowTitle(gone.size() == 1 ? tr("Delete page") : tr("Delete %1 pages").arg(gone.size()));
    layOut(book, gone);
}

void DeletePagesDialog::layOut(const TocBook &book, const QList<BookPage> &pages)
{
    auto *layout = new QVBoxLayout(this);
    addWhatGoes(layout, m_session, book, pages);

    m_alsoFiles->setObjectName(u"optPagesAndFiles"_s);
    m_entryOnly->setObjectName(u"optPagesOnly"_s);
    m_alsoFiles->setChecked(true);
    layout->addWidget(m_alsoFiles);
    layout->addWidget(m_entryOnly);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *const remove = buttons->addButton(tr("&Delete"), QDialogButtonBox::AcceptRole);
    remove->setObjectName(u"cmdDeletePages"_s);
    remove->setDefault(true); // it can be undone
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    remove->setFocus();
}

bool DeletePagesDialog::alsoFiles() const
{
    return m_alsoFiles->isChecked();
}
