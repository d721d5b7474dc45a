#pragma once

#include "components/DatabaseConverter.h"

/// Stands in while the converter program is not installed: every call raises 429 and says so.
class MissingConverter final : public DatabaseConverter
{
public:
    void convert(const QString &mode, const QString &database, const QString &targetFolder,
                 const QString &projectName, const QString &projectId) override;
    bool completed() override;
};
