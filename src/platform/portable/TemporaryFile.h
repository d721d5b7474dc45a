#pragma once

#include "platform/portable/Descriptor.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

/// New content on its way into place: "<name>.qvtmp<pid>" in an open folder; it goes when it does
/// not get there. Every failure is raised as an error of `path`, what the product calls the target.
class TemporaryFile final
{
public:
    TemporaryFile(int folder, const QByteArray &name, mode_t mode, const QString &path);
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile();

    void takePermissions(const struct stat &old);
    void write(qint64 offset, const char *bytes, qint64 count);
    /// Flushes it if `sync`, and renames it over `name`.
    void putInPlace(const char *name, bool sync);

private:
    [[nodiscard]] int open(mode_t mode) const;
    Descriptor create(mode_t mode);
    [[nodiscard]] bool removeAbandoned() const;
    void check(bool good) const;

    int m_folder;
    QByteArray m_name;
    QString m_path;
    Descriptor m_file;
    bool m_inPlace = false;
};
