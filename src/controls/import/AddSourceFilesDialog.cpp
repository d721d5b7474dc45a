#include "controls/import/AddSourceFilesDialog.h"

#include "controls/import/ImportPlanModel.h"
#include "ui_AddSourceFilesDialog.h"

#include <QAction>
#include <QHeaderView>
#include <QLocale>
#include <QSortFilterProxyModel>

using namespace Qt::StringLiterals;

namespace {

/// What the dialog says for a command.
struct Wording
{
    QString title, intro, button, conflicts, nothing;
};

Wording wordingOf(ImportCommand command)
{
    using Dialog = AddSourceFilesDialog;
    switch (command) {
    case ImportCommand::SourceFiles:
        break;
    case ImportCommand::ImportFiles:
        return {Dialog::tr("Add import files"),
                Dialog::tr("&These files will become pages of the book; HTML stays as it is:"),
                Dialog::tr("&Add"), Dialog::tr("&Files whose name is taken:"),
                Dialog::tr("No page is chosen that could be added.")};
    case ImportCommand::NewerFiles:
        return {Dialog::tr("Re-import newer files"),
                Dialog::tr("&The sources of these pages changed since they were added. Replace "
                           "takes the newer source, Skip keeps the page:"),
                Dialog::tr("&Re-import"), Dialog::tr("A&ll pages:"),
                Dialog::tr("No page is chosen to be replaced.")};
    }
    return {Dialog::tr("Add source files"),
            Dialog::tr("&These files will be copied into the book as they are:"),
            Dialog::tr("&Add"), Dialog::tr("&Files whose name is taken:"),
            Dialog::tr("No page is chosen that could be added.")};
}

} // namespace

AddSourceFilesDialog::AddSourceFilesDialog(FileSystem &files, ImportPlan plan, QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::AddSourceFilesDialog>())
    , m_model(new ImportPlanModel(files, std::move(plan), this))
    , m_sorted(new QSortFilterProxyModel(this))
{
    ui->setupUi(this);
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(ImportPlanModel::SortRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setDynamicSortFilter(false); // a row stays where it is while it is decided
    ui->lstFiles->setModel(m_sorted);
    ui->lstFiles->setItemDelegateForColumn(ImportPlanModel::InBook,
                                           new ImportActionDelegate(ui->lstFiles));
    ui->lstFiles->sortByColumn(-1, Qt::AscendingOrder); // first in the order of the book
    const Wording wording = wordingOf(this->plan().command);
    setWindowTitle(wording.title);
    ui->lblIntro->setText(wording.intro);
    ui->cmdAdd->setText(wording.button);
    ui->lblConflicts->setText(wording.conflicts);
    m_nothing = wording.nothing;
    fitColumns();
    addRowCommands();
    fillConflictChoice();
    showOmissions();
    updateTotals();

    connect(m_model, &ImportPlanModel::decided, this, &AddSourceFilesDialog::updateTotals);
    connect(ui->cboConflicts, &QComboBox::activated, this, &AddSourceFilesDialog::decideAll);
    connect(ui->cmdAdd, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

AddSourceFilesDialog::~AddSourceFilesDialog() = default;

const ImportPlan &AddSourceFilesDialog::plan() const
{
    return m_model->plan();
}

void AddSourceFilesDialog::fitColumns()
{
    QHeaderView *header = ui->lstFiles->horizontalHeader();
    const int letter = fontMetrics().averageCharWidth();
    const QList<int> letters{30, 26, 21, 13, 12};
    for (int column = 0; column < letters.size(); ++column)
        header->resizeSection(column, letters[column] * letter);
    ui->lstFiles->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

/// Many rows are taken or left out at once.
void AddSourceFilesDialog::addRowCommands()
{
    const auto add = [this](const QString &name, Qt::Key key, bool checked) {
        auto *action = new QAction(name, ui->lstFiles);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, checked] { checkSelected(checked); });
        ui->lstFiles->addAction(action);
    };
    add(tr("Take the selected files"), Qt::Key_Insert, true);
    add(tr("Leave out the selected files"), Qt::Key_Delete, false);
    ui->lstFiles->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void AddSourceFilesDialog::checkSelected(bool checked)
{
    QList<int> rows;
    for (const QModelIndex &index : ui->lstFiles->selectionModel()->selectedRows())
        rows.append(m_sorted->mapToSource(index).row());
    m_model->check(rows, checked);
}

void AddSourceFilesDialog::fillConflictChoice()
{
    const QList<std::pair<QString, ImportAction>> choices{
        {tr("Skip"), ImportAction::Skip},
        {tr("Replace"), ImportAction::Replace},
        {tr("Rename"), ImportAction::Rename},
    };
    ui->cboConflicts->addItem(tr("As listed"));
    const QList<ImportItem> &items = plan().items;
    for (const auto &[name, choice] : choices) {
        const bool offered = std::any_of(items.begin(), items.end(), [&](const ImportItem &item) {
            return item.actions.size() > 1 && item.actions.contains(choice);
        });
        if (offered)
            ui->cboConflicts->addItem(name, static_cast<int>(choice));
    }
    const bool any = ui->cboConflicts->count() > 1;
    ui->cboConflicts->setEnabled(any);
    ui->lblConflicts->setEnabled(any);
    ui->cboConflicts->setToolTip(any ? tr("A renamed file is copied under the name shown. Links of "
                                          "the added pages to it follow; all other links stay.")
                                     : tr("No name is taken in the book."));
}

void AddSourceFilesDialog::decideAll()
{
    const QVariant action = ui->cboConflicts->currentData();
    if (action.isValid())
        m_model->decideAll(static_cast<ImportAction>(action.toInt()));
}

void AddSourceFilesDialog::updateTotals()
{
    const ImportTotals totals = totalsOf(plan());
    const QString size =
        QLocale().formattedDataSize(totals.bytes, 1, QLocale::DataSizeTraditionalFormat);
    QStringList numbers{tr("Pages: %1").arg(totals.pages), tr("Other files: %1").arg(totals.files)};
    if (plan().command != ImportCommand::NewerFiles)
        numbers.append(tr("Names taken: %1").arg(totals.conflicts));
    numbers.append(tr("To copy: %1").arg(size));
    ui->lblTotals->setText(numbers.join(u"   "_s));
    const bool any = totals.pages > 0;
    ui->cmdAdd->setEnabled(any);
    ui->lblReason->setText(any ? QString() : m_nothing);
    ui->cmdAdd->setToolTip(ui->lblReason->text());
}

void AddSourceFilesDialog::showOmissions()
{
    QStringList lines;
    for (const ImportOmission &omission : plan().omissions) {
        const QString page =
            omission.page.isEmpty() ? QString() : tr(" (in %1)").arg(omission.page);
        lines.append(omission.reference + page + u": "_s + omission.reason);
    }
    ui->lblOmissions->setText(tr("&Not copied: %1").arg(lines.size()));
    ui->txtOmissions->setPlainText(lines.join(u'\n'));
    ui->lblOmissions->setVisible(!lines.isEmpty());
    ui->txtOmissions->setVisible(!lines.isEmpty());
}
