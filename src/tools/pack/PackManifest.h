#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <string>
#include <vector>

/// One file of a packed copy.
struct PackedFile
{
    std::string path; ///< UTF-8, relative to the project folder, with "/"
    qint64 size = 0;
    qint64 modified = 0; ///< milliseconds since 1970, UTC
    quint32 sum = 0;     ///< CRC-32 of its bytes
};

/// "QV_Package.xml", the first entry of a packed copy: what it is and what it holds.
struct PackManifest
{
    QString project, id, language;
    QString method; ///< how the files were compressed; the same bytes come out under the same one
    std::vector<PackedFile> files; ///< in order of path

    /// Of the newest file, so that the same files make the same packed copy; 0 when there is none.
    [[nodiscard]] qint64 date() const;
};

inline constexpr auto manifestName = "QV_Package.xml";

QByteArray manifestBytes(const PackManifest &manifest);
/// `name` stands for the file in messages. Raises 75 when it is no such list.
PackManifest readManifest(const QByteArray &bytes, const QString &name);
