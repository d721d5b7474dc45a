#include "controls/build/FindingsView.h"

#include "controls/build/BackgroundWork.h"
#include "controls/build/FindingKindsDialog.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/Progress.h"
#include "startup/Session.h"
#include "tools/checks/FindingKinds.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// The first choice shows all of them.
QComboBox *makeChoice(const QString &objectName, const QStringList &choices, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(objectName);
    box->addItems(choices);
    return box;
}

QLabel *captionOf(const QString &text, QWidget *field)
{
    auto *caption = new QLabel(text, field->parentWidget());
    caption->setBuddy(field);
    return caption;
}

QString meaningOf(const Finding &finding)
{
    const FindingKind *const kind = findingKind(finding.code);
    QStringList lines{logLine(finding)};
    if (kind != nullptr)
        lines.append(kind->name() + u". "_s + kind->explanation());
    return lines.join(u'\n');
}

/// Shows both ends of a path.
class PathDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideMiddle;
    }
};

} // namespace

FindingsView::FindingsView(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_model(new FindingsModel(this))
    , m_reading(new BackgroundWork(program.ending, this))
    , lstFindings(new QTreeView(this))
    , txtFindingsFilter(new QLineEdit(this))
    , cboSeverity(
          makeChoice(u"cboSeverity"_s, {tr("All"), tr("Errors and warnings"), tr("Errors")}, this))
    , cboState(makeChoice(u"cboState"_s, {tr("All"), tr("New"), tr("Known")}, this))
    , lblFindings(plainLabel({}, this))
    , txtFinding(new QPlainTextEdit(this))
{
    lblFindings->setObjectName(u"lblFindings"_s);
    txtFinding->setObjectName(u"txtFinding"_s);
    txtFinding->setAccessibleName(tr("What the finding means"));
    txtFinding->setReadOnly(true);
    txtFinding->setTabChangesFocus(true);
    txtFinding->setFixedHeight(fontMetrics().lineSpacing() * 3 + fontMetrics().lineSpacing() / 2);
    makeTable();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeFilters());
    layout->addWidget(lblFindings);
    layout->addWidget(lstFindings, 1);
    layout->addWidget(txtFinding);
    layout->addWidget(makeButtons());
    setTabOrder(cboState, lstFindings);
    connect(m_reading, &BackgroundWork::ended, this, [this](bool, const QString &problem) {
        if (!problem.isEmpty())
            sayProblem(problem);
    });
    setProject({});
}

FindingsView::~FindingsView() = default;

QWidget *FindingsView::makeFilters()
{
    txtFindingsFilter->setObjectName(u"txtFindingsFilter"_s);
    txtFindingsFilter->setPlaceholderText(tr("file, kind or text"));
    txtFindingsFilter->setClearButtonEnabled(true);
    connect(txtFindingsFilter, &QLineEdit::textChanged, this, &FindingsView::filter);
    connect(cboSeverity, &QComboBox::currentIndexChanged, this, &FindingsView::filter);
    connect(cboState, &QComboBox::currentIndexChanged, this, &FindingsView::filter);
    auto *filters = new QWidget(this);
    auto *row = new QHBoxLayout(filters);
    row->setContentsMargins({});
    for (QWidget *field : {static_cast<QWidget *>(txtFindingsFilter),
                           static_cast<QWidget *>(cboSeverity), static_cast<QWidget *>(cboState)})
        field->setParent(filters);
    row->addWidget(captionOf(tr("Fi&lter:"), txtFindingsFilter));
    row->addWidget(txtFindingsFilter, 1);
    row->addWidget(captionOf(tr("Se&verity:"), cboSeverity));
    row->addWidget(cboSeverity);
    row->addWidget(captionOf(tr("Stat&e:"), cboState));
    row->addWidget(cboState);
    return filters;
}

void FindingsView::makeTable()
{
    lstFindings->setObjectName(u"lstFindings"_s);
    lstFindings->setAccessibleName(tr("Findings of the quality checks"));
    lstFindings->setModel(m_model);
    lstFindings->setRootIsDecorated(false);
    lstFindings->setUniformRowHeights(true);
    lstFindings->setAllColumnsShowFocus(true);
    lstFindings->setAlternatingRowColors(true);
    lstFindings->setItemDelegateForColumn(FindingsModel::FileColumn, new PathDelegate(lstFindings));
    lstFindings->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lstFindings->setTabKeyNavigation(false);
    lstFindings->header()->setSortIndicatorClearable(true);
    lstFindings->header()->setSortIndicator(-1, Qt::AscendingOrder);
    lstFindings->setSortingEnabled(true);
    constexpr std::array letters{12, 9, 36, 6, 24};
    for (int column = 0; column < static_cast<int>(letters.size()); ++column)
        lstFindings->header()->resizeSection(column, letters[static_cast<size_t>(column)]
                                                         * fontMetrics().averageCharWidth());
    connect(lstFindings, &QTreeView::activated, this, &FindingsView::openCurrent);
    connect(lstFindings->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FindingsView::showCurrent);
}

QWidget *FindingsView::makeButtons()
{
    auto *buttons = new QWidget(this);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins({});
    auto *commands = new ListCommands(lstFindings);
    const auto add = [&](const QString &name, QLatin1StringView picture, const QString &text,
                         const QKeySequence &keys, void (FindingsView::*run)()) {
        QPushButton *const button = makeButton(name, picture, text, buttons);
        row->addWidget(button);
        return commands->add(button, keys, [this, run] { (this->*run)(); });
    };
    m_open =
        add(u"cmdOpenFinding"_s, "edit"_L1, tr("S&how the place"), {}, &FindingsView::openCurrent);
    m_accept = add(u"cmdAcceptFinding"_s, "ok"_L1, tr("&Accept into the baseline"), Qt::Key_Insert,
                   &FindingsView::accept);
    m_takeOut = add(u"cmdTakeOutFinding"_s, "undo"_L1, tr("Take o&ut of the baseline"),
                    Qt::Key_Delete, &FindingsView::takeOut);
    m_switchOff = add(u"cmdSwitchOffKind"_s, "remove"_L1, tr("Switch this &kind off"), {},
                      &FindingsView::switchOff);
    row->addStretch();
    cmdFindingKinds =
        makeButton(u"cmdFindingKinds"_s, "settings"_L1, tr("Kin&ds of findings..."), buttons);
    row->addWidget(cmdFindingKinds);
    connect(cmdFindingKinds, &QPushButton::clicked, this, &FindingsView::chooseKinds);
    return buttons;
}

void FindingsView::setProject(const QString &name)
{
    m_reading->giveUp();
    m_project = name;
    cmdFindingKinds->setEnabled(!name.isEmpty());
    m_model->setReport({});
    judged();
}

QString FindingsView::folder() const
{
    return projectFolder(m_program.session.serverPath, m_project);
}

void FindingsView::refresh()
{
    if (m_project.isEmpty())
        return;
    m_reading->start([this, &files = m_program.files, folder = folder()](const Progress &) {
        auto report = readQaReport(files, folder);
        m_reading->tell([this, report = std::move(report)] {
            if (report)
                take(*report);
            else
                sayProblem(tr("The quality checks have not run yet."));
        });
    });
}

void FindingsView::take(QaReport report)
{
    const int row = lstFindings->currentIndex().row();
    m_model->setReport(std::move(report));
    judged();
    if (m_model->rowCount() > 0)
        lstFindings->setCurrentIndex(m_model->index(qBound(0, row, m_model->rowCount() - 1), 0));
}

void FindingsView::sayProblem(const QString &problem)
{
    m_model->setReport({});
    judged();
    lblFindings->setText(problem);
}

void FindingsView::filter()
{
    constexpr std::array least{Severity::Note, Severity::Warning, Severity::Error};
    const std::optional<bool> known =
        cboState->currentIndex() == 0 ? std::nullopt : std::optional(cboState->currentIndex() == 2);
    m_model->setFilter({txtFindingsFilter->text().trimmed(),
                        least[static_cast<size_t>(cboSeverity->currentIndex())], known});
    judged();
}

/// Other findings are shown now.
void FindingsView::judged()
{
    const QaReport &report = m_model->report();
    const auto all = report.findings.size();
    QString text = report.counts();
    if (m_model->rowCount() < all)
        text = tr("%1; %2 of %3 shown").arg(text).arg(m_model->rowCount()).arg(all);
    lblFindings->setText(text + u'.');
    showCurrent();
}

const QaFinding *FindingsView::current() const
{
    const QModelIndex at = lstFindings->currentIndex();
    return at.isValid() ? &m_model->finding(at.row()) : nullptr;
}

QList<Finding> FindingsView::chosen(bool known) const
{
    QList<Finding> findings;
    const QModelIndexList rows = lstFindings->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        if (const QaFinding &one = m_model->finding(row.row()); one.isKnown == known)
            findings.append(one.finding);
    }
    return findings;
}

void FindingsView::showCurrent()
{
    const QaFinding *const one = current();
    txtFinding->setPlainText(one == nullptr ? QString() : meaningOf(one->finding));
    const QString none = tr("Choose a finding first.");
    ListCommands::offer(m_open, one == nullptr                ? none
                                : one->finding.file.isEmpty() ? tr("It is about no single file.")
                                                              : QString());
    ListCommands::offer(m_accept, one == nullptr            ? none
                                  : chosen(false).isEmpty() ? tr("It is in the baseline already.")
                                                            : QString());
    ListCommands::offer(m_takeOut, one == nullptr           ? none
                                   : chosen(true).isEmpty() ? tr("It is not in the baseline.")
                                                            : QString());
    ListCommands::offer(m_switchOff, one == nullptr ? none : QString());
}

void FindingsView::openCurrent()
{
    if (const QaFinding *const one = current(); one != nullptr && !one->finding.file.isEmpty())
        Q_EMIT opened(one->finding.file, one->finding.line);
}

/// At once, and what another author decided meanwhile stays.
void FindingsView::changeBaseline(const std::function<void(Baseline &)> &change)
{
    BaselineFile file(m_program.files, folder());
    Baseline baseline = file.read();
    change(baseline);
    file.write(baseline);
    const int row = lstFindings->currentIndex().row();
    m_model->judgeBy(baseline);
    judged();
    if (m_model->rowCount() > 0)
        lstFindings->setCurrentIndex(m_model->index(qBound(0, row, m_model->rowCount() - 1), 0));
}

void FindingsView::accept()
{
    handled(m_program, [this] {
        changeBaseline([findings = chosen(false)](Baseline &baseline) {
            for (const Finding &finding : findings)
                baseline.accepted.append({finding.code, finding.file, finding.subject});
        });
    });
}

void FindingsView::takeOut()
{
    handled(m_program, [this] {
        QSet<QString> out;
        for (const Finding &finding : chosen(true))
            out.insert(identityOf(finding));
        changeBaseline([&out](Baseline &baseline) {
            baseline.accepted.removeIf(
                [&out](const AcceptedFinding &one) { return out.contains(identityOf(one)); });
        });
    });
}

void FindingsView::switchOff()
{
    handled(m_program, [this] {
        changeBaseline([code = current()->finding.code](Baseline &baseline) {
            baseline.switchedOff.append(code);
        });
    });
}

void FindingsView::chooseKinds()
{
    handled(m_program, [this] {
        const auto decide = [this](const QStringList &switchedOff) {
            return wasDone(m_program, [&] {
                changeBaseline([&](Baseline &baseline) { baseline.switchedOff = switchedOff; });
                refresh(); // what was left out until now may stand in the report
            });
        };
        const Baseline baseline = BaselineFile(m_program.files, folder()).read();
        auto *dialog = new FindingKindsDialog(baseline.switchedOff, decide, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    });
}
