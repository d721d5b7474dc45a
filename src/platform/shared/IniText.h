#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// The text of a settings file: "[section]" lines and "name=value" lines, UTF-8. Lines that it does
/// not understand are kept. Sections and names are compared without regard to case. Percent signs
/// and characters that would not survive in a line are written as "%41" or "%uD800".
class IniText final
{
public:
    /// Raises 75 when the bytes are not UTF-8; `name` stands for the file in the message.
    IniText(const QByteArray &bytes, const QString &name);

    [[nodiscard]] std::optional<QString> value(const QString &section, const QString &name) const;
    void setValue(const QString &section, const QString &name, const QString &value);
    [[nodiscard]] QByteArray bytes() const;

private:
    struct Place
    {
        qsizetype sectionEnd = -1; ///< the line behind the section's last; -1 without a section
        qsizetype line = -1;       ///< the line with the value; -1 without one
    };
    [[nodiscard]] Place find(const QString &section, const QString &name) const;

    QStringList m_lines;
};
