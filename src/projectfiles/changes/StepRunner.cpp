#include "projectfiles/changes/StepRunner.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/Backup.h"

using namespace Qt::StringLiterals;

namespace {

bool isXml(const QString &path)
{
    return path.endsWith(".xml"_L1, Qt::CaseInsensitive);
}

} // namespace

StepRunner::StepRunner(FileSystem &files, QString projectFolder)
    : m_files(files)
    , m_folder(std::move(projectFolder))
{
}

void StepRunner::perform(const FileStep &step, Backup backup)
{
    switch (step.kind) {
    case FileStep::Kind::Write:
        flush();
        if (backup == Backup::Keep && isXml(step.path))
            backUp(m_files, m_folder, step.path, step.before);
        write(step.path, step.after);
        break;
    case FileStep::Kind::Move:
        move(step.path, step.to);
        break;
    case FileStep::Kind::MakeFolder:
        makeFolder(step.path);
        break;
    case FileStep::Kind::RemoveFolder:
        removeFolder(step.path);
        break;
    }
}

// What somebody else wrote over it is not ours to take back.
void StepRunner::takeBack(const FileStep &step)
{
    switch (step.kind) {
    case FileStep::Kind::Write:
        if (contentOf(step.path) == step.after)
            write(step.path, step.before);
        break;
    case FileStep::Kind::Move:
        move(step.to, step.path);
        break;
    case FileStep::Kind::MakeFolder:
        removeFolder(step.path);
        break;
    case FileStep::Kind::RemoveFolder:
        makeFolder(step.path);
        break;
    }
}

void StepRunner::flush()
{
    for (const QString &folder : std::as_const(m_touched)) {
        if (m_files.folderExists(m_folder + folder))
            m_files.syncFolder(m_folder + folder);
    }
    m_touched.clear();
}

std::optional<QByteArray> StepRunner::contentOf(const QString &path) const
{
    return m_files.exists(m_folder + path) ? std::optional(m_files.readFile(m_folder + path))
                                           : std::nullopt;
}

void StepRunner::write(const QString &path, const std::optional<QByteArray> &content)
{
    if (content) {
        m_files.replaceFile(m_folder + path, *content);
    } else {
        m_files.removeFile(m_folder + path, true);
        touched(path);
    }
}

void StepRunner::move(const QString &from, const QString &to)
{
    // Whoever worked the change out looked for names in other capitals; looking again for each file
    // of many would take a look through its folder every time.
    m_files.move(m_folder + from, m_folder + to, NameCheck::Exact);
    for (QString &folder : m_touched)
        folder = carriedOver(withoutBackslash(folder), from, to).value_or(folder);
    touched(from);
    touched(to);
}

void StepRunner::makeFolder(const QString &path)
{
    if (m_files.folderExists(m_folder + path))
        return;
    m_files.makeFolder(m_folder + path);
    touched(path);
}

void StepRunner::removeFolder(const QString &path)
{
    if (!m_files.folderExists(m_folder + path) || !m_files.entries(m_folder + path).isEmpty())
        return;
    m_files.removeFolder(m_folder + path);
    touched(path);
}

void StepRunner::touched(const QString &path)
{
    if (const QString folder = parentFolder(path); !m_touched.contains(folder))
        m_touched.append(folder);
}
