#pragma once

#include <QHash>
#include <QListWidget>

/// Check list of a book's categories.
class CategoryList final : public QListWidget
{
    Q_OBJECT

public:
    explicit CategoryList(QWidget *parent = nullptr);

    /// Shows all names with the book's own checked. A category of the book that is in no list is
    /// shown too, so that it is not lost.
    /// `uses`: how many books carry each, by name without case.
    void setCategories(const QStringList &available, const QStringList &checked,
                       const QHash<QString, int> &uses = {});
    [[nodiscard]] const QStringList &names() const { return m_names; }
    [[nodiscard]] QStringList checked() const;

Q_SIGNALS:
    void changed(); ///< by the author

private:
    QStringList m_names;
};
