#pragma once

#include <QByteArray>
#include <QString>

/// Turns product paths into native ones and back: "C:\x\y" lies under "<drives folder>/c/x/y",
/// "\srv\qv\" is "/srv/qv". It does not look at the disk.
class NativePaths final
{
public:
    explicit NativePaths(const QString &drivesFolder);

    /// The native path, without a slash at the end except for a drive (so that a drive may be a
    /// link to where it is mounted). Slashes count as backslashes. Raises 76 for network names and
    /// for paths that are not full, 75 for "." and ".." and for what no file can be called.
    [[nodiscard]] QByteArray native(const QString &path) const;

    /// The folder of the drive that a native path lies on, with a slash at the end; else empty.
    [[nodiscard]] QByteArray driveOf(const QByteArray &native) const;

    /// The product path of a native one: "C:\..." below the drives folder, else "\...".
    /// Raises 75 when a name holds a backslash.
    [[nodiscard]] QString product(const QString &native) const;

private:
    QString m_drives;
    QByteArray m_drivesBytes;
};
