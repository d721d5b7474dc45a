#pragma once

#include "components/XmlCharacters.h"

class Messages;

/// Says which texts may become the name or ID of a new project, and tells the author why not.
class NameRules final : public XmlCharacters
{
public:
    explicit NameRules(Messages &messages);

    /// Why a text, not empty, may not become a name or ID, in the words that the author is told;
    /// "" when it may.
    static QString problemOf(const QString &text, What what);
    /// With a blank for each tab, line break and other control character.
    static QString withoutControls(const QString &text);

    QString CheckXMLCharacters(const QString &text, What what) override;
    QString mstrReplaceSpecialCharecters(const QString &text) const override;

private:
    Messages &m_messages;
};
