#pragma once

#include <QString>
#include <QStringList>

enum class Answer { Ok, Cancel, Yes, No };
enum class Buttons { Ok, OkCancel, YesNo };
enum class MessageIcon { Information, Critical };

inline constexpr QLatin1StringView defaultMessageTitle{"Quovane Developer Pro"};

struct Message
{
    QString text; ///< shown as plain text
    Buttons buttons = Buttons::Ok;
    QString title = defaultMessageTitle;
    MessageIcon icon = MessageIcon::Information;
    QString details = {}; ///< plain text below it, where a fixed text does not say what happened
    bool enterRefuses = false; ///< Enter means what Escape means: what Yes does cannot be undone
};

struct Choice
{
    QString text;
    QStringList answers; ///< the last one is what Escape and the close box mean
    int initial = 0;     ///< the one that Enter means
    QString title = defaultMessageTitle;
};

/// Message boxes.
class Messages
{
public:
    virtual ~Messages() = default;
    /// Shows a box and returns the button pressed; closing it means Cancel, No or Ok.
    virtual Answer show(const Message &message) = 0;
    /// Asks a question with answers of its own and returns the index of the one chosen.
    virtual int choose(const Choice &choice) = 0;
};

/// The system's file and folder dialogs. Paths are the product's; empty means cancelled.
class FileDialogs
{
public:
    virtual ~FileDialogs() = default;
    /// `filter` in the product's notation: "MDB files(*.mdb)|*.mdb".
    virtual QString openFile(const QString &title, const QString &folder,
                             const QString &filter) = 0;
    virtual QStringList openFiles(const QString &title, const QString &folder,
                                  const QString &filter) = 0;
    /// Asks where to save; `path` is proposed (folder and name, or a name alone). The system asks
    /// before an existing file is chosen. A name without an ending gets that of the filter chosen.
    virtual QString saveFile(const QString &title, const QString &path, const QString &filter) = 0;
    virtual QString chooseFolder(const QString &title, const QString &folder) = 0;
};
