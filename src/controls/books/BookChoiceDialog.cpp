#include "controls/books/BookChoiceDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

BookChoiceDialog::BookChoiceDialog(ProjectSession &session, const TocBook &from, QWidget *parent)
    : QDialog(parent)
    , cboBook(new QComboBox(this))
{
    setObjectName(u"BookChoiceDialog"_s);
    setWindowTitle(tr("Move to another book"));
    cboBook->setObjectName(u"cboBook"_s);
    cboBook->setAccessibleName(tr("Book that the pages go to"));
    for (const TocBook &book : session.books()) {
        if (identityOf(book) == identityOf(from))
            continue;
        m_others.append(book);
        cboBook->addItem(u"%1 (%2)"_s.arg(book.name, book.acronym));
    }

    auto *form = new QFormLayout;
    form->addRow(tr("&Book:"), cboBook);
    auto *buttons = new QDialogButtonBox(this);
    QPushButton *const ok = buttons->addButton(tr("&Move"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(u"cmdMove"_s);
    ok->setEnabled(!m_others.isEmpty());
    ok->setToolTip(m_others.isEmpty() ? tr("The project has no other book.") : QString());
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 56);
}

std::optional<TocBook> BookChoiceDialog::book() const
{
    const int row = cboBook->currentIndex();
    return row < 0 ? std::nullopt : std::optional(m_others.at(row));
}
