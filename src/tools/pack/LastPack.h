#pragma once

#include "platform/FileSystem.h"
#include "tools/pack/PackManifest.h"

#include <memory>
#include <optional>
#include <string_view>

/// The packed copy that lies there from the last time. Several threads may use it at once.
class LastPack final
{
public:
    struct Member
    {
        quint64 index = 0; ///< place in the archive
        qint64 size = 0;
        quint32 sum = 0;
        bool isStored = false;
    };

    /// Raises 53 when there is none, and 75 when it is no packed copy or cannot be read.
    LastPack(FileSystem &files, const QString &path);
    LastPack(const LastPack &) = delete;
    LastPack &operator=(const LastPack &) = delete;
    ~LastPack();

    [[nodiscard]] const PackManifest &manifest() const;
    /// What the archive holds under the path (as in the manifest); nothing when there is no such
    /// member, or it is compressed in a way that is not ours.
    [[nodiscard]] std::optional<Member> find(std::string_view path) const;
    /// A member's bytes as they lie there; shorter or empty when it is damaged.
    [[nodiscard]] QByteArray packed(const Member &member) const;

private:
    class Archive;
    std::unique_ptr<Archive> m_archive;
};
