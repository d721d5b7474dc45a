#pragma once

#include "tools/build/PageFacts.h"
#include "tools/build/TargetTable.h"

#include <QString>

/// Where a reference leads, by the rules of `targetOf` and `targetInProject`.
struct ResolvedReference
{
    RefPlace place = RefPlace::ThisPage;
    quint32 target = 0;      ///< of Project and ThisPage
    std::string_view anchor; ///< valid until the next one is resolved
};

/// Works out the references of one page after another. What stands before "#" repeats itself by the
/// thousand, so that is done once for each folder; one object is for one thread.
class ReferenceResolver final
{
public:
    ReferenceResolver(QString project, TargetTable &targets);

    /// What follows are references of the page at `path`.
    void startPage(std::string_view path);
    /// The page has a <base> with this address; character references are resolved.
    void setBase(std::string_view address);
    /// `written` has its character references resolved.
    [[nodiscard]] ResolvedReference resolve(std::string_view written);

private:
    struct Place
    {
        RefPlace place = RefPlace::ThisPage;
        quint32 target = 0;
    };
    using Known = TextMap<Place>;

    void enterFolder(const QString &folder);
    [[nodiscard]] Place placeOf(std::string_view path);
    [[nodiscard]] Place workOut(std::string_view path);
    [[nodiscard]] std::string_view decodedAnchor(std::string_view anchor);
    [[nodiscard]] ResolvedReference linkId(std::string_view written);

    const QString m_project;
    TargetTable &m_targets;
    TextMap<Known> m_knownByFolder;
    Known *m_known = nullptr;
    QString m_folder;       ///< "" or with a backslash at its end
    Place m_own;            ///< what an anchor alone means
    RefPlace m_baseOutside; ///< <base> leads there; else Project
    std::string m_anchor;
};
