#include "projectfiles/GrowingFolder.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"

using namespace Qt::StringLiterals;

GrowingFolder::GrowingFolder(FileSystem &files, QString place)
    : m_files(files)
    , m_place(std::move(place))
{
}

QString GrowingFolder::growing() const
{
    return m_place + u".qvnew"_s;
}

QString GrowingFolder::path() const
{
    return m_isInPlace ? m_place : growing();
}

bool GrowingFolder::isUnused()
{
    return !m_files.folderExists(m_place) || m_files.entries(m_place).isEmpty();
}

void GrowingFolder::begin(const std::function<void()> &makePlace)
{
    m_wasThere = m_files.folderExists(m_place);
    makePlace();
    if (m_files.exists(growing()))
        deleteTree(m_files, growing());
}

void GrowingFolder::putInPlace(const Progress &progress)
{
    progress.step(0, 0); // busy for a while
    m_files.syncTree(growing());
    progress.step(1, 1);
    move();
    m_files.syncFolder(withoutBackslash(parentFolder(m_place)));
}

void GrowingFolder::move()
{
    m_files.removeFolder(m_place);
    m_files.move(growing(), m_place);
    m_isInPlace = true;
}

void GrowingFolder::leaveInPlace()
{
    const auto asFarAsItGoes = [](const QvError &) {}; // it stays beside its place then
    trap(asFarAsItGoes, [this] { m_files.syncTree(path()); });
    if (!m_isInPlace)
        trap(asFarAsItGoes, [this] { move(); });
}

void GrowingFolder::discard()
{
    const auto asFarAsItGoes = [](const QvError &) {}; // what stopped the work is told
    trap(asFarAsItGoes, [this] {
        if (m_files.exists(path()))
            deleteTree(m_files, path());
    });
    if (!m_isInPlace && !m_wasThere)
        trap(asFarAsItGoes, [this] { m_files.removeFolder(m_place); });
}
