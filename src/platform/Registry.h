#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The two settings stores the product knows, by their predefined handle numbers.
enum class Hive : quint32 { CurrentUser = 0x80000001, LocalMachine = 0x80000002 };

/// Named values under keys, as the machine keeps its settings. Keys and value names are compared
/// without regard to case. Values are strings; embedded NUL characters are kept.
class Registry
{
public:
    virtual ~Registry() = default;

    /// The stored value; nothing when key or value is not there. Raises 75 when the store is
    /// there but cannot be read.
    [[nodiscard]] virtual std::optional<QString> value(Hive hive, const QString &key,
                                                       const QString &name) = 0;

    /// Makes the key when needed and stores the value. False when the store refuses.
    virtual bool setValue(Hive hive, const QString &key, const QString &name,
                          const QString &value) = 0;

    /// The same for a value of exactly its characters: where a store ends texts with a NUL, as
    /// readers of Windows' registry expect, this one has none.
    virtual bool setBareValue(Hive hive, const QString &key, const QString &name,
                              const QString &value)
    {
        return setValue(hive, key, name, value);
    }
};
