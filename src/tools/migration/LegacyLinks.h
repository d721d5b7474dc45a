#pragma once

#include "tools/PageReference.h"
#include "tools/migration/LegacyPlaces.h"

/// Makes the links of a page or style sheet follow what got another place than it had in the
/// database. All else stays as written.
class LinkFollower final
{
public:
    LinkFollower(const OldPlaces &places, const PlacedFile &file);

    [[nodiscard]] QString page(const QString &html);
    [[nodiscard]] QString styleSheet(const QString &css);

private:
    [[nodiscard]] QString followed(const QString &text, const QList<PageReference> &references);
    [[nodiscard]] QString followed(const QString &written) const;

    const OldPlaces &m_places;
    const PlacedFile &m_file;
    QString m_before, m_now; ///< the folders in which its references begin
};
