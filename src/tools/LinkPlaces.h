#pragma once

#include "tools/PageReference.h"

#include <QHash>

#include <functional>
#include <mutex>
#include <optional>
#include <unordered_map>

/// Where references of a project's pages lead. Pages repeat them by the thousand, so each is worked
/// out once, and its texts are shared. Several threads may ask.
class LinkPlaces final
{
public:
    explicit LinkPlaces(QString project);

    struct Place
    {
        QString written; ///< the reference
        PageTarget target;
        /// Relative to the project folder; nothing when it is not relative or leads out of it.
        std::optional<QString> path = {};
    };
    /// Where a reference leads, as written in a page, that begins in `folder` ("" or with a
    /// backslash at its end). It stays valid as long as this does.
    const Place &of(const QString &folder, QStringView written);

private:
    struct Hash
    {
        using is_transparent = void;
        size_t operator()(QStringView text) const { return qHash(text); }
    };
    template <typename Value>
    using ByText = std::unordered_map<QString, Value, Hash, std::equal_to<>>;

    const QString m_project;
    std::mutex m_guard;
    ByText<ByText<Place>> m_places; ///< by folder
};
