#include "dialogs/frmContinueDeleteProject.h"

#include "dialogs/ProjectDeletion.h"
#include "dialogs/ProjectOpening.h"
#include "dialogs/ReopenDialog.h"
#include "platform/Paths.h"
#include "startup/ExternalPrograms.h"
#include "startup/frmProgBar.h"
#include "ui_frmContinueDeleteProject.h"

#include <QAbstractItemView>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void fill(QComboBox *list, const QStringList &names)
{
    list->clear();
    for (const QString &name : names) {
        if (name.isEmpty())
            continue;
        list->addItem(name);
        list->setItemData(list->count() - 1, Qt::convertFromPlainText(name),
                          Qt::ToolTipRole); // long names are cut
    }
}

} // namespace

frmContinueDeleteProject::frmContinueDeleteProject(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmContinueDeleteProject>())
{
    ui->setupUi(this);
    ui->cmdReopen->hide();
    for (QComboBox *const list : {ui->cboSelPrjtoContinue, ui->cboProjectDelete})
        list->view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded); // there may be hundreds
    connectControls();
    showHalf(Half::Continue);
}

frmContinueDeleteProject::~frmContinueDeleteProject() = default;

void frmContinueDeleteProject::connectControls()
{
    using Self = frmContinueDeleteProject;
    connect(ui->cmdSelPrjtoContinue, &QPushButton::clicked, this, &Self::cmdSelPrjtoContinue_Click);
    connect(ui->cmdReopen, &QPushButton::clicked, this, &Self::cmdReopen_Click);
    connect(ui->cmdContinueDelPrj, &QPushButton::clicked, this, &Self::cmdContinueDelPrj_Click);
    connect(ui->cmdCancelContinueDelPrj, &QPushButton::clicked, this,
            &Self::cmdCancelContinueDelPrj_Click);
    connect(ui->cmdHelpContinueDelPrj, &QPushButton::clicked, this,
            &Self::cmdHelpContinueDelPrj_Click);
    connect(ui->cmdBack, &QPushButton::clicked, this, &Self::cmdBack_Click);
}

void frmContinueDeleteProject::showHalf(Half half)
{
    const bool toContinue = half == Half::Continue;
    ui->stkHalves->setCurrentIndex(toContinue ? 0 : 1);
    ui->cmdSelPrjtoContinue->setDefault(toContinue);
    ui->cmdContinueDelPrj->setDefault(!toContinue);
    (toContinue ? ui->cboSelPrjtoContinue : ui->cboProjectDelete)->setFocus();
}

void frmContinueDeleteProject::Form_Load()
{
    inProcedureOf("Form_Load"_L1, [this] {
        const QScopedValueRollback quiet(mbQuietClose, true);
        setWindowTitle(text(Text::WindowTitle));
        ui->fraContinueProject->setTitle(text(Text::ContinueProjectFrame));
        ui->lblProjectToContinue->setText(text(Text::SelectProjectToContinueLabel));
        ui->cmdSelPrjtoContinue->setText(text(Text::ContinueWizard));
        UpdateEXProjectInfo();
        ui->fraDeleteProject->setTitle(text(Text::DeleteProjectFrame));
        ui->lblSelPrjtoDelete->setText(text(Text::SelectProjectToDelete));
        ui->cmdContinueDelPrj->setText(text(Text::Delete));
        UpdateDlExProjectInfo();
        ui->cmdCancelContinueDelPrj->setText(text(Text::Cancel));
        ui->cmdHelpContinueDelPrj->setText(text(Text::Help));
        ui->cmdBack->setText(text(Text::Back));
    });
}

void frmContinueDeleteProject::UpdateEXProjectInfo()
{
    inProcedureOf("UpdateEXProjectInfo"_L1, [this] {
        fill(ui->cboSelPrjtoContinue, GetProdQVSelection_Incomplete());
        showReopen();
    });
}

void frmContinueDeleteProject::UpdateDlExProjectInfo()
{
    inProcedureOf("UpdateDlExProjectInfo"_L1, [this] {
        ui->cboProjectDelete->clear();
        ProjectCatalogue catalogue(m_program.session, m_program.files);
        fill(ui->cboProjectDelete, catalogue.GetProdQVSelection_All());
    });
}

/// Names of the projects that may be continued, from index 2, in the catalogue's order; the first
/// two slots are empty. Notes the released sets on the way.
QStringList frmContinueDeleteProject::GetProdQVSelection_Incomplete()
{
    QStringList names(2);
    m_released.clear();
    inProcedureOf("GetProdQVSelection_Incomplete"_L1, [&] {
        ProjectCatalogue catalogue(m_program.session, m_program.files);
        for (const CatalogueEntry &entry : catalogue.entries()) {
            if (entry.name == favourites)
                continue;
            if (entry.addDate.isEmpty())
                names.append(entry.name);
            else
                m_released.append(entry);
        }
    });
    return names;
}

void frmContinueDeleteProject::showReopen()
{
    ui->cmdReopen->setVisible(!m_released.isEmpty());
}

void frmContinueDeleteProject::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        if (!mbQuietClose)
            cancel = !saysYes(text(Text::CloseProgram));
    });
}

void frmContinueDeleteProject::cmdSelPrjtoContinue_Click()
{
    inProcedureOf("cmdSelPrjtoContinue"_L1, [this] {
        const QScopedValueRollback quiet(mbQuietClose, true);
        const QString name = chosenIn(ui->cboSelPrjtoContinue);
        if (name.isEmpty())
            return;
        continueProject(m_program, projectToContinue(m_program, name));
        m_program.navigator.show(Form::MainUI); // closes this window
        close();
    });
}

/// Empty when there is nothing to choose; the author has been told.
QString frmContinueDeleteProject::chosenIn(const QComboBox *list)
{
    const QString name = list->currentText();
    if (name.isEmpty())
        m_program.messages.show({text(Text::SelectProjectToContinue)});
    return name;
}

void frmContinueDeleteProject::cmdReopen_Click()
{
    inHandler("cmdReopen_Click"_L1, [this] {
        ReopenDialog dialog(m_released, this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        const QString name = dialog.chosen();
        ProjectCatalogue(m_program.session, m_program.files).reopen(name);
        UpdateEXProjectInfo();
        ui->cboSelPrjtoContinue->setCurrentText(name);
        ui->cboSelPrjtoContinue->setFocus();
    });
}

void frmContinueDeleteProject::cmdContinueDelPrj_Click()
{
    inProcedureOf("cmdContinueDelPrj"_L1, [this] {
        const QString name = chosenIn(ui->cboProjectDelete);
        if (name.isEmpty())
            return;
        const QString which = tr("Project: %1").arg(name);
        if (ask(Text::SureToDelete, Buttons::OkCancel, which) != Answer::Ok)
            return;
        const QString whatNoMeans = tr("No keeps them and takes the project out of the list.");
        const bool alsoFiles =
            ask(Text::DeleteFilesToo, Buttons::YesNo, which + u'\n' + whatNoMeans) == Answer::Yes;
        if (alsoFiles && !mayTakeFilesOf(name))
            return;
        deleteProject(name, alsoFiles);
        takeOutOfLists(name);
    });
}

// The fixed questions do not say which project they mean, and deleted files do not come back.
Answer frmContinueDeleteProject::ask(Text question, Buttons buttons, const QString &details)
{
    return m_program.messages.show({.text = text(question),
                                    .buttons = buttons,
                                    .details = details,
                                    .enterRefuses = question == Text::DeleteFilesToo});
}

/// Nobody loses the files that he is working on without being asked for.
bool frmContinueDeleteProject::mayTakeFilesOf(const QString &name)
{
    if (!ProjectDeletion(m_program).isInUse(name))
        return true;
    const QString question =
        tr("The project \"%1\" is open in another QV Developer. What its author has not saved is "
           "lost when its files go. Delete them all the same?")
            .arg(name);
    const QString whatNoMeans = tr("No deletes nothing, and the project stays in the list.");
    return m_program.messages.show({.text = question,
                                    .buttons = Buttons::YesNo,
                                    .details = whatNoMeans,
                                    .enterRefuses = true})
           == Answer::Yes;
}

void frmContinueDeleteProject::deleteProject(const QString &name, bool alsoFiles)
{
    ProjectDeletion deletion(m_program);
    if (!alsoFiles) {
        deletion.remove(name, false);
        return;
    }
    QString leftAside;
    {
        QGuiApplication::setOverrideCursor(Qt::BusyCursor); // Stop can be pressed
        const auto restore = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
        runWithProgress(m_program, this, tr("Deleting..."), [&](const Progress &progress) {
            leftAside = deletion.remove(name, true, progress).leftAside;
        });
    }
    if (!leftAside.isEmpty())
        m_program.messages.show({tr("The project was deleted, but not all of its files: what is "
                                    "left lies in %1 and is removed when QV Developer starts "
                                    "again.")
                                     .arg(leftAside)});
}

/// The continue half stays as it is, apart from its released sets.
void frmContinueDeleteProject::takeOutOfLists(const QString &name)
{
    QComboBox *const list = ui->cboProjectDelete;
    list->setPlaceholderText(name); // stays to be read when it was the last one
    list->removeItem(list->currentIndex());
    if (list->count() > 0)
        list->setCurrentIndex(0);
    m_released.removeIf([&](const CatalogueEntry &entry) { return entry.name == name; });
    showReopen();
}

void frmContinueDeleteProject::cmdBack_Click()
{
    inHandler("cmdBack_Click"_L1, [this] {
        m_program.session.gbBackToLauncher = true;
        m_program.navigator.loadform();
        closeQuietly();
    });
}

void frmContinueDeleteProject::closeQuietly()
{
    const QScopedValueRollback quiet(mbQuietClose, true);
    close();
}

void frmContinueDeleteProject::cmdCancelContinueDelPrj_Click()
{
    inHandler("cmdCancelContinueDelPrj_Click"_L1, [this] {
        mbQuietClose = false;
        close();
    });
}

void frmContinueDeleteProject::cmdHelpContinueDelPrj_Click()
{
    inHandler("cmdHelpContinueDelPrj_Click"_L1,
              [this] { OpenHelpTopic(m_program, u"Content"_s, whatToDoTopic); });
}

QAbstractButton *frmContinueDeleteProject::cancelButton() const
{
    return ui->cmdCancelContinueDelPrj;
}

void frmContinueDeleteProject::inHandler(QLatin1StringView handler,
                                         const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedureWithReason(error, handler, u"frmContinueDeleteProject"_s);
    };
    trapped(shape, body);
}

void frmContinueDeleteProject::inProcedureOf(QLatin1StringView procedure,
                                             const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return withTag(error, u"QV_Developer::frmContinueDeleteProject-"_s + procedure);
    };
    trapped(shape, body);
}
