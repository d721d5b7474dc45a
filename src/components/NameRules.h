#pragma once

#include "components/XmlCharacters.h"

class Messages;

/// Says which texts may become the name or ID of a new project, and tells the author why not.
class NameRules final : public XmlCharacters
{
public:
    explicit NameRules(Messages &messages);

    QString CheckXMLCharacters(const QString &text, What what) override;
    QString mstrReplaceSpecialCharecters(const QString &text) const override;

private:
    Messages &m_messages;
};
