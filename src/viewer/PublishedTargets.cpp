#include "viewer/PublishedTargets.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "reports/LinkIdFile.h"
#include "reports/StoredPlace.h"

namespace {

/// Notes the first path of one identifier.
class TargetSeeker final : public LinkVisitor
{
public:
    explicit TargetSeeker(const QString &wanted)
        : m_wanted(wanted)
    {
    }

    void identifier(QStringView text) override { m_isWanted = text == m_wanted; }
    void path(QStringView stored) override
    {
        if (m_isWanted && m_found.isEmpty())
            m_found = stored.toString();
    }
    void entryEnds() override { m_isWanted = false; }
    [[nodiscard]] const QString &found() const { return m_found; }

private:
    const QString &m_wanted;
    QString m_found;
    bool m_isWanted = false;
};

} // namespace

std::optional<ViewerPlace> publishedTarget(const Session &session, FileSystem &files,
                                           const XmlCharacters &characters, const QStringList &sets,
                                           const QString &identifier)
{
    const auto publishesNothing = [](const QvError &) {};
    for (const QString &set : sets) {
        TargetSeeker seeker(identifier);
        const bool isRead = trap(publishesNothing, [&] {
            const QString path = projectFolder(session.serverPath, set) + ProjectFile::links;
            readLinkIdFile(files, characters, path, {.targets = &seeker}, {});
            return true;
        });
        if (isRead && !seeker.found().isEmpty()) {
            const StoredPlace place = storedPlace(seeker.found());
            return ViewerPlace{place.set, place.page, place.anchor};
        }
    }
    return std::nullopt;
}
