#pragma once

#include "components/ConverterProgram.h"
#include "platform/Paths.h"
#include "platform/native/NativePlatform.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

// A legacy book set, what is in it, and the real converter program (CONVERTER_PROGRAM).

inline QByteArray sample(QLatin1StringView name)
{
    QFile file(QFINDTESTDATA(QStringLiteral("data/legacy/") + name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The rows of a table, in their order.
inline QList<QJsonObject> wanted(QLatin1StringView table)
{
    static const QJsonObject all =
        QJsonDocument::fromJson(sample(QLatin1StringView("legacy_plant.json"))).object();
    QList<QJsonObject> rows;
    for (const QJsonValue &row : all.value(table).toArray())
        rows.append(row.toObject());
    return rows;
}

/// An installation, a database beside it, and the converter.
struct LegacyWorld : TestProgram
{
    const QString database = QStringLiteral("S:\\Old\\plant.mdb"),
                  target = QStringLiteral("S:\\Docs\\Plant");
    NativeProcesses realProcesses{files};
    ConverterProgram converter{components.installInfo, realProcesses};

    LegacyWorld()
    {
        QFile::link(QStringLiteral(CONVERTER_PROGRAM),
                    files.nativePath(QStringLiteral("C:\\Client\\Bin\\qv_dbtoxml")));
        qputenv("QUOVANE_DRIVES", folder.path().toUtf8());
        qputenv("QUOVANE_SETTINGS", folder.filePath(QStringLiteral("settings")).toUtf8());
        QDir(folder.path()).mkdir(QStringLiteral("settings"));
        put(database, sample(QLatin1StringView("legacy_plant.mdb")));
    }
    ConversionOrder order{.mode = QStringLiteral("1"),
                          .database = database,
                          .targetFolder = target,
                          .projectName = QStringLiteral("Plant"),
                          .projectId = QStringLiteral("FL"),
                          .language = QStringLiteral("ENU")};
    const ConversionReport &convert()
    {
        converter.convert(order, {});
        return converter.report();
    }
    void change(const std::function<void(QByteArray &)> &edit)
    {
        QByteArray file = bytes(database);
        edit(file);
        put(database, file);
    }
    /// What stands in Docs, without the catalogue.
    QStringList docs()
    {
        return below(server + QStringLiteral("Docs"))
            .filter(QRegularExpression(QStringLiteral("^(?!QV_Selection)")));
    }
    QString destination()
    {
        const QString settings = folder.filePath(QStringLiteral("settings"));
        return IniRegistry(SettingsFolders{settings, settings})
            .value(Hive::LocalMachine, RegistryKey::compiler + QStringLiteral("Destination"),
                   QStringLiteral("Path"))
            .value_or(QString());
    }
};
