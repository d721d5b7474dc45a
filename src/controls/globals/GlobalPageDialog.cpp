#include "controls/globals/GlobalPageDialog.h"

#include "controls/globals/GlobalPageCommands.h"
#include "controls/globals/GlobalPageTypes.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "startup/Session.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;

namespace {

QString titleProblem(const QString &title)
{
    if (title.isEmpty())
        return GlobalPageDialog::tr("Enter the title of the page.");
    return title.size() > 200
               ? GlobalPageDialog::tr("The title is too long: at most 200 characters.")
               : QString();
}

} // namespace

GlobalPageDialog::GlobalPageDialog(ProjectSession &session, Task task, Run run, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_task(std::move(task))
    , m_run(std::move(run))
    , cboType(new QComboBox(this))
    , txtTitle(
          new CheckedField(u"txtPageTitle"_s, tr("Title of the page"), &titleProblem, {}, this))
    , txtFile(new CheckedField(
          u"txtPageFile"_s, tr("File of the page"),
          [this](const QString &file) {
              return isNew() ? GlobalPageCommands(m_session).problemOfFile(file) : QString();
          },
          [](const QString &file) {
              return file.contains("Book_"_L1)
                         ? QString()
                         : tr("Without \"Book_\" in its name the page becomes locked in copies of "
                              "the project.");
          },
          this))
    , cmdOk(new QPushButton(m_task.button, this))
{
    setWindowTitle(m_task.title);
    setObjectName(u"GlobalPageDialog"_s);
    layOut();
    fillTypes();
    txtTitle->setText(m_task.page.title);
    if (isNew()) {
        proposeTitle();
        proposeFile();
    }
    connect(cboType, &QComboBox::currentIndexChanged, this, &GlobalPageDialog::proposeTitle);
    connect(cboType, &QComboBox::currentIndexChanged, this, &GlobalPageDialog::proposeFile);
    for (CheckedField *field : {txtTitle, txtFile})
        connect(field, &CheckedField::edited, this, &GlobalPageDialog::judge);
    judge();
}

void GlobalPageDialog::layOut()
{
    cboType->setObjectName(u"cboPageType"_s);
    cboType->setAccessibleName(tr("Type of the page"));
    auto *form = new QFormLayout;
    form->addRow(tr("T&ype:"), cboType);
    form->addRow(tr("&Title:"), txtTitle);
    if (isNew())
        form->addRow(tr("&File:"), txtFile);
    else
        txtFile->hide();

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOk, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    cmdOk->setObjectName(u"cmdPageOk"_s);
    cmdOk->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &GlobalPageDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &GlobalPageDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(plainLabel(tr("A project has one page of each type, and any number of free "
                                    "pages."),
                                 this));
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    txtTitle->setFocus();
}

/// Types that are taken cannot be chosen and say why.
void GlobalPageDialog::fillTypes()
{
    const QList<GlobalPage> pages = m_session.globalPages();
    QString wanted = m_task.page.type;
    for (const QString &type : GlobalPageTypes::all()) {
        cboType->addItem(GlobalPageTypes::wordFor(type), type);
        const QString problem = GlobalPageTypes::problemOf(type, pages, m_task.page.id);
        const int row = cboType->count() - 1;
        cboType->setItemData(row, problem, Qt::ToolTipRole);
        if (auto *model = qobject_cast<QStandardItemModel *>(cboType->model()))
            model->item(row)->setEnabled(problem.isEmpty());
        if (wanted.isEmpty() && problem.isEmpty())
            wanted = type;
    }
    if (cboType->findData(wanted) < 0) // of another tool; stays until another one is chosen
        cboType->addItem(wanted, wanted);
    cboType->setCurrentIndex(cboType->findData(wanted));
}

void GlobalPageDialog::proposeTitle()
{
    const QString title = GlobalPageTypes::titleFor(cboType->currentData().toString(),
                                                    m_session.program().session.projectLanguage);
    if (isNew() && m_task.page.title.isEmpty() && !txtTitle->isEdited())
        txtTitle->setText(title);
    judge();
}

// Follows the type until the author enters a name.
void GlobalPageDialog::proposeFile()
{
    if (!isNew() || txtFile->isEdited())
        return;
    handled(m_session.program(), [this] {
        const QString wanted = m_task.page.file.isEmpty()
                                   ? cboType->currentData().toString() + u".htm"_s
                                   : m_task.page.file;
        txtFile->setText(GlobalPageCommands(m_session).freeFile(wanted));
    });
    judge();
}

void GlobalPageDialog::judge()
{
    const QString problem =
        txtTitle->problem().isEmpty() ? txtFile->problem() : txtTitle->problem();
    cmdOk->setEnabled(problem.isEmpty());
    cmdOk->setToolTip(problem);
}

GlobalPage GlobalPageDialog::page() const
{
    return {.id = m_task.page.id,
            .type = cboType->currentData().toString(),
            .title = txtTitle->text(),
            .file = isNew() ? txtFile->text() : m_task.page.file};
}

void GlobalPageDialog::accept()
{
    if (cmdOk->isEnabled() && m_run(page()))
        QDialog::accept();
}
