#include "dialogs/frmSelPrjTypetoAdd.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "components/XmlCharacters.h"
#include "dialogs/MigrationReportDialog.h"
#include "platform/Processes.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/Session.h"
#include "startup/clsRegAccess.h"
#include "startup/frmProgBar.h"
#include "ui_frmSelPrjTypetoAdd.h"

#include <QScopedValueRollback>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto languages =
    "English;Chinese(Simplified);Chinese(Traditional);German;Japanese;Korean"_L1;

Message informed(Text number)
{
    return {.text = text(number), .title = text(Text::DialogTitle)};
}

} // namespace

frmSelPrjTypetoAdd::frmSelPrjTypetoAdd(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmSelPrjTypetoAdd>())
    , m_creation(program)
    , m_migration(program)
{
    ui->setupUi(this);
    ui->optSelPrjTypetoAdd->setId(ui->optSelPrjTypetoAdd_0, AddNew);
    ui->optSelPrjTypetoAdd->setId(ui->optSelPrjTypetoAdd_1, Copy);
    ui->optSelPrjTypetoAdd->setId(ui->optSelPrjTypetoAdd_2, Migrate);
    connectControls();
}

frmSelPrjTypetoAdd::~frmSelPrjTypetoAdd() = default;

void frmSelPrjTypetoAdd::connectControls()
{
    using Self = frmSelPrjTypetoAdd;
    connect(ui->optSelPrjTypetoAdd, &QButtonGroup::idToggled, this, [this](int kind, bool chosen) {
        if (chosen)
            optSelPrjTypetoAdd_Click(kind);
    });
    connect(ui->cmdBrowseDBtoMigrate, &QPushButton::clicked, this,
            &Self::cmdBrowseDBtoMigrate_Click);
    connect(ui->cmdContinue, &QPushButton::clicked, this, &Self::cmdContinue_Click);
    connect(ui->cmdBack, &QPushButton::clicked, this, &Self::cmdBack_Click);
    connect(ui->cmdCancelSelPrjTypetoAdd, &QPushButton::clicked, this,
            &Self::cmdCancelSelPrjTypetoAdd_Click);
    connect(ui->cmdHelpSelPrjTypetoAdd, &QPushButton::clicked, this,
            &Self::cmdHelpSelPrjTypetoAdd_Click);
}

void frmSelPrjTypetoAdd::Form_Load()
{
    inProcedureOf("QV_Developer-frmSelPrjTypetoAdd::Form_Load"_L1, [this] {
        loadCaptions();
        UpdateClExProjectInfo();
        ui->cboLanguage->addItems(QString(languages).split(u';'));
        enableFor(AddNew);
        ui->txtProjectName->setFocus();
    });
}

void frmSelPrjTypetoAdd::loadCaptions()
{
    ui->fraSelPrjTypetoAdd->setTitle(text(Text::SelectProjectTypeToAdd));
    ui->optSelPrjTypetoAdd_0->setText(text(Text::AddNewProject));
    ui->optSelPrjTypetoAdd_1->setText(text(Text::CopyExistingProject));
    ui->optSelPrjTypetoAdd_2->setText(text(Text::MigrateLegacyBookset));
    ui->lblEnterPrjName->setText(text(Text::EnterProjectName));
    ui->lblPrjId->setText(text(Text::EnterProjectId));
    ui->lblSelPrjtoCopy->setText(text(Text::SelectProjectToCopy));
    ui->lblSelDBtoMigrate->setText(text(Text::SelectDatabaseToMigrate));
    ui->cmdBrowseDBtoMigrate->setText(text(Text::Browse));
    ui->cmdContinue->setText(text(Text::ContinueWizard));
    ui->cmdCancelSelPrjTypetoAdd->setText(text(Text::Cancel));
    ui->cmdHelpSelPrjTypetoAdd->setText(text(Text::Help));
    ui->cmdBack->setText(text(Text::Back));
}

void frmSelPrjTypetoAdd::UpdateClExProjectInfo()
{
    inProcedureOf("QV_Developer::frmSelPrjTypetoAdd-UpdateClExProjectInfo"_L1, [this] {
        ui->cboSelPrjtoCopy->clear();
        for (const QString &name : GetProdQVSelection_Complete()) {
            if (!name.isEmpty())
                ui->cboSelPrjtoCopy->addItem(name);
        }
        ui->cboSelPrjtoCopy->setCurrentIndex(-1);
    });
}

/// Names of the released projects, which can be copied, in the catalogue's order.
QStringList frmSelPrjTypetoAdd::GetProdQVSelection_Complete()
{
    QStringList names;
    inProcedureOf("QV_Developer::frmSelPrjTypetoAdd-GetProdQVSelection_Complete"_L1, [&] {
        ProjectCatalogue catalogue(m_program.session, m_program.files);
        for (const CatalogueEntry &entry : catalogue.entries()) {
            if (!entry.addDate.isEmpty() && entry.name != favourites)
                names.append(entry.name);
        }
    });
    return names;
}

QString frmSelPrjTypetoAdd::GetLangID(const QString &language)
{
    static constexpr std::array codes{"ENU"_L1, "CHS"_L1, "CHT"_L1, "DEU"_L1, "JPN"_L1, "KOR"_L1};
    const qsizetype at = QString(languages).split(u';').indexOf(language);
    return at < 0 ? QString() : QString(codes.at(static_cast<std::size_t>(at)));
}

void frmSelPrjTypetoAdd::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        if (!mbQuietClose)
            cancel = !saysYes(text(Text::CloseProgram));
    });
}

void frmSelPrjTypetoAdd::optSelPrjTypetoAdd_Click(int index)
{
    inProcedureOf("QV_Developer-frmSelPrjTypetoAdd::optSelPrjTypetoAdd_Click"_L1, [&] {
        enableFor(index);
        ui->txtProjectName->setFocus();
    });
}

// The name box serves all three kinds.
void frmSelPrjTypetoAdd::enableFor(int kind)
{
    for (QWidget *const widget :
         std::initializer_list<QWidget *>{ui->lblSelPrjtoCopy, ui->cboSelPrjtoCopy})
        widget->setEnabled(kind == Copy);
    for (QWidget *const widget : std::initializer_list<QWidget *>{
             ui->lblSelDBtoMigrate, ui->txtSelDBtoMigrate, ui->cmdBrowseDBtoMigrate})
        widget->setEnabled(kind == Migrate);
}

void frmSelPrjTypetoAdd::cmdBrowseDBtoMigrate_Click()
{
    inHandler("cmdBrowseDBtoMigrate_Click"_L1, [this] {
        const QString start = clsRegAccess(m_program.registry).mstrGetDesPath(u"Source"_s);
        const QString chosen = m_program.fileDialogs.openFile(text(Text::SelectDatabaseToMigrate),
                                                              start, u"MDB files(*.mdb)|*.mdb"_s);
        if (!chosen.isEmpty())
            ui->txtSelDBtoMigrate->setText(chosen);
    });
}

void frmSelPrjTypetoAdd::cmdContinue_Click()
{
    inContinue([this] {
        if (takeNames() && takeSource()
            && require(m_creation.nameIsFree(), informed(Text::ProjectAlreadyExists),
                       ui->txtProjectName))
            createProject();
    });
}

/// False when name or ID was refused; the author has been told.
bool frmSelPrjTypetoAdd::takeNames()
{
    const QString typedName = ui->txtProjectName->text().trimmed();
    const QString typedId = ui->txtPrjId->text().trimmed();
    if (!require(!typedName.isEmpty(), informed(Text::PleaseEnterProjectName), ui->txtProjectName)
        || !require(!typedId.isEmpty(), informed(Text::PleaseEnterProjectId), ui->txtPrjId))
        return false;

    XmlCharacters &characters = m_program.components.xmlCharacters;
    m_typedName = characters.CheckXMLCharacters(typedName, XmlCharacters::What::ProjectName);
    if (m_typedName.isEmpty()) {
        ui->txtProjectName->setFocus();
        return false;
    }
    const QString id = characters.CheckXMLCharacters(typedId, XmlCharacters::What::ProjectId);
    if (id.isEmpty()) {
        ui->txtPrjId->setFocus();
        return false;
    }
    m_creation.name(m_typedName, id, GetLangID(ui->cboLanguage->currentText().trimmed()));
    return true;
}

bool frmSelPrjTypetoAdd::require(bool fulfilled, const Message &refusal, QWidget *box)
{
    if (fulfilled)
        return true;
    m_program.messages.show(refusal);
    box->setFocus();
    return false;
}

/// False when nothing is chosen to copy or to migrate; the author has been told.
bool frmSelPrjTypetoAdd::takeSource()
{
    const QString database = ui->txtSelDBtoMigrate->text();
    switch (ui->optSelPrjTypetoAdd->checkedId()) {
    case Copy:
        return require(!ui->cboSelPrjtoCopy->currentText().isEmpty(),
                       {.text = text(Text::SelectProjectToContinue),
                        .title = {},
                        .icon = MessageIcon::Critical},
                       ui->cboSelPrjtoCopy);
    case Migrate:
        clsRegAccess(m_program.registry).msetPathInfo(u"Source"_s, database);
        return require(!database.isEmpty(), informed(Text::SelectDatabase), ui->txtSelDBtoMigrate);
    default:
        return true;
    }
}

void frmSelPrjTypetoAdd::createProject()
{
    switch (m_creation.settleFolder()) {
    case ProjectCreation::FolderAnswer::Cancel:
        return;
    case ProjectCreation::FolderAnswer::ListAgain:
        m_creation.listAgain();
        break;
    case ProjectCreation::FolderAnswer::MakeNew:
        if (!makeNew())
            return;
    }
    openMainWindow();
}

/// False when no project came of it, or something is still to be done.
bool frmSelPrjTypetoAdd::makeNew()
{
    switch (ui->optSelPrjTypetoAdd->checkedId()) {
    case Copy:
        m_creation.addCopy(ui->cboSelPrjtoCopy->currentText(),
                           withProgress(text(Text::CopyingProjectStructure)));
        return true;
    case Migrate:
        migrate(ui->txtSelDBtoMigrate->text());
        return false;
    default:
        return m_creation.addNew(m_typedName);
    }
}

LegacyMigration::Runner frmSelPrjTypetoAdd::withProgress(const QString &caption)
{
    return [this, caption](const auto &work) { runWithProgress(m_program, this, caption, work); };
}

void frmSelPrjTypetoAdd::migrate(const QString &database)
{
    if (m_migration.convert(database, withProgress(u"Migrating the legacy book set..."_s)))
        showReport(database);
    else
        ui->txtSelDBtoMigrate->setFocus();
}

void frmSelPrjTypetoAdd::showReport(const QString &database)
{
    const QString log = m_migration.logPath();
    auto *const report = new MigrationReportDialog(
        m_migration.report(), {database, log, m_program.files.nativePath(log)}, this);
    report->setAttribute(Qt::WA_DeleteOnClose);
    connect(report, &MigrationReportDialog::logRequested, this,
            [this, log] { inContinue([&] { m_program.processes.openText(log); }); });
    connect(
        report, &QDialog::finished, this, [this] { inContinue([this] { finishMigration(); }); },
        Qt::QueuedConnection); // the question belongs to this window, not to the one that closes
    report->open();
}

void frmSelPrjTypetoAdd::finishMigration()
{
    const Message question{.text = text(Text::GenerateSearchWords),
                           .buttons = Buttons::YesNo,
                           .title = text(Text::DialogTitle)};
    if (m_program.messages.show(question) == Answer::Yes) {
        ui->cmdContinue->setEnabled(false);
        m_migration.makeSearchWords(withProgress(u"Making the search words..."_s));
        ui->cmdContinue->setEnabled(true);
    }
    m_migration.makeCurrent();
    openMainWindow();
}

void frmSelPrjTypetoAdd::openMainWindow()
{
    m_program.navigator.show(Form::MainUI);
    closeQuietly();
}

void frmSelPrjTypetoAdd::closeQuietly()
{
    const QScopedValueRollback quiet(mbQuietClose, true);
    close();
}

void frmSelPrjTypetoAdd::cmdBack_Click()
{
    inHandler("cmdBack_Click"_L1, [this] {
        m_program.session.gbBackToLauncher = true;
        m_program.navigator.loadform();
        closeQuietly();
    });
}

void frmSelPrjTypetoAdd::cmdCancelSelPrjTypetoAdd_Click()
{
    inHandler("cmdCancelSelPrjTypetoAdd_Click"_L1, [this] { close(); });
}

void frmSelPrjTypetoAdd::cmdHelpSelPrjTypetoAdd_Click()
{
    inHandler("cmdHelpSelPrjTypetoAdd_Click"_L1,
              [this] { OpenHelpTopic(m_program, u"Content"_s, whatToDoTopic); });
}

QAbstractButton *frmSelPrjTypetoAdd::cancelButton() const
{
    return ui->cmdCancelSelPrjTypetoAdd;
}

void frmSelPrjTypetoAdd::inContinue(const std::function<void()> &body)
{
    const auto shape = [](const QvError &error) {
        const bool namesStep = error.source().startsWith(ProjectCreation::formTag);
        return withTag(error, namesStep ? error.source()
                                        : ProjectCreation::formTag + u"cmdContinue_Click"_s);
    };
    trapped(shape, body);
}

void frmSelPrjTypetoAdd::inHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedure(error, handler, u"frmSelPrjTypetoAdd"_s);
    };
    trapped(shape, body);
}

void frmSelPrjTypetoAdd::inProcedureOf(QLatin1StringView tag, const std::function<void()> &body)
{
    trapped([&](const QvError &error) { return withTag(error, tag); }, body);
}
