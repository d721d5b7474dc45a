#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Every file and folder of a project as it lies on the disk when a build begins. Paths are UTF-8,
/// relative to the project folder, with "/" between their pieces, as pages write them.
class ProjectListing final
{
public:
    struct File
    {
        std::string path;
        qint64 size = 0;
        qint64 modified = 0; ///< milliseconds since 1970, UTC
        bool readOnly = false;
    };

    /// Reads all folders; links are left out, and _Backup\ is. `projectFolder` ends in a backslash.
    static ProjectListing read(FileSystem &files, const QString &projectFolder,
                               const Progress &progress = {});

    [[nodiscard]] const std::vector<File> &files() const { return m_files; } ///< in order of path

    // The tables point into the list.
    ProjectListing() = default;
    ProjectListing(ProjectListing &&) = default;
    ProjectListing &operator=(ProjectListing &&) = default;
    ProjectListing(const ProjectListing &) = delete;
    ProjectListing &operator=(const ProjectListing &) = delete;
    ~ProjectListing() = default;

    enum class Match { Exact, OtherCase, Ambiguous, Folder, Missing };
    struct Found
    {
        Match match = Match::Missing;
        quint32 file = 0; ///< of Exact and OtherCase: place in `files()`
    };
    /// What lies at a path: as spelled first, then without regard to case.
    [[nodiscard]] Found find(std::string_view path) const;

    /// A file as it is spelled on the disk, with backslashes; "" when there is none at `path`, or
    /// several in other letter case.
    [[nodiscard]] QString spelled(const QString &path) const;

    /// The product's form of a path of this listing, with backslashes; and back.
    [[nodiscard]] static QString shown(std::string_view path);
    [[nodiscard]] static std::string listed(const QString &path);

private:
    struct Walk;
    void makeTables();

    std::vector<File> m_files;
    // look-up tables: the scan of a project asks a million times, so they are made once
    std::unordered_map<std::string_view, quint32> m_byPath;
    std::unordered_map<std::string, std::vector<quint32>> m_byFoldedPath;
    std::unordered_map<std::string, bool> m_folders; ///< folded; true as spelled
};
