#include "controls/books/AddFiles.h"

#include "controls/import/AddImportFiles.h"
#include "controls/import/AddSourceFiles.h"
#include "platform/Messages.h"
#include "tools/import/PageConversion.h"

#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
bool mustBecomeAPage(const QString &path)
{
    const ImportFormat format = importFormat(path);
    return isConverted(format) || format == ImportFormat::Archive;
}
} // namespace

AddFiles::AddFiles(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_sources(new AddSourceFiles(session, window))
    , m_imports(new AddImportFiles(session, window))
{
    m_sources->setParent(this);
    m_imports->setParent(this);
    connect(m_sources, &AddSourceFiles::added, this, &AddFiles::sourcesAdded);
    connect(m_imports, &AddImportFiles::added, this, &AddFiles::importsAdded);
}

void AddFiles::askSourceFolder()
{
    const QString folder = m_session.program().fileDialogs.chooseFolder(tr("Add source files"), {});
    if (!folder.isEmpty())
        m_sources->begin({folder});
}

void AddFiles::askSourceFiles()
{
    const QStringList files = m_session.program().fileDialogs.openFiles(
        tr("Add source files"), {}, u"HTML files(*.htm;*.html;*.xhtml)|*.htm;*.html;*.xhtml"_s);
    if (!files.isEmpty())
        m_sources->begin(files);
}

void AddFiles::askImportFolder()
{
    const QString folder = m_session.program().fileDialogs.chooseFolder(tr("Add import files"), {});
    if (!folder.isEmpty())
        m_imports->begin({folder});
}

void AddFiles::askImportFiles()
{
    const QStringList files = m_session.program().fileDialogs.openFiles(
        tr("Add import files"), {}, AddImportFiles::fileFilter());
    if (!files.isEmpty())
        m_imports->begin(files);
}

void AddFiles::beginNewer()
{
    m_imports->beginNewer();
}

void AddFiles::begin(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    if (std::any_of(paths.cbegin(), paths.cend(), &mustBecomeAPage))
        m_imports->begin(paths);
    else
        m_sources->begin(paths, [&] { m_imports->begin(paths); }); // a folder of texts
}
