#include "dialogs/frmSelPrjType.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "components/RegistryAccess.h"
#include "dialogs/FirstRun.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/FileHelpers.h"
#include "startup/Session.h"
#include "startup/StartUp.h"
#include "tools/rename/ProjectRename.h"
#include "ui_frmSelPrjType.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

frmSelPrjType::frmSelPrjType(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmSelPrjType>())
{
    ui->setupUi(this);
    QSizePolicy policy = ui->fraSelProjectType->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    ui->fraSelProjectType->setSizePolicy(policy);
    ui->fraSelProjectType->hide();
    ui->cmdCancel->setText(text(Text::Cancel)); // all that is left when loading fails
    ui->cmdHelp->setText(text(Text::Help));

    showPictures();

    using Self = frmSelPrjType;
    connect(ui->cmdAddNewProject, &QPushButton::clicked, this, &Self::cmdAddNewProject_Click);
    connect(ui->cmdContinueProject, &QPushButton::clicked, this, &Self::cmdContinueProject_Click);
    connect(ui->cmdMergeProjects, &QPushButton::clicked, this, &Self::cmdMergeProjects_Click);
    connect(ui->cmdDeleteProject, &QPushButton::clicked, this, &Self::cmdDeleteProject_Click);
    connect(ui->cmdRankBookSet, &QPushButton::clicked, this, &Self::cmdRankbookset_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &Self::cmdCancel_Click);
    connect(ui->cmdHelp, &QPushButton::clicked, this, &Self::cmdHelp_Click);
}

frmSelPrjType::~frmSelPrjType() = default;

void frmSelPrjType::showPictures()
{
    const std::pair<QLabel *, QLatin1StringView> pictures[]{{ui->imgAdd, "add"_L1},
                                                            {ui->imgContinue, "continue"_L1},
                                                            {ui->imgMerge, "merge"_L1},
                                                            {ui->imgDelete, "delete"_L1},
                                                            {ui->imgRank, "rank"_L1}};
    for (const auto &[label, name] : pictures)
        label->setPixmap(icon(name).pixmap(QSize(24, 24), devicePixelRatioF()));
}

void frmSelPrjType::Form_Load()
{
    const auto shape = [](const QvError &error) {
        return withTag(error, u"QV_Developer::frmSelPrjType-Form_Load"_s);
    };
    trapped(shape, [this] {
        Session &session = m_program.session;
        const QScopedValueRollback quiet(mbQuietClose, true);
        if (!readPaths()) {
            close();
            return;
        }
        if (!session.gbBackToLauncher && !session.gbFromMainWindow)
            showSplashScreen(m_program);
        if (!checkforwritability(m_program, session.serverPath))
            return;
        tidyDocs();
        loadCaptions();
        ui->cmdAddNewProject->setFocus();
        setWindowTitle(text(Text::WindowTitle));
        ui->cmdRankBookSet->setText(text(Text::Rank));
        if (!session.gbBackToLauncher)
            unloadSplashScreen(m_program);
        session.gbBackToLauncher = false;
    });
}

/// False when no server is known and the author quits.
bool frmSelPrjType::readPaths()
{
    FirstRun firstRun(m_program);
    if (firstRun.isNeeded() && !firstRun.findServer())
        return false;
    RegistryAccess &registry = m_program.components.registryAccess;
    m_program.session.serverPath = registry.GetQVServer();
    m_program.session.clientBinPath =
        registry.vGetValueName(Hive::LocalMachine, RegistryKey::product, u"Client"_s) + u"Bin\\"_s;
    return true;
}

/// Finishes what killed programs left in Docs, or removes it; failing to look harms nobody.
void frmSelPrjType::tidyDocs()
{
    trap([](const QvError &) {},
         [this] {
             for (const QString &problem : finishRenames(m_program))
                 m_program.messages.show({problem});
         });
    trap([](const QvError &) {},
         [this] {
             FileSystem &files = m_program.files;
             const QString docs = docsFolder(m_program.session.serverPath);
             const QStringList projects =
                 ProjectCatalogue(m_program.session, files).GetProdQVSelection_All();
             removeLeftovers(files, docs, projects);
             removeAbandoned(files, docs, projects);
         });
}

void frmSelPrjType::loadCaptions()
{
    ui->fraSelProjectType->setTitle(text(Text::SelectProjectType));
    ui->cmdAddNewProject->setText(text(Text::Add));
    ui->cmdContinueProject->setText(text(Text::Continue));
    ui->cmdMergeProjects->setText(text(Text::Merge));
    ui->cmdDeleteProject->setText(text(Text::DeleteProject));
    ui->fraSelProjectType->show();
}

void frmSelPrjType::loadform()
{
    load();
    inHandler("loadform"_L1, [this] {
        const QScopedValueRollback quiet(mbQuietClose, true);
        loadCaptions();
        show();
    });
}

void frmSelPrjType::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        if (mbQuietClose)
            return;
        cancel = !saysYes(text(Text::CloseProgram));
        if (!cancel)
            CheckIndexManagerApp(m_program);
    });
}

void frmSelPrjType::cmdAddNewProject_Click()
{
    inHandler("cmdAddNewProject_Click"_L1, [this] { leaveFor(Form::SelPrjTypetoAdd); });
}

void frmSelPrjType::cmdContinueProject_Click()
{
    inHandler("cmdContinueProject_Click"_L1, [this] { leaveFor(Form::ContinueProject); });
}

void frmSelPrjType::cmdMergeProjects_Click()
{
    inHandler("cmdMergeProjects_Click"_L1, [this] { leaveFor(Form::MergeProjects); });
}

void frmSelPrjType::cmdDeleteProject_Click()
{
    inHandler("cmdDeleteProject_Click"_L1, [this] { leaveFor(Form::DeleteProject); });
}

void frmSelPrjType::cmdRankbookset_Click()
{
    inHandler("cmdRankbookset_Click"_L1, [this] { leaveFor(Form::RankBookSet); });
}

void frmSelPrjType::cmdCancel_Click()
{
    inHandler("cmdCancel_Click"_L1, [this] {
        mbQuietClose = false;
        close();
    });
}

void frmSelPrjType::cmdHelp_Click()
{
    inHandler("cmdHelp_Click"_L1,
              [this] { OpenHelpTopic(m_program, u"Content"_s, whatToDoTopic); });
}

// The next form opens before this one closes: the program ends with its last window.
void frmSelPrjType::leaveFor(Form form)
{
    m_program.navigator.show(form);
    const QScopedValueRollback quiet(mbQuietClose, true);
    close();
}

QAbstractButton *frmSelPrjType::cancelButton() const
{
    return ui->cmdCancel;
}

void frmSelPrjType::inHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedure(error, handler, u"frmSelPrjType"_s);
    };
    trapped(shape, body);
}
