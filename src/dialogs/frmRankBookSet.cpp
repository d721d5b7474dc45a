#include "dialogs/frmRankBookSet.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "dialogs/RankModel.h"
#include "resources/Texts.h"
#include "startup/Session.h"
#include "ui_frmRankBookSet.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

bool isEnter(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isDigit(const QKeyEvent &event)
{
    return event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9
           && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

} // namespace

frmRankBookSet::frmRankBookSet(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmRankBookSet>())
{
    ui->setupUi(this);
    m_model = new RankModel(ui->fgdBooksetRank);
    ui->fgdBooksetRank->setModel(m_model);
    ui->txtRankHolder->setParent(ui->fgdBooksetRank->viewport());
    ui->txtRankHolder->hide();
    layOutGrid();
    connectControls();
    watchGrid();
}

frmRankBookSet::~frmRankBookSet() = default;

void frmRankBookSet::connectControls()
{
    using Self = frmRankBookSet;
    connect(ui->cmdApply, &QPushButton::clicked, this, &Self::cmdApply_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &Self::cmdOK_Click);
    connect(ui->cmdBack, &QPushButton::clicked, this, &Self::cmdBack_Click);

    const QTableView *const grid = ui->fgdBooksetRank;
    connect(grid->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Self::fgdBooksetRank_SelChange);
    connect(grid, &QTableView::pressed, this, &Self::fgdBooksetRank_SelChange);
    connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, &Self::arrange,
            Qt::QueuedConnection); // it is told before the columns have moved
    const QScrollBar *const bar = grid->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &Self::arrange, Qt::QueuedConnection);
    connect(bar, &QScrollBar::valueChanged, this, &Self::fgdBooksetRank_Scroll);
}

void frmRankBookSet::watchGrid()
{
    QTableView *const grid = ui->fgdBooksetRank;
    for (QWidget *const watched : std::initializer_list<QWidget *>{
             grid, grid->viewport(), grid->horizontalHeader()->viewport(),
             grid->verticalScrollBar(), ui->txtRankHolder})
        watched->installEventFilter(this);
}

/// The names take the width that the ranks leave.
void frmRankBookSet::layOutGrid()
{
    constexpr int rankWidth = 168;
    const int height = ui->txtRankHolder->sizeHint().height() + 2;
    QHeaderView *const header = ui->fgdBooksetRank->horizontalHeader();
    header->setSectionResizeMode(RankModel::Name, QHeaderView::Stretch);
    header->setSectionResizeMode(RankModel::Rank, QHeaderView::Fixed);
    header->resizeSection(RankModel::Rank, rankWidth);
    header->setSectionsClickable(false);
    header->setFixedHeight(height + 4);
    ui->fgdBooksetRank->verticalHeader()->setDefaultSectionSize(height);

    QPalette onHeader;
    onHeader.setColor(QPalette::Base, Qt::transparent);
    for (QLineEdit *const box : {ui->txtBooksetName, ui->txtBooksetRank}) {
        box->setPalette(onHeader);
        box->setParent(header->viewport());
        box->setAttribute(Qt::WA_TransparentForMouseEvents); // a press there is one on the grid
        box->show();
    }
}

/// Puts the boxes over the header cells and the editor over its cell.
void frmRankBookSet::arrange()
{
    const QHeaderView &header = *ui->fgdBooksetRank->horizontalHeader();
    const int rankLeft = header.sectionViewportPosition(RankModel::Rank);
    ui->txtBooksetName->setGeometry(0, 0, rankLeft, header.height());
    ui->txtBooksetRank->setGeometry(rankLeft, 0, header.sectionSize(RankModel::Rank),
                                    header.height());
    if (m_edited.isValid())
        ui->fgdBooksetRank->scrollTo(m_edited); // a smaller window may hide it
    placeEditor();
}

void frmRankBookSet::Form_Load()
{
    inHandler("Form_Load"_L1, [this] {
        ui->cmdApply->setText(text(Text::Apply));
        ui->cmdOK->setText(text(Text::Ok));
        ui->cmdBack->setText(text(Text::Back));
        ui->txtBooksetName->setText(text(Text::BookSetNameHeader) + u' ');
        ui->txtBooksetRank->setText(text(Text::RankHeader) + u' ');
        UpdateFlexGrid();
        ui->fgdBooksetRank->setFocus();
    });
}

void frmRankBookSet::UpdateFlexGrid()
{
    const QStringList entries =
        ProjectCatalogue(m_program.session, m_program.files).GetProdQVSelection_Data();
    QTableView &grid = *ui->fgdBooksetRank;
    const int row = std::max(0, grid.currentIndex().row());
    hideEditor();
    m_model->fill(entries);
    const QSignalBlocker noEditor(grid.selectionModel());
    grid.setCurrentIndex(m_model->index(std::min(row, m_model->rowCount() - 1), RankModel::Rank));
}

QString frmRankBookSet::ValidateRank(const QString &text)
{
    if (text.isEmpty())
        return text;
    if (const std::optional<int> rank = rankIn(text, m_program.locale))
        return QString::number(*rank);
    m_program.messages.show({::text(Text::InvalidRank)});
    return defaultRank;
}

// Runs for a press on the current cell too, which opens the editor again.
void frmRankBookSet::fgdBooksetRank_SelChange()
{
    inHandler("fgdBooksetRank_SelChange"_L1, [this] {
        const QModelIndex cell = ui->fgdBooksetRank->currentIndex();
        if (cell.column() != RankModel::Rank || m_edited == cell)
            return;
        commitEdit();
        ui->fgdBooksetRank->scrollTo(cell);
        m_edited = cell;
        placeEditor();
        ui->txtRankHolder->setText(cell.data().toString());
        ui->txtRankHolder->setAccessibleName(tr("Rank of %1").arg(m_model->name(cell.row())));
        ui->txtRankHolder->show();
        ui->txtRankHolder->selectAll();
        ui->txtRankHolder->setFocus();
    });
}

bool frmRankBookSet::fgdBooksetRank_KeyDown(QKeyEvent &event)
{
    const bool opens = event.key() == Qt::Key_F2 || isDigit(event);
    inHandler("fgdBooksetRank_KeyDown"_L1, [&] {
        if (isEnter(event))
            commitEdit();
        if (opens)
            fgdBooksetRank_SelChange();
        if (isDigit(event) && m_edited.isValid())
            QCoreApplication::sendEvent(ui->txtRankHolder, &event);
    });
    return opens || isEnter(event);
}

// The release of a press that brought up a message goes to the message: a scroll bar would run on.
bool frmRankBookSet::fgdBooksetRank_MouseDown(const QObject *pressed)
{
    bool accepted = true;
    inHandler("fgdBooksetRank_MouseDown"_L1, [&] { accepted = commitEdit(); });
    return !accepted && pressed != ui->fgdBooksetRank->viewport();
}

void frmRankBookSet::fgdBooksetRank_Scroll()
{
    inHandler("fgdBooksetRank_Scroll"_L1, [this] { commitEdit(); });
}

bool frmRankBookSet::txtRankHolder_KeyDown(QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return fgdBooksetRank_KeyDown(event);
    case Qt::Key_Escape:
        hideEditor();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        fgdBooksetRank_Scroll();
        QCoreApplication::sendEvent(ui->fgdBooksetRank, &event);
        return true;
    default:
        return false;
    }
}

// Only Tab commits on its way out: another window may come to the front, and Back drops the edit.
void frmRankBookSet::txtRankHolder_LostFocus(Qt::FocusReason reason)
{
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
        fgdBooksetRank_Scroll();
}

bool frmRankBookSet::eventFilter(QObject *watched, QEvent *event)
{
    const bool isEditor = watched == ui->txtRankHolder;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return !isEditor && fgdBooksetRank_MouseDown(watched);
    case QEvent::KeyPress: {
        auto &key = static_cast<QKeyEvent &>(*event);
        return isEditor ? txtRankHolder_KeyDown(key) : fgdBooksetRank_KeyDown(key);
    }
    case QEvent::FocusOut:
        if (isEditor)
            txtRankHolder_LostFocus(static_cast<QFocusEvent *>(event)->reason());
        return false;
    default:
        return false;
    }
}

/// Writes the editor's text into its cell. False when the text was none and the author was told.
bool frmRankBookSet::commitEdit()
{
    if (!m_edited.isValid())
        return true;
    const QString typed = ui->txtRankHolder->text();
    const QPersistentModelIndex cell = m_edited;
    hideEditor(); // before the message, which lets other events in
    const QString rank = ValidateRank(typed);
    if (cell.isValid())
        m_model->setRank(cell.row(), rank);
    return typed.isEmpty() || rankIn(typed, m_program.locale);
}

void frmRankBookSet::hideEditor()
{
    m_edited = QModelIndex();
    if (focusWidget() == ui->txtRankHolder)
        ui->fgdBooksetRank->setFocus();
    ui->txtRankHolder->hide();
}

void frmRankBookSet::placeEditor()
{
    if (m_edited.isValid())
        ui->txtRankHolder->setGeometry(ui->fgdBooksetRank->visualRect(m_edited));
}

void frmRankBookSet::cmdApply_Click()
{
    inHandler("cmdApply_Click"_L1, [this] {
        commitEdit();
        ProjectCatalogue(m_program.session, m_program.files)
            .UpdateRankInSelectionFile(m_program.components.projectRanking,
                                       m_model->entries(m_program.locale));
        UpdateFlexGrid();
        m_program.messages.show({text(Text::RanksUpdated)});
    });
}

void frmRankBookSet::cmdOK_Click()
{
    inHandler("cmdOK_Click"_L1, [this] {
        m_program.messages.show({text(Text::RanksSaved)});
        returnToLauncher();
    });
}

void frmRankBookSet::cmdBack_Click()
{
    inHandler("cmdBack_Click"_L1, [this] { returnToLauncher(); });
}

void frmRankBookSet::returnToLauncher()
{
    m_program.session.gbBackToLauncher = true;
    m_program.navigator.loadform();
    const QScopedValueRollback quiet(mbQuietClose, true);
    close();
}

void frmRankBookSet::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        if (!mbQuietClose)
            cancel = !saysYes(text(Text::CloseProgram));
    });
}

void frmRankBookSet::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        FormWindow::keyPressEvent(event);
}

void frmRankBookSet::inHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedureWithReason(error, handler, u"frmRankBookSet"_s);
    };
    trapped(shape, body);
}
