#include "controls/globals/ProjectPage.h"

#include "catalogue/ProjectCatalogue.h"
#include "controls/globals/FolderSize.h"
#include "controls/globals/ProjectNaming.h"
#include "controls/globals/RenameProjectDialog.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "platform/FileSystem.h"
#include "resources/Counted.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

#include <array>

using namespace Qt::StringLiterals;

namespace {

QString languageName(const QString &code)
{
    static constexpr std::array<std::pair<QLatin1StringView, const char *>, 6> names{{
        {"ENU"_L1, QT_TRANSLATE_NOOP("ProjectPage", "English")},
        {"DEU"_L1, QT_TRANSLATE_NOOP("ProjectPage", "German")},
        {"CHS"_L1, QT_TRANSLATE_NOOP("ProjectPage", "Chinese, simplified")},
        {"CHT"_L1, QT_TRANSLATE_NOOP("ProjectPage", "Chinese, traditional")},
        {"JPN"_L1, QT_TRANSLATE_NOOP("ProjectPage", "Japanese")},
        {"KOR"_L1, QT_TRANSLATE_NOOP("ProjectPage", "Korean")},
    }};
    for (const auto &[known, name] : names) {
        if (code == known)
            return u"%1 (%2)"_s.arg(ProjectPage::tr(name), code);
    }
    return code;
}

} // namespace

ProjectPage::ProjectPage(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_name(plainLabel({}, this))
    , cmdRename(makeButton(u"cmdRenameProject"_s, "edit"_L1, tr("&Rename project..."), this))
    , txtId(new CheckedField(u"txtProjectId"_s, tr("ID of the project"),
                             &ProjectNaming::problemOfId, {}, this))
    , m_problem(makeProblemLabel(u"lblFactsProblem"_s, this))
    , m_counter(new FolderSize(session.program().files, this))
{
    layOut();
    connect(cmdRename, &QPushButton::clicked, this, &ProjectPage::askRename);
    connect(txtId, &CheckedField::editingFinished, this, &ProjectPage::commitId);
    connect(txtId, &CheckedField::escaped, this, &ProjectPage::showProject);
    connect(m_counter, &FolderSize::counted, this, [this](int files, qint64 bytes) {
        m_size->setText(tr("%1 in %2")
                            .arg(QLocale().formattedDataSize(bytes),
                                 counted(files, tr("1 file"), tr("%1 files"))));
    });
    connect(&m_session, &ProjectSession::wasReset, this, &ProjectPage::showProject);
    connect(&m_session, &ProjectSession::booksChanged, this, &ProjectPage::showProject);
    connect(&m_session, &ProjectSession::filesChanged, this, &ProjectPage::countFiles);
    showProject();
}

void ProjectPage::layOut()
{
    m_name->setObjectName(u"lblName"_s);
    m_name->setAccessibleName(tr("Name"));
    m_name->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *name = new QHBoxLayout;
    name->addWidget(m_name, 1);
    name->addWidget(cmdRename);

    auto *form = new QFormLayout(this);
    form->addRow(tr("Name:"), name);
    form->addRow(tr("I&D:"), txtId);
    m_language = addFact(form, tr("Language:"), u"lblLanguage"_s);
    m_platform = addFact(form, tr("Platform:"), u"lblPlatform"_s);
    m_variation = addFact(form, tr("Variation:"), u"lblVariation"_s);
    m_processed = addFact(form, tr("Last processed:"), u"lblProcessed"_s);
    m_migrated = addFact(form, tr("Copied or migrated:"), u"lblMigrated"_s);
    m_books = addFact(form, tr("Books:"), u"lblBooks"_s);
    m_folder = addFact(form, tr("Folder:"), u"lblFolder"_s);
    m_size = addFact(form, tr("Size:"), u"lblSize"_s);
    form->addRow(m_problem);
}

QLabel *ProjectPage::addFact(QFormLayout *form, const QString &caption, const QString &objectName)
{
    QLabel *fact = plainLabel({}, this);
    fact->setObjectName(objectName);
    fact->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form->addRow(caption, fact);
    fact->setAccessibleName(caption.chopped(1));
    return fact;
}

void ProjectPage::showProject()
{
    QString problem;
    trap([&](const QvError &error) { problem = error.description(); },
         [this] {
             showFacts();
             showListed();
         });
    sayProblem(m_problem, problem);
    countFiles();
}

void ProjectPage::showFacts()
{
    const TocHeader &header = m_session.header();
    const bool isOpen = !m_session.projectName().isEmpty();
    m_name->setText(m_session.projectName());
    m_platform->setText(header.platform);
    m_variation->setText(header.variation);
    m_processed->setText(header.dateProcess);
    m_migrated->setText(header.dateMigration);
    m_books->setText(QString::number(m_session.books().size()));
    m_folder->setText(isOpen ? m_session.shownPath(m_session.folder()) : QString());
}

void ProjectPage::showListed()
{
    const CatalogueEntry entry = ProjectNaming(m_session).entry();
    const bool isListed = !entry.name.isEmpty();
    txtId->setText(entry.id);
    txtId->setEnabled(isListed);
    m_language->setText(languageName(entry.language));
    cmdRename->setEnabled(isListed);
    cmdRename->setToolTip(isListed ? QString() : tr("The project is not in the list of projects."));
}

void ProjectPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_isCounted)
        countFiles();
}

// Nobody counts what nobody sees.
void ProjectPage::countFiles()
{
    m_isCounted = isVisible();
    m_size->setText(m_isCounted ? tr("Counting...") : QString());
    m_counter->count(m_isCounted ? m_session.folder() : QString());
}

void ProjectPage::commitId()
{
    if (!txtId->isEdited())
        return;
    const QString id = txtId->text();
    const bool isNew = ProjectNaming::problemOfId(id).isEmpty();
    const bool done = isNew && handled(m_session.program(), [&] {
                          if (ProjectNaming(m_session).entry().id == id)
                              return false;
                          ProjectNaming(m_session).setId(id);
                          return true;
                      });
    showProject();
    if (done)
        Q_EMIT m_session.done(tr("The ID of the project is now %1.").arg(id));
}

void ProjectPage::askRename()
{
    handled(m_session.program(), [this] {
        auto *dialog = new RenameProjectDialog(m_session, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::accepted, this, &ProjectPage::renamed);
        dialog->open();
    });
}
