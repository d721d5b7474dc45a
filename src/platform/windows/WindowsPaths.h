#pragma once

#include <QString>

#include <string>

/// Product paths are paths of Windows as they stand. When a drives folder is named, for trials and
/// tests, "C:\x" lies under "<drives folder>\c\x" and "\srv\x" under "<drives folder>\srv\x";
/// "\C$\x" is the machine's own C:\x.
class WindowsPaths final
{
public:
    /// A native path; empty when the drives are the machine's.
    explicit WindowsPaths(const QString &drivesFolder);

    /// The full path, without a backslash at the end except for a drive. Slashes count as
    /// backslashes. Raises 76 for paths that are not full, 75 for "." and "..", for names that
    /// Windows would read as another one ("x.", "nul", "a:b") and for what no file can be called.
    [[nodiscard]] std::wstring native(const QString &path) const;

    /// True for a drive below the drives folder, which may have to be made.
    [[nodiscard]] bool isMappedDrive(const std::wstring &native) const;

    /// The product path of a native one.
    [[nodiscard]] QString product(const QString &native) const;

private:
    QString m_drives; ///< without a backslash at the end
};
