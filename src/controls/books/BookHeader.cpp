#include "controls/books/BookHeader.h"

#include "controls/books/BookCommands.h"
#include "controls/books/BookRules.h"
#include "controls/books/CategoryList.h"
#include "controls/globals/CategoryCommands.h"
#include "controls/globals/CategoryNames.h"
#include "controls/globals/CategoryRules.h"
#include "controls/links/MovePages.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "controls/parts/NameDialog.h"
#include "platform/FileSystem.h"
#include "resources/Icons.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

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
          [this](const QString &text) { return BookRules::nameProblem(text, others()); }, {}, this))
    , m_acronym(new CheckedField(
          u"txtAcro"_s, tr("Acronym of the book"),
          [this](const QString &text) { return BookRules::acronymProblem(text, others()); }, {},
          this))
    , m_folder(shownField(u"txtFolder"_s, tr("Folder of the book"), this))
    , m_file(shownField(u"txtFile"_s, tr("File of the book"), this))
    , m_type(new CheckedField(
          u"txtType"_s, tr("Type of the book"),
          [](const QString &text) { return BookRules::typeProblem(text); }, {}, this))
    , m_facts(shownField(u"txtFacts"_s, tr("State of the book"), this))
    , m_categories(new CategoryList(this))
    , cmdFolder(new QPushButton(tr("Change..."), this))
    , cmdCategory(new QPushButton(icon("add"_L1), tr("Ne&w category..."), this))
{
    layOut();
    connectFields();
    showCurrent();
}

void BookHeader::layOut()
{
    m_categories->setObjectName(u"lstBookCategories"_s);
    cmdFolder->setObjectName(u"cmdBookFolder"_s);
    cmdCategory->setObjectName(u"cmdNewCategory"_s);
    auto *form = new QFormLayout(this);
    form->addRow(tr("&Name:"), m_name);
    form->addRow(tr("A&cronym:"), m_acronym);
    form->addRow(tr("Folder:"), folderRow());
    form->addRow(tr("File:"), m_file);
    form->addRow(tr("T&ype:"), m_type);
    form->addRow(tr("State:"), m_facts);
    form->addRow(tr("Categorie&s:"), m_categories);
    form->addRow(QString(), cmdCategory);
    setTabOrder(m_folder, cmdFolder);
    setTabOrder(cmdFolder, m_file);
}

QWidget *BookHeader::folderRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_folder);
    layout->addWidget(cmdFolder);
    return row;
}

void BookHeader::connectFields()
{
    for (CheckedField *field : {m_name, m_acronym, m_type}) {
        connect(field, &CheckedField::editingFinished, this, &BookHeader::commit);
        connect(field, &CheckedField::escaped, this, &BookHeader::showCurrent);
    }
    connect(m_categories, &CategoryList::changed, this, &BookHeader::commitCategories,
            Qt::QueuedConnection); // the list must not change inside its own signal
    connect(cmdFolder, &QPushButton::clicked, this, &BookHeader::askFolder);
    connect(cmdCategory, &QPushButton::clicked, this, &BookHeader::askCategory);
    connect(&m_session, &ProjectSession::categoriesChanged, this, &BookHeader::showCategories);
    connect(&m_session, &ProjectSession::bookChanged, this, &BookHeader::showFacts);
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
    showFacts();
    showCategories();
}

void BookHeader::showCategories()
{
    handled(m_session.program(), [this] {
        const QStringList available =
            m_session.projectName().isEmpty() ? QStringList() : availableCategories(m_session);
        QHash<QString, int> uses;
        for (const TocBook &book : m_session.books()) {
            for (const QString &category : book.categories)
                ++uses[category.toCaseFolded()];
        }
        m_categories->setCategories(available, m_book.categories, uses);
    });
}

void BookHeader::showFacts()
{
    QString facts;
    trap([&](const QvError &) { facts = tr("The book's file cannot be read."); },
         [&] {
             const auto entry = m_session.currentBook();
             if (!entry)
                 return;
             const Book &book = m_session.book(*entry);
             const QDate date = QDate::fromString(book.dateChanged, Qt::ISODate);
             facts = tr("%1 pages, last changed %2")
                         .arg(QString::number(flattened(book.pages).size()),
                              date.isValid() ? QLocale().toString(date, QLocale::ShortFormat)
                                             : tr("on an unknown day"));
             const QString path = m_session.folder() + entry->folder + u'\\' + entry->file;
             if (m_session.program().files.status(path).readOnly)
                 facts += tr(", locked");
         });
    m_facts->setText(facts);
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
    return m_name->isEdited() || m_acronym->isEdited() || m_type->isEdited();
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
    const auto take = [](const CheckedField *field, QString &value) {
        if (field->isEdited() && field->problem().isEmpty())
            value = field->text();
    };
    take(m_name, now.name);
    take(m_acronym, now.acronym);
    take(m_type, now.type);
    const bool isRenamed = now.name != m_book.name || now.acronym != m_book.acronym;
    const bool isDone = now != m_book && change(now);
    showCurrent();
    if (isDone && isRenamed)
        Q_EMIT renamed(now.name, now.acronym);
}

bool BookHeader::change(const TocBook &now)
{
    const bool isDone =
        handled(m_session.program(), [&] { return BookCommands(m_session).change(m_book, now); });
    if (isDone)
        Q_EMIT changed();
    return isDone;
}

void BookHeader::commitCategories()
{
    TocBook now = m_book;
    now.categories = m_categories->checked();
    if (now != m_book)
        change(now);
    showCurrent();
}

void BookHeader::askFolder()
{
    if (!m_session.mayLeave())
        return;
    const TocBook book = m_book;
    const auto problem = [this, book](const QString &text) {
        return MovePages(m_session, this).problemOfFolder(book, text);
    };
    const auto rename = [this, book](const QString &folder) {
        const bool isDone = handled(m_session.program(), [&] {
            return MovePages(m_session, this).renameBookFolder(book, folder);
        });
        if (isDone)
            Q_EMIT pagesChanged();
        return isDone;
    };
    auto *dialog =
        new NameDialog({tr("Rename the book's folder"), tr("&Folder:"), tr("&Rename"), book.folder},
                       problem, rename, this, &BookRules::folderAdvice);
    dialog->open();
}

// The new category is the book's at once: why else make it here.
void BookHeader::askCategory()
{
    const auto problem = [this](const QString &text) {
        return CategoryRules::problemOf(text, m_categories->names());
    };
    const auto create = [this](const QString &name) {
        const bool isDone = wasDone(m_session.program(),
                                    [&] { CategoryCommands(m_session).add(name, {}, m_book); });
        if (isDone)
            Q_EMIT changed();
        showCurrent();
        return isDone;
    };
    auto *dialog = new NameDialog({tr("New category"), tr("&Name of the category:"), tr("&Create")},
                                  problem, create, this);
    dialog->open();
}
