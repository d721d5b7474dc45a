#pragma once

#include <QWidget>

#include <optional>

class QLabel;

/// One status light: a shape, the name of what it tells about, and a word for its state.
class StatusLight final : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLight(const QString &subject, QWidget *parent = nullptr);

    /// Shows a stored colour (decimal RGB); nothing when it is not known.
    void setColour(std::optional<qint32> colour);
    [[nodiscard]] QString word() const;

private:
    QString m_subject;
    QLabel *m_shape;
    QLabel *m_word;
};
