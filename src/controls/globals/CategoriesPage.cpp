#include "controls/globals/CategoriesPage.h"

#include "controls/globals/CategoryDialog.h"
#include "controls/globals/CategoryNames.h"
#include "controls/globals/ReplaceCategoryDialog.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "resources/Counted.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString inBooks(qsizetype count)
{
    return counted(count, CategoriesPage::tr("1 book"), CategoriesPage::tr("%1 books"));
}

void addCategory(QTreeWidget *table, const Category &category, const QString &origin,
                 qsizetype books)
{
    QTreeWidgetItem *row = addRow(
        table, {category.name, origin, QString::number(books), category.description},
        u"%1, %2, %3. %4"_s.arg(category.name, origin, inBooks(books), category.description));
    row->setTextAlignment(2, Qt::AlignTrailing | Qt::AlignVCenter);
}

QStringList columns()
{
    return {CategoriesPage::tr("Category"), CategoriesPage::tr("Origin"),
            CategoriesPage::tr("Books"), CategoriesPage::tr("Description")};
}

} // namespace

CategoriesPage::CategoriesPage(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , tvwCategories(
          makeTable(u"tvwCategories"_s, tr("Categories of the project"), columns(), 3, this))
    , tvwDefaultCategories(
          makeTable(u"tvwDefaultCategories"_s, tr("Default categories"), columns(), 3, this))
    , m_problem(makeProblemLabel(u"lblCategoriesProblem"_s, this))
    , m_ownCommands(new ListCommands(tvwCategories))
    , m_defaultCommands(new ListCommands(tvwDefaultCategories))
{
    layOut();
    connectSession();
    rebuild();
}

void CategoriesPage::layOut()
{
    auto *both = new QSplitter(this);
    both->setObjectName(u"splCategories"_s);
    both->addWidget(ownSide());
    both->addWidget(defaultSide());
    both->setStretchFactor(0, 3);
    both->setStretchFactor(1, 2);
    const int letter = fontMetrics().averageCharWidth();
    both->setSizes({90 * letter, 60 * letter});
    both->setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_problem);
    layout->addWidget(both, 1);
}

QWidget *CategoriesPage::ownSide()
{
    auto *side = new QWidget(this);
    auto *buttons = new QHBoxLayout;
    QWidget *before = tvwCategories; // in the order of tabs, too
    const auto command = [&](const QString &name, QLatin1StringView picture, const QString &text,
                             const QKeySequence &keys, void (CategoriesPage::*run)()) {
        QPushButton *button = makeButton(name, picture, text, side);
        buttons->addWidget(button);
        setTabOrder(std::exchange(before, button), button);
        return m_ownCommands->add(button, keys, [this, run] { (this->*run)(); });
    };
    command(u"cmdAddCategory"_s, "add"_L1, tr("&Add..."), Qt::Key_Insert, &CategoriesPage::askAdd);
    m_change = command(u"cmdChangeCategory"_s, "edit"_L1, tr("&Rename..."), Qt::Key_F2,
                       &CategoriesPage::askChange);
    m_join =
        command(u"cmdJoinCategory"_s, "merge"_L1, tr("Jo&in..."), {}, &CategoriesPage::askJoin);
    m_delete = command(u"cmdDeleteCategory"_s, "delete"_L1, tr("&Delete"), QKeySequence::Delete,
                       &CategoriesPage::askDelete);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(plainLabel(tr("Categories of this project."), side));
    layout->addWidget(tvwCategories, 1);
    layout->addLayout(buttons);
    return side;
}

QWidget *CategoriesPage::defaultSide()
{
    auto *side = new QWidget(this);
    QPushButton *button = makeButton(u"cmdAdoptCategory"_s, "left"_L1, tr("Take o&ver"), side);
    m_adopt = m_defaultCommands->add(button, Qt::Key_Insert, [this] { adopt(); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(button);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(plainLabel(
        tr("Default categories. All projects of the server share them, so they cannot be changed "
           "here; take one over to make it this project's own."),
        side));
    layout->addWidget(tvwDefaultCategories, 1);
    layout->addLayout(buttons);
    return side;
}

void CategoriesPage::connectSession()
{
    connect(&m_session, &ProjectSession::wasReset, this, &CategoriesPage::rebuild);
    connect(&m_session, &ProjectSession::booksChanged, this, &CategoriesPage::rebuild);
    connect(&m_session, &ProjectSession::categoriesChanged, this, &CategoriesPage::rebuild);
    for (QTreeWidget *table : {tvwCategories, tvwDefaultCategories})
        connect(table, &QTreeWidget::currentItemChanged, this, &CategoriesPage::offerCommands);
    connect(tvwCategories, &QTreeWidget::itemActivated, this, &CategoriesPage::askChange);
}

void CategoriesPage::rebuild()
{
    QString problem;
    const auto note = [&](const QvError &error) { problem = error.description(); };
    m_known.clear();
    m_defaults.clear();
    if (!m_session.projectName().isEmpty()) {
        trap(note, [this] { m_defaults = defaultCategories(m_session); });
        trap(note, [this] { m_known = knownCategories(m_session); });
    }
    showOwn();
    showDefaults();
    sayProblem(m_problem, problem);
    offerCommands();
}

void CategoriesPage::showOwn()
{
    const QString current = chosenRow(tvwCategories);
    const QSignalBlocker quiet(tvwCategories);
    tvwCategories->clear();
    for (const KnownCategory &known : std::as_const(m_known)) {
        const bool listed = known.origin == KnownCategory::Origin::Project;
        addCategory(tvwCategories, known.category, listed ? tr("Project") : tr("Books only"),
                    known.books.size());
    }
    chooseRow(tvwCategories, current);
}

void CategoriesPage::showDefaults()
{
    const QString current = chosenRow(tvwDefaultCategories);
    const QSignalBlocker quiet(tvwDefaultCategories);
    tvwDefaultCategories->clear();
    for (const Category &category : std::as_const(m_defaults))
        addCategory(tvwDefaultCategories, category, tr("Default"),
                    booksWith(m_session, category.name).size());
    chooseRow(tvwDefaultCategories, current);
}

void CategoriesPage::offerCommands()
{
    const QString none = tr("Choose a category first.");
    const QString noOwn = chosen() == nullptr ? none : QString();
    ListCommands::offer(m_change, noOwn);
    ListCommands::offer(m_delete, noOwn);
    const bool isAlone = chosen() != nullptr && replacements(chosen()->category.name).isEmpty();
    ListCommands::offer(m_join, isAlone ? tr("There is no other category.") : noOwn);
    const QString adopted = chosenRow(tvwDefaultCategories);
    const bool isOwn = std::any_of(m_known.cbegin(), m_known.cend(), [&](const auto &known) {
        return known.origin == KnownCategory::Origin::Project
               && known.category.name.compare(adopted, Qt::CaseInsensitive) == 0;
    });
    ListCommands::offer(m_adopt, adopted.isEmpty() ? none
                                 : isOwn           ? tr("The project has it as its own already.")
                                                   : QString());
}

const KnownCategory *CategoriesPage::chosen() const
{
    const QString name = chosenRow(tvwCategories);
    const auto found = std::find_if(m_known.cbegin(), m_known.cend(), [&](const auto &known) {
        return !name.isEmpty() && known.category.name == name;
    });
    return found == m_known.cend() ? nullptr : &*found;
}

QStringList CategoriesPage::namesBut(const QString &name) const
{
    QStringList names;
    for (const KnownCategory &known : m_known) {
        if (known.category.name.compare(name, Qt::CaseInsensitive) != 0)
            names.append(known.category.name);
    }
    return names;
}

// Own ones first, then the default ones that are not among them.
QStringList CategoriesPage::replacements(const QString &name)
{
    QStringList names = namesBut(name);
    for (const Category &category : std::as_const(m_defaults)) {
        if (category.name.compare(name, Qt::CaseInsensitive) != 0
            && !names.contains(category.name, Qt::CaseInsensitive))
            names.append(category.name);
    }
    return names;
}

void CategoriesPage::askAdd()
{
    QStringList taken;
    for (const KnownCategory &known : std::as_const(m_known)) {
        if (known.origin == KnownCategory::Origin::Project)
            taken.append(known.category.name);
    }
    const auto run = [this](const QString &name, const QString &description) {
        const bool done = perform(name, tr("The category %1 was added.").arg(name),
                                  [&] { CategoryCommands(m_session).add(name, description); });
        if (done)
            Q_EMIT added();
        return done;
    };
    auto *dialog = new CategoryDialog(
        {.title = tr("Add category"), .button = tr("&Add"), .others = taken}, run, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void CategoriesPage::askChange()
{
    if (chosen() == nullptr)
        return;
    const Category old = chosen()->category;
    const auto run = [this, old](const QString &name, const QString &description) {
        const QString say = old.name == name
                                ? tr("The category %1 was described.").arg(name)
                                : tr("The category %1 is now called %2.").arg(old.name, name);
        const bool done = perform(
            name, say, [&] { CategoryCommands(m_session).change(old.name, name, description); });
        if (done)
            Q_EMIT renamed();
        return done;
    };
    auto *dialog = new CategoryDialog({.title = tr("Rename category"),
                                       .button = tr("&Rename"),
                                       .others = namesBut(old.name),
                                       .name = old.name,
                                       .description = old.description},
                                      run, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void CategoriesPage::askJoin()
{
    if (chosen() == nullptr)
        return;
    const QString name = chosen()->category.name;
    askReplacement(tr("Join categories"),
                   tr("Join the category \"%1\" into another one? It goes, and its books carry the "
                      "other one once.")
                       .arg(name),
                   tr("&Join"), false, [this, name](const QString &into) {
                       CategoryCommands(m_session).join(name, into);
                   });
}

void CategoriesPage::askDelete()
{
    if (chosen() == nullptr)
        return;
    const QString name = chosen()->category.name;
    const auto run = [this, name](const QString &into) {
        CategoryCommands(m_session).remove(name, into);
    };
    if (!chosen()->books.isEmpty()) {
        askReplacement(tr("Delete category"), tr("Delete the category \"%1\"?").arg(name),
                       tr("&Delete"), true, run);
    } else if (perform({}, tr("The category %1 was deleted.").arg(name), [&] { run({}); })) {
        Q_EMIT deleted();
    }
}

void CategoriesPage::askReplacement(const QString &title, const QString &question,
                                    const QString &button, bool mayTakeAway,
                                    const std::function<void(const QString &)> &run)
{
    const QString name = chosen()->category.name;
    const auto go = [this, name, run](const QString &into) {
        const QString say = into.isEmpty()
                                ? tr("The category %1 was deleted.").arg(name)
                                : tr("The category %1 was replaced by %2.").arg(name, into);
        const bool done = perform(into, say, [&] { run(into); });
        if (done)
            Q_EMIT deleted();
        return done;
    };
    auto *dialog = new ReplaceCategoryDialog({.title = title,
                                              .question = question,
                                              .button = button,
                                              .books = chosen()->books,
                                              .categories = replacements(name),
                                              .mayTakeAway = mayTakeAway},
                                             go, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void CategoriesPage::adopt()
{
    const QString name = chosenRow(tvwDefaultCategories);
    for (const Category &category : QList(m_defaults)) {
        if (category.name != name)
            continue;
        if (perform(name, tr("The category %1 is now the project's own.").arg(name),
                    [&] { CategoryCommands(m_session).add(category.name, category.description); }))
            Q_EMIT added();
        return;
    }
}

/// Does it, makes `choose` the current category and says so.
bool CategoriesPage::perform(const QString &choose, const QString &done,
                             const std::function<void()> &body)
{
    if (!wasDone(m_session.program(), body))
        return false;
    chooseRow(tvwCategories, choose);
    Q_EMIT m_session.done(done);
    return true;
}
