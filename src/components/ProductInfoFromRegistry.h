#pragma once

#include "components/ProductInfo.h"

class Registry;

/// Knows the version this program was built as.
class GeneralTasksComponent final : public GeneralTasks
{
public:
    QString QVDeveloperVersion() override;
};

/// Reads the machine's value "Client" of the product's key.
class InstallInfoFromRegistry final : public InstallInfo
{
public:
    explicit InstallInfoFromRegistry(Registry &registry);

    QString ClientPath() override;

private:
    Registry &m_registry;
};
