#include "controls/globals/QuickNavCategories.h"

#include "controls/globals/CategoryDialog.h"
#include "controls/globals/QuickNavCategoryCommands.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "resources/Counted.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

QuickNavCategories::QuickNavCategories(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , tvwCategories(makeTable(u"tvwQuickNavCategories"_s, tr("Quick-navigation categories"),
                              {tr("Category"), tr("In the navigation")}, 0, this))
    , m_problem(makeProblemLabel(u"lblQuickNavCategoriesProblem"_s, this))
    , m_commands(new ListCommands(tvwCategories))
{
    layOut();
    connect(&m_session, &ProjectSession::wasReset, this, &QuickNavCategories::rebuild);
    connect(&m_session, &ProjectSession::quickNavChanged, this, &QuickNavCategories::rebuild);
    connect(tvwCategories, &QTreeWidget::currentItemChanged, this,
            &QuickNavCategories::offerCommands);
    connect(tvwCategories, &QTreeWidget::itemActivated, this, &QuickNavCategories::askRename);
    rebuild();
}

void QuickNavCategories::layOut()
{
    auto *buttons = new QHBoxLayout;
    const auto command = [&](const QString &name, QLatin1StringView picture, const QString &text,
                             const QKeySequence &keys, void (QuickNavCategories::*run)()) {
        QPushButton *button = makeButton(name, picture, text, this);
        buttons->addWidget(button);
        return m_commands->add(button, keys, [this, run] { (this->*run)(); });
    };
    command(u"cmdAddQuickNavCategory"_s, "add"_L1, tr("&Add..."), Qt::Key_Insert,
            &QuickNavCategories::askAdd);
    m_rename = command(u"cmdRenameQuickNavCategory"_s, "edit"_L1, tr("&Rename..."), Qt::Key_F2,
                       &QuickNavCategories::askRename);
    m_delete = command(u"cmdDeleteQuickNavCategory"_s, "delete"_L1, tr("&Delete"),
                       QKeySequence::Delete, &QuickNavCategories::askDelete);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(
        plainLabel(tr("Names from which the categories of the quick navigation are "
                      "chosen. The second column counts the categories of that name."),
                   this));
    layout->addWidget(m_problem);
    layout->addWidget(tvwCategories, 1);
    layout->addLayout(buttons);
}

void QuickNavCategories::rebuild()
{
    const QString current = chosenRow(tvwCategories);
    QString problem;
    {
        const QSignalBlocker quiet(tvwCategories);
        tvwCategories->clear();
        trap([&](const QvError &error) { problem = error.description(); },
             [this] {
                 if (m_session.projectName().isEmpty())
                     return;
                 const QuickNav &quickNav = m_session.quickNav();
                 for (const QString &name : quickNav.categories) {
                     const int uses = usesInTree(quickNav, name);
                     addRow(tvwCategories, {name, QString::number(uses)},
                            tr("%1, %2 in the navigation").arg(name).arg(uses))
                         ->setTextAlignment(1, Qt::AlignTrailing | Qt::AlignVCenter);
                 }
             });
        chooseRow(tvwCategories, current);
    }
    sayProblem(m_problem, problem);
    offerCommands();
}

void QuickNavCategories::offerCommands()
{
    const QString whyNot =
        chosenRow(tvwCategories).isEmpty() ? tr("Choose a category first.") : QString();
    ListCommands::offer(m_rename, whyNot);
    ListCommands::offer(m_delete, whyNot);
}

QStringList QuickNavCategories::namesBut(const QString &name)
{
    QStringList names = m_session.quickNav().categories;
    names.removeIf(
        [&](const QString &other) { return other.compare(name, Qt::CaseInsensitive) == 0; });
    return names;
}

void QuickNavCategories::askAdd()
{
    const auto run = [this](const QString &name, const QString &) {
        return perform(name, tr("The quick-navigation category %1 was added.").arg(name),
                       [&] { QuickNavCategoryCommands(m_session).add(name); });
    };
    auto *dialog = new CategoryDialog({.title = tr("Add quick-navigation category"),
                                       .button = tr("&Add"),
                                       .others = namesBut({}),
                                       .hasDescription = false},
                                      run, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void QuickNavCategories::askRename()
{
    const QString old = chosenRow(tvwCategories);
    if (old.isEmpty())
        return;
    const auto run = [this, old](const QString &name, const QString &) {
        return perform(name,
                       tr("The quick-navigation category %1 is now called %2.").arg(old, name),
                       [&] { QuickNavCategoryCommands(m_session).rename(old, name); });
    };
    auto *dialog = new CategoryDialog({.title = tr("Rename quick-navigation category"),
                                       .button = tr("&Rename"),
                                       .others = namesBut(old),
                                       .name = old,
                                       .hasDescription = false},
                                      run, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void QuickNavCategories::askDelete()
{
    const QString name = chosenRow(tvwCategories);
    const int uses = name.isEmpty() ? 0 : usesInTree(m_session.quickNav(), name);
    const QString question =
        tr("Delete the quick-navigation category \"%1\" from the list? %2 of the navigation keep "
           "the name.")
            .arg(name, counted(uses, tr("1 category"), tr("%1 categories")));
    if (name.isEmpty()
        || (uses > 0
            && m_session.program().messages.show({question, Buttons::YesNo}) != Answer::Yes))
        return;
    perform({}, tr("The quick-navigation category %1 was deleted.").arg(name),
            [&] { QuickNavCategoryCommands(m_session).remove(name); });
}

bool QuickNavCategories::perform(const QString &choose, const QString &done,
                                 const std::function<void()> &body)
{
    if (!wasDone(m_session.program(), body))
        return false;
    chooseRow(tvwCategories, choose);
    Q_EMIT changed();
    Q_EMIT m_session.done(done);
    return true;
}
