#include "workspace/frmBuild.h"

#include "controls/ctlBuildTab.h"
#include "resources/Texts.h"
#include "startup/Session.h"
#include "ui_frmBuild.h"

#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

constexpr auto ownName = "frmBuild"_L1;
constexpr auto mainName = "frmMainUI"_L1; // two messages have always named the main window

} // namespace

frmBuild::frmBuild(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmBuild>())
    , m_ctlBuildTab1(new ctlBuildTab(program, this))
{
    ui->setupUi(this);
    setWindowTitle(text(Text::BuildStep1));
    m_ctlBuildTab1->setObjectName(u"ctlBuildTab1"_s);
    ui->layForm->addWidget(m_ctlBuildTab1);

    using Self = frmBuild;
    connect(m_ctlBuildTab1, &ctlBuildTab::evtNext, this, &Self::ctlBuildTab1_evtNext);
    connect(m_ctlBuildTab1, &ctlBuildTab::evtBack, this, &Self::ctlBuildTab1_evtBack);
    connect(m_ctlBuildTab1, &ctlBuildTab::evtProcessComplete, this,
            &Self::ctlBuildTab1_evtProcessComplete);
    connect(m_ctlBuildTab1, &ctlBuildTab::evtZippingComplete, this,
            &Self::ctlBuildTab1_evtZippingComplete);
    connect(m_ctlBuildTab1, &ctlBuildTab::closeRequested, this, &Self::close);
    connect(m_ctlBuildTab1, &ctlBuildTab::placeRequested, this, &Self::placeRequested);
}

frmBuild::~frmBuild() = default;

void frmBuild::Form_Load()
{
    inHandler("Form_Load"_L1, ownName, [this] {
        m_ctlBuildTab1->show();
        const QSize text(160 * fontMetrics().averageCharWidth(), 50 * fontMetrics().height());
        resize(text.expandedTo(sizeHint()).boundedTo(screen()->availableSize()));
    });
}

void frmBuild::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, ownName, [&] {
        if (!m_ctlBuildTab1->isBusy())
            return;
        cancel = !saysYes(tr("The build is still at work. Do you want to stop it and close?"));
        if (!cancel)
            m_ctlBuildTab1->finish();
    });
}

void frmBuild::ctlBuildTab1_evtNext()
{
    inHandler("ctlBuildTab1_evtNext"_L1, ownName,
              [this] { setWindowTitle(text(Text::BuildStep2)); });
}

void frmBuild::ctlBuildTab1_evtBack()
{
    inHandler("ctlBuildTab1_evtBack"_L1, ownName,
              [this] { setWindowTitle(text(Text::BuildStep1)); });
}

void frmBuild::ctlBuildTab1_evtProcessComplete(bool success)
{
    inHandler("ctlBuildTab1_evtProcessComplete"_L1, mainName, [&] {
        if (!success)
            return;
        m_program.session.quickNavChanged = false;
        m_program.session.booksChanged = false;
        m_program.session.globalsChanged = false;
    });
}

void frmBuild::ctlBuildTab1_evtZippingComplete()
{
    inHandler("ctlBuildTab1_evtZippingComplete"_L1, mainName, [this] { close(); });
}

void frmBuild::inHandler(QLatin1StringView handler, QLatin1StringView form,
                         const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedureWithReason(error, handler, form);
    };
    trapped(shape, body);
}
