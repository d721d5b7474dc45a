#pragma once

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include "support/OrdinaryUser.h"
#endif

/// While it lives, a file cannot be read, or not be removed: another program has it open, or the
/// author has no right to.
class Locked final
{
public:
    enum class Against { Reading, Removing };

#ifdef Q_OS_WIN
    Locked(const QString &path, Against)
        : m_file(CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), GENERIC_READ, 0,
                             nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    ~Locked()
    {
        CloseHandle(m_file);
    }
#else
    Locked(const QString &path, Against what)
        : m_path(what == Against::Reading ? path : QFileInfo(path).path())
        , m_rights(QFile::permissions(m_path))
    {
        QFile::setPermissions(m_path, what == Against::Reading
                                          ? QFile::Permissions()
                                          : QFile::ReadOwner | QFile::ExeOwner);
    }
    ~Locked()
    {
        QFile::setPermissions(m_path, m_rights);
    }
#endif
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;

private:
#ifdef Q_OS_WIN
    HANDLE m_file;
#else
    QString m_path;
    QFile::Permissions m_rights;
    OrdinaryUser m_user;
#endif
};
