#include "controls/build/PackPane.h"

#include "controls/build/PackItemsModel.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "platform/Paths.h"
#include "platform/Progress.h"
#include "platform/QvError.h"
#include "resources/Counted.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QThread>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Shorter times show the author nothing, and each takes a look at all files of the project.
constexpr auto betweenPlans = 400ms;

QString shownSize(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes);
}

QString filesWorded(qsizetype count)
{
    return counted(count, PackPane::tr("1 file"), PackPane::tr("%1 files"));
}

QString worded(const PackPlan &plan)
{
    using Change = PackItem::Change;
    const qsizetype in = plan.items.size() - plan.count(Change::Removed);
    const QString content =
        PackPane::tr("%1 go in, %2.").arg(filesWorded(in), shownSize(plan.bytes));
    if (!plan.lastProblem.isEmpty())
        return content + u' '
               + PackPane::tr("The last packed copy cannot be compared: %1").arg(plan.lastProblem);
    if (!plan.last.isValid())
        return content + u' ' + PackPane::tr("There is no packed copy yet.");
    if (plan.isCurrent())
        return content + u' ' + PackPane::tr("Nothing differs from the last pack.");
    return content + u' '
           + PackPane::tr("Since the last pack: %1 new, %2 changed, %3 removed.")
                 .arg(plan.count(Change::Added))
                 .arg(plan.count(Change::Changed))
                 .arg(plan.count(Change::Removed));
}

QString worded(const QList<Finding> &warnings)
{
    constexpr qsizetype most = 3;
    QStringList lines;
    for (const Finding &warning : warnings.first(qMin(most, warnings.size())))
        lines.append(logLine(warning));
    if (warnings.size() > most)
        lines.append(PackPane::tr("and %1 more").arg(warnings.size() - most));
    return lines.join(u'\n');
}

} // namespace

PackPane::PackPane(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_items(new PackItemsModel(this))
    , chkSources(new QCheckBox(tr("With original so&urces"), this))
    , chkUnchanged(new QCheckBox(tr("Show unchanged &files too"), this))
    , lblPlan(plainLabel({}, this))
    , lblWarnings(makeProblemLabel(u"lblPackWarnings"_s, this))
    , lstItems(new QTableView(this))
    , chkRelease(new QCheckBox(tr("&Release this set when it is packed"), this))
    , lblRelease(plainLabel({}, this))
    , prgPack(new QProgressBar(this))
    , cmdPack(makeButton(u"cmdPack"_s, "export"_L1, tr("Pac&k now"), this))
    , cmdStopPack(makeButton(u"cmdStopPack"_s, "stop"_L1, tr("S&top packing"), this))
    , lblPacked(plainLabel({}, this))
    , m_planning(program.ending)
    , m_packing(program.ending)
{
    layOut();
    connect(chkSources, &QCheckBox::toggled, this, &PackPane::plan);
    connect(chkUnchanged, &QCheckBox::toggled, m_items, &PackItemsModel::showUnchanged);
    connect(cmdPack, &QPushButton::clicked, this, &PackPane::pack);
    connect(cmdStopPack, &QPushButton::clicked, this, [this] {
        lstItems->setFocus(); // a disabled button would hand the focus out of the pane
        cmdStopPack->setEnabled(false);
        m_packing.stop();
    });
    m_later.setSingleShot(true);
    m_later.setInterval(betweenPlans);
    connect(&m_later, &QTimer::timeout, this, &PackPane::plan);
    connect(&m_planning, &BackgroundWork::ended, this, [this](bool, const QString &problem) {
        if (!problem.isEmpty())
            lblPlan->setText(problem);
    });
    connect(&m_packing, &BackgroundWork::progressed, this, [this](int done, int total) {
        prgPack->setRange(0, total);
        prgPack->setValue(done);
    });
    connect(&m_packing, &BackgroundWork::ended, this, &PackPane::endPacking);
    offerPacking();
}

void PackPane::layOut()
{
    makeList();
    lblPlan->setObjectName(u"lblPackPlan"_s);
    chkRelease->setObjectName(u"chkRelease"_s);
    lblRelease->setObjectName(u"lblRelease"_s);
    lblPacked->setObjectName(u"lblPacked"_s);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(optionRow());
    layout->addWidget(lblPlan);
    layout->addWidget(lblWarnings);
    layout->addWidget(lstItems, 1);
    layout->addWidget(chkRelease);
    layout->addWidget(lblRelease);
    layout->addLayout(packRow());
    layout->addWidget(lblPacked);
}

void PackPane::makeList()
{
    lstItems->setObjectName(u"lstPackItems"_s);
    lstItems->setAccessibleName(tr("What differs from the last pack"));
    lstItems->setModel(m_items);
    lstItems->setSelectionBehavior(QAbstractItemView::SelectRows);
    lstItems->setTabKeyNavigation(false);
    lstItems->setShowGrid(false);
    lstItems->setWordWrap(false);
    lstItems->setTextElideMode(Qt::ElideMiddle);
    lstItems->verticalHeader()->hide();
    lstItems->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    lstItems->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QHeaderView *header = lstItems->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const int letter = fontMetrics().averageCharWidth();
    for (const int column : {PackItemsModel::Change, PackItemsModel::Size, PackItemsModel::Before})
        header->resizeSection(column, 18 * letter);
    header->setSectionResizeMode(PackItemsModel::File, QHeaderView::Stretch);
}

QLayout *PackPane::optionRow()
{
    chkSources->setObjectName(u"chkSources"_s);
    chkSources->setToolTip(tr("Also the files that pages were made from"));
    chkUnchanged->setObjectName(u"chkUnchanged"_s);
    auto *row = new QHBoxLayout;
    row->addWidget(chkSources);
    row->addWidget(chkUnchanged);
    row->addStretch();
    return row;
}

QLayout *PackPane::packRow()
{
    prgPack->setObjectName(u"prgPack"_s);
    prgPack->setAccessibleName(tr("Packing"));
    QSizePolicy policy = prgPack->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    prgPack->setSizePolicy(policy);
    auto *row = new QHBoxLayout;
    row->addWidget(prgPack, 1);
    row->addWidget(cmdPack);
    row->addWidget(cmdStopPack);
    return row;
}

void PackPane::setProject(const BuiltProject &project)
{
    m_planning.giveUp();
    m_project = project;
    m_isPlanned = false;
    m_items->setItems({});
    lblPlan->clear();
    lblPacked->clear();
    lblRelease->clear();
    sayProblem(lblWarnings, {});
    chkRelease->setChecked(false);
    chkRelease->setEnabled(false);
    offerPacking();
    plan();
}

void PackPane::noteChange()
{
    m_isPlanned = false;
    if (isVisible())
        m_later.start();
}

void PackPane::finish()
{
    m_planning.giveUp();
    if (isPacking())
        m_packing.finish();
}

void PackPane::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_isPlanned)
        plan();
}

PackOptions PackPane::options() const
{
    return {.withSources = chkSources->isChecked(),
            .threads = std::clamp(QThread::idealThreadCount(), 1, 8)};
}

void PackPane::plan()
{
    if (m_project.isNone() || !isVisible() || isPacking())
        return;
    m_later.stop();
    m_isPlanned = true;
    lblPlan->setText(tr("Comparing with the last pack..."));
    m_planning.start([this, project = m_project, chosen = options()](const Progress &progress) {
        workOut(project, chosen, progress);
    });
}

// On the worker.
void PackPane::workOut(const BuiltProject &project, const PackOptions &options,
                       const Progress &progress)
{
    FileSystem &files = m_program.files;
    const Planned planned{project.planPack(files, options, progress), project.released(files),
                          project.isBuilt(m_program)};
    m_planning.tell([this, planned] { showPlanned(planned); });
}

void PackPane::showPlanned(const Planned &planned)
{
    m_items->setItems(planned.plan.items);
    QString text = worded(planned.plan);
    if (!planned.isBuilt)
        text += u'\n'
                + tr("Not all tools have run well since the last edit: what readers search "
                     "and click may not fit the pages.");
    lblPlan->setText(text);
    sayProblem(lblWarnings, worded(planned.plan.warnings));
    offerRelease(planned);
}

void PackPane::offerRelease(const Planned &planned)
{
    const bool offered = planned.isBuilt && planned.released.isEmpty();
    chkRelease->setEnabled(offered);
    if (!offered)
        chkRelease->setChecked(false);
    if (!planned.released.isEmpty())
        lblRelease->setText(tr("The set was released on %1.").arg(planned.released));
    else if (!planned.isBuilt)
        lblRelease->setText(tr("It can be released when all tools have run well."));
    else
        lblRelease->setText(tr("A released set can be copied. It is no longer offered for "
                               "continuing until it is opened again."));
}

void PackPane::offerPacking()
{
    const bool packs = isPacking();
    cmdPack->setEnabled(!m_project.isNone() && !packs);
    cmdStopPack->setEnabled(packs);
    chkSources->setEnabled(!packs);
    prgPack->setVisible(packs);
}

void PackPane::pack()
{
    m_planning.giveUp();
    prgPack->setRange(0, 0);
    lblPacked->setText(tr("Packing..."));
    m_packing.start([this, project = m_project, chosen = options()](const Progress &progress) {
        const PackResult result = project.pack(m_program.files, chosen, progress);
        m_packing.tell([this, result] { showPacked(result); });
    });
    offerPacking();
    cmdStopPack->setFocus();
    Q_EMIT busyChanged();
}

void PackPane::showPacked(const PackResult &result)
{
    lblPacked->setText(tr("%1 packed into %2, %3.")
                           .arg(filesWorded(result.count), lastComponent(result.path),
                                shownSize(result.packedBytes)));
    if (chkRelease->isChecked())
        release();
}

void PackPane::release()
{
    const auto refused = [this](const QvError &error) {
        lblPacked->setText(lblPacked->text() + u' '
                           + tr("It was not released: %1").arg(error.description()));
    };
    trap(refused, [this] {
        if (!m_project.isBuilt(m_program)) // an edit since the pane looked
            throw QvError(5, {}, tr("the project was edited. Go back and build again."));
        m_project.release(m_program);
        lblPacked->setText(lblPacked->text() + u' ' + tr("The set is released."));
    });
}

void PackPane::endPacking(bool stopped, const QString &problem)
{
    const bool hadFocus = cmdStopPack->hasFocus();
    if (stopped)
        lblPacked->setText(tr("Stopped. The last packed copy is as it was."));
    else if (!problem.isEmpty())
        lblPacked->setText(problem);
    offerPacking();
    if (hadFocus)
        cmdPack->setFocus();
    plan();
    Q_EMIT busyChanged();
}
