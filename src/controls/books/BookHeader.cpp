#include "controls/books/BookHeader.h"

#include "controls/books/BookCommands.h"
#include "controls/books/BookRules.h"
#include "controls/books/CategoryList.h"
#include "controls/globals/CategoryNames.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"

#include <QFormLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {
QLineEdit *shownField(const QString &objectName, const QString &accessibleName, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(objectName);
    field->setAccessibleName(accessibleName);
    field->setReadOnly(true);
    field->setFrame(false); // it can be read and copied, and does not look like a field to fill
    QPalette plain = field->palette();
    plain.setColor(QPalette::Base, Qt::transparent);
    field->setPalette(plain);
    return field;
}
} // namespace

BookHeader::BookHeader(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_name(new CheckedField(
          u"txtName"_s, tr("Name of the book"),
          [this](const QString &text) { return BookRules::nameProblem(text, others()); }))
    , m_acronym(new CheckedField(
          u"txtAcro"_s, tr("Acronym of the book"),
          [this](const QString &text) { return BookRules::acronymProblem(text, others()); }))
    , m_folder(shownField(u"txtFolder"_s, tr("Folder of the book"), this))
    , m_file(shownField(u"txtFile"_s, tr("File of the book"), this))
    , m_type(shownField(u"txtType"_s, tr("Type of the book"), this))
    , m_categories(new CategoryList(this))
{
    layOut();
    for (CheckedField *field : {m_name, m_acronym}) {
        connect(field, &CheckedField::editingFinished, this, &BookHeader::commit);
        connect(field, &CheckedField::escaped, this, &BookHeader::showCurrent);
    }
    connect(m_categories, &CategoryList::changed, this, &BookHeader::commitCategories,
            Qt::QueuedConnection); // the list must not change inside its own signal
    showCurrent();
}

void BookHeader::layOut()
{
    auto *form = new QFormLayout(this);
    form->addRow(tr("&Name:"), m_name);
    form->addRow(tr("A&cronym:"), m_acronym);
    form->addRow(tr("Folder:"), m_folder);
    form->addRow(tr("File:"), m_file);
    form->addRow(tr("Type:"), m_type);
    form->addRow(tr("Ca&tegories:"), m_categories);
    m_categories->setObjectName(u"lstBookCategories"_s);
}

void BookHeader::showCurrent()
{
    m_book = m_session.currentBook().value_or(TocBook());
    setEnabled(m_session.currentBook().has_value());
    m_name->setText(m_book.name);
    m_acronym->setText(m_book.acronym);
    m_folder->setText(m_book.folder);
    m_folder->setToolTip(m_session.shownPath(m_session.folder() + m_book.folder));
    m_file->setText(m_book.file);
    m_type->setText(m_book.type);
    handled(m_session.program(), [this] {
        const QStringList available =
            m_session.projectName().isEmpty() ? QStringList() : availableCategories(m_session);
        m_categories->setCategories(available, m_book.categories);
    });
}

void BookHeader::refresh()
{
    const auto &now = m_session.currentBook();
    const bool isSame = now && now->name == m_book.name && now->acronym == m_book.acronym;
    if (isSame && isEdited())
        m_book = *now;
    else
        showCurrent();
}

bool BookHeader::isEdited() const
{
    return m_name->isEdited() || m_acronym->isEdited();
}

QList<TocBook> BookHeader::others() const
{
    QList<TocBook> books = m_session.books();
    books.removeOne(m_book);
    return books;
}

void BookHeader::commit()
{
    if (!isEdited() || !m_session.currentBook())
        return;
    TocBook now = m_book;
    if (m_name->isEdited() && m_name->problem().isEmpty())
        now.name = m_name->text();
    if (m_acronym->isEdited() && m_acronym->problem().isEmpty())
        now.acronym = m_acronym->text();
    if (now == m_book) {
        showCurrent();
        return;
    }
    const bool done = handled(m_session.program(), [&] {
        BookCommands(m_session).change(m_book, now);
        return true;
    });
    showCurrent();
    if (done)
        Q_EMIT renamed(now.name, now.acronym);
}

void BookHeader::commitCategories()
{
    TocBook now = m_book;
    now.categories = m_categories->checked();
    handled(m_session.program(), [&] { BookCommands(m_session).change(m_book, now); });
    showCurrent();
}
