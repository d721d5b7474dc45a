#pragma once

#include <QWidget>

#include <functional>

class CheckedField;
class QListWidget;
class QPushButton;

/// A list of words that are added by a field above it and removed by a button or Del.
class EntryList final : public QWidget
{
    Q_OBJECT

public:
    struct Texts
    {
        QString name;        ///< of the controls: "KeyWord" gives txtKeyWord, lstKeyWord, ...
        QString field, list; ///< accessible names
        QString add, remove; ///< captions with their mnemonics
    };
    /// The problem of a new entry, "" for none.
    using Rule = std::function<QString(const QString &entry, const QStringList &entries)>;
    EntryList(const Texts &texts, const Rule &problem, QWidget *parent = nullptr);

    void setEntries(const QStringList &entries); ///< what was chosen stays chosen
    [[nodiscard]] QStringList entries() const;
    [[nodiscard]] QString chosen() const; ///< "" when none is

Q_SIGNALS:
    void addRequested(const QString &entry);
    void removeRequested(const QString &entry);
    void chosenChanged();

private:
    void requestAdd();
    void requestRemove();
    void judge();

    QListWidget *m_list;
    CheckedField *m_field;
    QPushButton *m_add;
    QPushButton *m_remove;
};
