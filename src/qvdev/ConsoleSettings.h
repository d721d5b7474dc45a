#pragma once

#include "platform/native/NativePlatform.h"

/// The settings of this machine, where the server that the call names stands before the stored one.
class ConsoleSettings final : public Registry
{
public:
    void setServer(const QString &serverPath) { m_server = serverPath; }

    [[nodiscard]] std::optional<QString> value(Hive hive, const QString &key,
                                               const QString &name) override;
    bool setValue(Hive hive, const QString &key, const QString &name,
                  const QString &value) override;

private:
    NativeRegistry m_stored;
    QString m_server;
};
