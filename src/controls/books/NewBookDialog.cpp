#include "controls/books/NewBookDialog.h"

#include "controls/books/BookCommands.h"
#include "controls/books/BookRules.h"
#include "controls/books/CategoryList.h"
#include "controls/globals/CategoryNames.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "platform/FileSystem.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

NewBookDialog::NewBookDialog(ProjectSession &session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_name(new CheckedField(
          u"txtBookName"_s, tr("Name of the book"),
          [this](const QString &text) { return BookRules::nameProblem(text, m_session.books()); }))
    , m_acronym(new CheckedField(
          u"txtBookAcro"_s, tr("Acronym of the book"),
          [this](const QString &text) {
              return BookRules::acronymProblem(text, m_session.books());
          },
          {}, this))
    , m_folder(new CheckedField(
          u"txtBookFolder"_s, tr("Folder of the book"),
          [this](const QString &text) { return BookRules::folderProblem(text, m_session.books()); },
          [this](const QString &text) {
              return m_session.program().files.exists(m_session.folder() + text)
                         ? tr("This folder is there already; the book takes it over.")
                         : BookRules::folderAdvice(text);
          },
          this))
    , m_categories(new CategoryList(this))
    , m_create(new QPushButton(tr("&Create book"), this))
{
    setWindowTitle(tr("New book"));
    setObjectName(u"NewBookDialog"_s);
    layOut();
    handled(m_session.program(),
            [this] { m_categories->setCategories(availableCategories(m_session), {}); });
    connect(m_acronym, &CheckedField::edited, this, &NewBookDialog::proposeFolder);
    for (CheckedField *field : {m_name, m_acronym, m_folder})
        connect(field, &CheckedField::edited, this, &NewBookDialog::judge);
    judge();
}

void NewBookDialog::layOut()
{
    auto *form = new QFormLayout;
    form->addRow(tr("&Name:"), m_name);
    form->addRow(tr("&Acronym:"), m_acronym);
    form->addRow(tr("&Folder:"), m_folder);
    form->addRow(tr("Ca&tegories:"), m_categories);
    m_categories->setObjectName(u"lstCategories"_s);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_create, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    m_create->setObjectName(u"cmdCreateBook"_s);
    m_create->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &NewBookDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &NewBookDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    m_name->setFocus();
}

TocBook NewBookDialog::book() const
{
    TocBook book;
    book.name = m_name->text();
    book.acronym = m_acronym->text();
    book.key = m_session.projectName();
    book.folder = m_folder->text();
    book.file = BookRules::fileFor(book.acronym);
    book.categories = m_categories->checked();
    return book;
}

// Follows the acronym until the author enters a folder.
void NewBookDialog::proposeFolder()
{
    if (m_folder->isEdited())
        return;
    const QString acronym = m_acronym->text();
    m_folder->setText(acronym.isEmpty() ? QString() : BookRules::folderFor(acronym));
}

void NewBookDialog::judge()
{
    QString problem;
    for (const CheckedField *field : {m_folder, m_acronym, m_name}) {
        if (const QString says = field->problem(); !says.isEmpty())
            problem = says;
    }
    m_create->setEnabled(problem.isEmpty());
    m_create->setToolTip(problem);
}

void NewBookDialog::accept()
{
    const TocBook entered = book();
    if (wasDone(m_session.program(), [&] { BookCommands(m_session).create(entered); }))
        QDialog::accept();
}
