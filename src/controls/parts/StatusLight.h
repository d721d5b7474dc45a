#pragma once

#include <QWidget>

#include <optional>

class QLabel;

/// One status light: a shape and a word for its state; what it tells about (`subject`) is spoken.
class StatusLight final : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLight(const QString &subject, QWidget *parent = nullptr);

    /// Shows a stored colour (decimal RGB); nothing when it is not known.
    void setColour(std::optional<qint64> colour);
    [[nodiscard]] QString word() const;

private:
    QString m_subject;
    QLabel *m_shape;
    QLabel *m_word;
};
