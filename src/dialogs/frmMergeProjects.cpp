#include "dialogs/frmMergeProjects.h"

#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "components/Components.h"
#include "components/XmlCharacters.h"
#include "dialogs/MergeFindingsDialog.h"
#include "dialogs/NewProjectFolder.h"
#include "dialogs/ProjectCreation.h"
#include "dialogs/merge/ProjectMerge.h"
#include "startup/ExternalPrograms.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"
#include "ui_frmMergeProjects.h"

#include <QKeyEvent>
#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList textsOf(const QListWidget &list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts.append(list.item(row)->text());
    return texts;
}

/// Puts the selected items behind those of the other list, in their order, and selects the item
/// that comes next.
void moveSelected(QListWidget &from, QListWidget &to)
{
    int next = -1;
    for (int row = 0; row < from.count();) {
        if (from.item(row)->isSelected()) {
            to.addItem(from.takeItem(row));
            next = row;
        } else {
            ++row;
        }
    }
    if (next < 0)
        return;
    to.scrollToBottom();
    if (from.count() > 0)
        from.setCurrentRow(std::min(next, from.count() - 1));
    else
        to.setFocus(); // what had the focus cannot be used any more
}

} // namespace

frmMergeProjects::frmMergeProjects(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmMergeProjects>())
{
    ui->setupUi(this);
    connectControls();
}

frmMergeProjects::~frmMergeProjects() = default;

void frmMergeProjects::connectControls()
{
    using Self = frmMergeProjects;
    connect(ui->lstAvaProjects, &QListWidget::itemSelectionChanged, this,
            &Self::lstAvaProjects_Click);
    connect(ui->lstProjectsToMerge, &QListWidget::itemSelectionChanged, this,
            &Self::lstProjectsToMerge_Click);
    connect(ui->lstAvaProjects, &QListWidget::itemDoubleClicked, this, &Self::cmdAddMerge_Click);
    connect(ui->lstProjectsToMerge, &QListWidget::itemDoubleClicked, this, &Self::cmdRemove_Click);
    ui->lstAvaProjects->installEventFilter(this);
    ui->lstProjectsToMerge->installEventFilter(this);
    connect(ui->cmdAddMerge, &QPushButton::clicked, this, &Self::cmdAddMerge_Click);
    connect(ui->cmdRemove, &QPushButton::clicked, this, &Self::cmdRemove_Click);
    connect(ui->cmdMergeContinue, &QPushButton::clicked, this, &Self::cmdMergeContinue_Click);
    connect(ui->cmdMergeBack, &QPushButton::clicked, this, &Self::cmdMergeBack_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &Self::cmdCancel_Click);
    connect(ui->cmdHelp, &QPushButton::clicked, this, &Self::cmdHelp_Click);
}

void frmMergeProjects::Form_Load()
{
    inHandler("Form_Load"_L1, [this] {
        loadCaptions();
        fillAvailable();
        ui->lstAvaProjects->setFocus();
    });
}

void frmMergeProjects::loadCaptions()
{
    ui->fraMergeProjects->setTitle(text(Text::MergeProjects));
    ui->lblAvaProjects->setText(text(Text::AvailableProjects));
    ui->lblProjToMerge->setText(text(Text::ProjectsToMerge));
    ui->cmdAddMerge->setText(text(Text::AddToMerge));
    ui->cmdRemove->setText(text(Text::RemoveFromMerge));
    ui->lblMergeProjName->setText(text(Text::EnterMergedProjectName));
    ui->lblProjId->setText(text(Text::EnterProjectId));
    ui->cmdMergeContinue->setText(text(Text::ContinueWizard));
    ui->cmdMergeBack->setText(text(Text::Back));
    ui->cmdCancel->setText(text(Text::Cancel));
    ui->cmdHelp->setText(text(Text::Help));
}

void frmMergeProjects::fillAvailable()
{
    ProjectCatalogue catalogue(m_program.session, m_program.files);
    QStringList names = catalogue.GetProdQVSelection_All();
    names.removeAll(QString()); // the slots before the first name
    ui->lstAvaProjects->addItems(names);
}

void frmMergeProjects::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        if (!mbQuietClose)
            cancel = !saysYes(text(Text::CloseProgram));
    });
}

void frmMergeProjects::lstAvaProjects_Click()
{
    ui->cmdAddMerge->setEnabled(ui->lstAvaProjects->selectionModel()->hasSelection());
}

void frmMergeProjects::lstProjectsToMerge_Click()
{
    ui->cmdRemove->setEnabled(ui->lstProjectsToMerge->selectionModel()->hasSelection());
}

void frmMergeProjects::cmdAddMerge_Click()
{
    inHandler("cmdAddMerge_Click"_L1,
              [this] { moveSelected(*ui->lstAvaProjects, *ui->lstProjectsToMerge); });
}

void frmMergeProjects::cmdRemove_Click()
{
    inHandler("cmdRemove_Click"_L1, [this] {
        moveSelected(*ui->lstProjectsToMerge, *ui->lstAvaProjects);
        SortlstAvaProjects();
    });
}

void frmMergeProjects::SortlstAvaProjects()
{
    inHandler("SortlstAvaProjects"_L1, [this] {
        QStringList names = textsOf(*ui->lstAvaProjects);
        const auto before = [](const QString &one, const QString &other) {
            return one.toUpper().compare(other.toUpper(), Qt::CaseInsensitive) < 0;
        };
        std::stable_sort(names.begin(), names.end(), before);
        ui->lstAvaProjects->clear();
        ui->lstAvaProjects->addItems(names);
        lstAvaProjects_Click(); // clearing a list does not tell that its selection is gone
    });
}

bool frmMergeProjects::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return FormWindow::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (watched == ui->lstAvaProjects && isEnter)
        cmdAddMerge_Click();
    else if (watched == ui->lstProjectsToMerge && (isEnter || key == Qt::Key_Delete))
        cmdRemove_Click();
    else
        return FormWindow::eventFilter(watched, event);
    return true;
}

void frmMergeProjects::cmdMergeContinue_Click()
{
    inHandler("cmdMergeContinue_Click"_L1, [this] {
        MergeRequest request;
        request.projects = textsOf(*ui->lstProjectsToMerge);
        if (require(request.projects.size() >= 2, Text::MergeNeedsTwo, ui->lstAvaProjects)
            && takeNames(request))
            merge(request);
    });
}

/// False when name or ID was refused; the author has been told.
bool frmMergeProjects::takeNames(MergeRequest &request)
{
    const QString name = ui->txtMergeProjName->text().trimmed();
    const QString id = ui->txtMergProjId->text().trimmed();
    if (!require(!name.isEmpty(), Text::PleaseEnterProjectName, ui->txtMergeProjName)
        || !require(!id.isEmpty(), Text::PleaseEnterProjectId, ui->txtMergProjId))
        return false;

    XmlCharacters &characters = m_program.components.xmlCharacters;
    request.name = characters.CheckXMLCharacters(name, XmlCharacters::What::ProjectName);
    if (request.name.isEmpty()) {
        ui->txtMergeProjName->setFocus();
        return false;
    }
    request.id = characters.CheckXMLCharacters(id, XmlCharacters::What::ProjectId);
    if (request.id.isEmpty()) {
        ui->txtMergProjId->setFocus();
        return false;
    }
    m_program.session.projectName = request.name;
    m_program.session.projectId = request.id;
    ProjectCatalogue catalogue(m_program.session, m_program.files);
    return require(catalogue.bCheckQVSelectionforProdName(), Text::ProjectAlreadyExists,
                   ui->txtMergeProjName);
}

bool frmMergeProjects::require(bool fulfilled, Text refusal, QWidget *box)
{
    if (fulfilled)
        return true;
    m_program.messages.show({.text = text(refusal), .title = text(Text::DialogTitle)});
    box->setFocus();
    return false;
}

void frmMergeProjects::merge(const MergeRequest &request)
{
    switch (NewProjectFolder(m_program).settle()) {
    case NewProjectFolder::Answer::Cancel:
        return;
    case NewProjectFolder::Answer::ListAgain:
        listAgain(request);
        return;
    case NewProjectFolder::Answer::MakeNew:
        break;
    }
    MergeResult result;
    try {
        runWithProgress(m_program, this, text(Text::Merging), [&](const Progress &progress) {
            result = ProjectMerge(m_program).merge(request, progress);
        });
    } catch (const CopyFailure &failure) {
        endAfterFailedCopy(m_program, failure);
    }
    if (result.findings.isEmpty())
        openMerged();
    else
        showFindings(result);
}

// Nothing is merged: the folder may be what an earlier merge of these projects made.
void frmMergeProjects::listAgain(const MergeRequest &request)
{
    ProjectCatalogue catalogue(m_program.session, m_program.files);
    for (const CatalogueEntry &entry : catalogue.entries()) {
        if (entry.name == request.projects.first())
            m_program.session.projectLanguage = entry.language;
    }
    ProjectCreation(m_program).listAgain();
    openMainWindow();
}

void frmMergeProjects::showFindings(const MergeResult &result)
{
    auto *const list =
        new MergeFindingsDialog(result, m_program.files.nativePath(result.logPath), this);
    list->setAttribute(Qt::WA_DeleteOnClose);
    connect(list, &QDialog::finished, this,
            [this] { inHandler("cmdMergeContinue_Click"_L1, [this] { openMerged(); }); });
    list->open();
}

void frmMergeProjects::openMerged()
{
    StatusIndicators(m_program.session, m_program.files, m_program.currentProject).AddProjectName();
    openMainWindow();
}

void frmMergeProjects::openMainWindow()
{
    m_program.navigator.show(Form::MainUI);
    m_program.navigator.unload(Form::SelPrjType);
    closeQuietly();
}

void frmMergeProjects::closeQuietly()
{
    const QScopedValueRollback quiet(mbQuietClose, true);
    close();
}

void frmMergeProjects::cmdMergeBack_Click()
{
    inHandler("cmdMergeBack_Click"_L1, [this] {
        m_program.session.gbBackToLauncher = true;
        m_program.navigator.loadform();
        closeQuietly();
    });
}

void frmMergeProjects::cmdCancel_Click()
{
    inHandler("cmdCancel_Click"_L1, [this] { close(); });
}

void frmMergeProjects::cmdHelp_Click()
{
    inHandler("cmdHelp_Click"_L1,
              [this] { OpenHelpTopic(m_program, u"Content"_s, whatToDoTopic); });
}

QAbstractButton *frmMergeProjects::cancelButton() const
{
    return ui->cmdCancel;
}

void frmMergeProjects::inHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedureWithReason(error, handler, u"frmMergeProjects"_s);
    };
    trapped(shape, body);
}
